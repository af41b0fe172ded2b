#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/PixelRect.h"
#include "platform/linux/x11/monitors/MonitorList.h"
#include "platform/linux/x11/server/Connection.h"
#include "platform/linux/x11/server/PixelGeometry.h"
#include "platform/linux/x11/server/Resources.h"

namespace vistrel::platform::linux_desktop {

/// A monitor that nothing is connected to (RandR 1.5, "monitors" without outputs), on a part of the
/// screen that no other monitor shows. Windows on it are on the desktop, and nobody sees them. The
/// pointer does not come there: the server keeps it where there are outputs.
///
/// Has a connection of its own, and with it a window by which others can tell that the monitor is
/// still somebody's. Main thread.
class HiddenMonitor {
 public:
  /// Makes one to the right of the primary monitor, or of those that overlap it there. Null when
  /// the screen cannot grow that far, when the window manager would keep windows away from it,
  /// which may take a moment to find out, or when it rearranges windows for it; they are put back
  /// then. Waits for the manager until `deadline` seconds of the monotonic clock at most.
  static std::unique_ptr<HiddenMonitor> make(PixelSize size, double deadline);
  HiddenMonitor(const HiddenMonitor&) = delete;
  HiddenMonitor& operator=(const HiddenMonitor&) = delete;
  /// Removes it as `leave` does.
  ~HiddenMonitor();

  /// As monitors are listed.
  xcb_atom_t id() const { return id_; }
  PixelRect area() const { return area_; }

  /// Puts it there, or so far to the right that it overlaps no other monitor. False when the screen
  /// cannot grow that far; it is then as it was.
  bool place(const PixelRect& wanted);

  /// Where it was, and where it is from now on: empty when there is no room for it any more.
  struct Move {
    PixelRect from;
    PixelRect to;
  };
  /// Gets out of the way of monitors that a person sees, and makes the screen grow again where
  /// somebody has cut it off. None where it can stay as it is.
  std::optional<Move> getOutOfTheWay();

 private:
  explicit HiddenMonitor(std::unique_ptr<Connection> connection);

  /// Removes it; the last one leaves the screen as the first one found it.
  void leave();
  /// The server may have thrown out this one alone, and the owner with it.
  void renewConnection();
  bool makeRoom(const std::vector<ListedMonitor>& all, const PixelRect& area);
  /// Makes the server have it there; where it refuses, as it was.
  bool announce(const PixelRect& area);
  bool set(const PixelRect& area);
  void withdraw();

  std::unique_ptr<Connection> connection_;
  OwnWindow owner_;
  xcb_atom_t id_;
  PixelRect area_;  // empty until the server has it
};

/// Whether the server lets hidden monitors be made at all.
bool canHideMonitors(Connection& connection);

/// Removes those whose programs have ended without doing so.
void removeAbandonedMonitors(Connection& connection);

/// The windows of the process of that token by which its hidden monitors are known to be
/// somebody's; each goes with its monitor.
std::vector<xcb_window_t> monitorOwnersOf(Connection& connection, std::uint32_t processToken);

}  // namespace vistrel::platform::linux_desktop
