#pragma once

#include <string>
#include <xcb/xcb.h>

namespace vistrel::platform::linux_desktop {

/// The errors of the display server that nobody waited for: requests that were thought to be safe
/// and failed all the same. Each is a defect. A request that may fail, since it is about a window
/// of another program, has its error taken in where it is sent (`failureOf`, `forgive`).
struct StrayErrors {
  int count = 0;
  /// What the first one was, for people: others often follow from it.
  std::string first;
};

/// Those of the whole process so far. Any thread.
StrayErrors strayErrors();
/// Counts another, and traces it. Any thread.
void reportStrayError(const xcb_generic_error_t& error);

}  // namespace vistrel::platform::linux_desktop
