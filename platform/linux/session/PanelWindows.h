#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "platform/linux/PanelSurface.h"

namespace vistrel::platform::linux_desktop {

/// What panels' windows are to the display server. The toolkit makes them, on a connection of its
/// own that has been synced since. Main thread.
class PanelWindows {
 public:
  virtual ~PanelWindows() = default;

  /// What draws that window.
  virtual std::unique_ptr<PanelSurface> makeSurface(std::uint32_t window) = 0;
  /// Has it float above all windows, full-screen ones too, on every desktop, out of taskbar and
  /// pager. Each time before it is mapped; returns once that is so.
  virtual void makeFloating(std::uint32_t window) = 0;
  /// To be told, on any thread and whether this is still there or not, if the active window fills
  /// the screen and may be none of the display server's, as a native one of a Wayland session:
  /// panels are above it as long as that lasts.
  virtual std::function<void(bool isActive)> foreignFullScreenFollower() = 0;
  /// Keeps a window that nobody sees out of taskbar and pager. Before it is mapped.
  virtual void keepOffLists(std::uint32_t window) = 0;
};

}  // namespace vistrel::platform::linux_desktop
