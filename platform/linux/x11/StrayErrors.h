#pragma once

#include <cstdint>
#include <string>
#include <xcb/xcb.h>

namespace vistrel::platform::linux_desktop {

/// Errors of the display server that nobody waited for: requests that were thought to be safe and
/// failed all the same. Each is a defect. A request that may fail, since it is about a window of
/// another program, has its error taken in where it is sent (`failureOf`, `forgive`).
///
/// They are counted for the whole process. Debug builds and those who set VISTREL_X_ERRORS in the
/// environment get a line about each on standard error. Any thread.
void reportStrayError(const xcb_generic_error_t& error);

struct StrayErrors {
  int count = 0;
  /// What the last one was, for people.
  std::string last;
};
StrayErrors strayErrors();

}  // namespace vistrel::platform::linux_desktop
