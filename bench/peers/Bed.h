#pragma once

#include <memory>

#include "tests/support/ChildProcess.h"
#include "tests/support/InputDriver.h"
#include "tests/support/PrivateDisplay.h"
#include "tests/support/XConnection.h"

namespace vistrel::bench {

/// A private display wide enough for a large source with panels beside it, on which the program and
/// its peers are measured in turns; as it is, or under a compositing manager.
class Bed {
 public:
  enum class Compositing { none, managed };

  explicit Bed(Compositing compositing);

  const testbed::PrivateDisplay& display() const { return display_; }
  const testbed::XConnection& connection() const { return connection_; }
  testbed::InputDriver& hand() { return hand_; }
  /// Where nothing is, so that the pointer lies over no source.
  void putHandAway() { hand_.moveTo({size.x - 1, size.y - 1}); }

  /// Seconds of processor time so far.
  double serverSeconds() const;
  /// None but of the compositing manager, if there is one.
  double managerSeconds() const;

  static constexpr testbed::Point size{2720, 2400};
  /// Of a source; what is right of it is for panels.
  static constexpr testbed::Rect sourceArea{0, 0, 1900, 1020};

 private:
  testbed::PrivateDisplay display_{{.width = size.x, .height = size.y}};
  testbed::XConnection connection_{display_.name()};
  testbed::InputDriver hand_{connection_};
  std::unique_ptr<testbed::ChildProcess> manager_;
};

}  // namespace vistrel::bench
