#pragma once

#include <string>
#include <vector>

#include "tests/support/CommandedProgram.h"
#include "tests/support/Rect.h"

namespace vistrel::testbed {

/// A bar of some Wayland program at an edge of an output, as Plasma's panels are, in a session of
/// KWin: it keeps its room free there. All operations return once the compositor has dealt with
/// them, and throw std::runtime_error when it does not by a generous deadline.
class NativeDock {
 public:
  /// Opens it in the session whose programs have `environment`, in the compositor's pixels, and
  /// returns once it is drawn.
  NativeDock(const std::vector<std::string>& environment, Rect area);

  void moveTo(Point origin);
  void resize(int width, int height);
  /// The program closes it, and ends.
  void close();

 private:
  CommandedProgram program_;
};

}  // namespace vistrel::testbed
