#pragma once

#include <map>

#include "platform/linux/x11/manager/VisibleFrame.h"
#include "platform/linux/x11/server/Connection.h"

namespace vistrel::platform::linux_desktop {

/// Where the windows were that a manager manages, for whoever does something that may move them.
/// Docks and desktops are not counted in: they follow the screen by themselves.
class WindowPlaces {
 public:
  /// As of now. `connection` outlives this object.
  explicit WindowPlaces(Connection& connection);

  /// Whether one of them is elsewhere, or of another size.
  bool haveChanged() const { return !displaced().empty(); }
  /// Asks the manager to put those back, and waits for it until the deadline.
  void restore(double deadline) const;

 private:
  using Places = std::map<xcb_window_t, FramedWindow>;

  /// Those that are elsewhere, as they were.
  Places displaced() const;

  Connection& connection_;
  const Places places_;
};

}  // namespace vistrel::platform::linux_desktop
