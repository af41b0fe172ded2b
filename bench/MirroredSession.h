#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tests/desktop/RunningVistrel.h"
#include "tests/support/InputDriver.h"
#include "tests/support/PrivateDisplay.h"
#include "tests/support/TestWindow.h"

namespace vistrel::bench {

/// A private session in which the built program mirrors some windows; large ones, each in a panel
/// of 520 points' width, unless others are asked for.
class MirroredSession {
 public:
  /// Returns once every mirror shows its source.
  explicit MirroredSession(int mirrors)
      : MirroredSession(std::vector(static_cast<std::size_t>(mirrors), sourceArea)) {}
  /// The same, of sources at these places.
  explicit MirroredSession(const std::vector<testbed::Rect>& sources);

  testbed::TestWindow& source(std::size_t index) { return *sources_[index]; }
  std::size_t size() const { return sources_.size(); }
  const testbed::PanelOnScreen& panel(std::size_t index) const { return panels_[index]; }
  const testbed::XConnection& connection() const { return connection_; }

  const std::string& displayName() const { return display_.name(); }
  pid_t clientPid() const { return vistrel_->process().pid(); }
  /// Seconds of processor time that the program and the display server have used so far.
  double clientSeconds() const;
  double serverSeconds() const;

  static constexpr testbed::Rect sourceArea{10, 30, 1900, 1050};

 private:
  testbed::Rect firstRow() const;

  // On which the cascade of 64 panels leaves each one's dot to be seen.
  testbed::PrivateDisplay display_{{.width = 2560, .height = 2400}};
  testbed::XConnection connection_{display_.name()};
  std::vector<std::unique_ptr<testbed::TestWindow>> sources_;
  std::unique_ptr<testbed::RunningVistrel> vistrel_;
  std::vector<testbed::PanelOnScreen> panels_;
};

}  // namespace vistrel::bench
