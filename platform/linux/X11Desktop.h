#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/Backend.h"
#include "platform/linux/PanelSurface.h"
#include "platform/linux/PixelRect.h"
#include "platform/linux/ScreenLayout.h"

namespace vistrel::platform::linux_desktop {

/// The X11 half of the backend: listing and capturing windows, drawing panels. Knows nothing of the
/// toolkit.
class X11Desktop : public ScreenCaptureBackend {
 public:
  struct OrFailure;
  /// Connects to the display that DISPLAY names. Fails with one line for a person.
  static OrFailure connect();

  /// Where windows' pixels are in points: the frames of lists asked for from now on. Main thread.
  virtual void setScreenLayout(ScreenLayout layout) = 0;

  /// From now on calls `changed`, on a thread of its own, whenever what docks and the like keep
  /// free has changed; until the queues' threads end. Once only. Main thread.
  virtual void watchDocks(std::function<void()> changed) = 0;
  /// What those leave of each monitor, in the same order: all of it until they are watched. Pixels
  /// of the root window. Main thread.
  virtual std::vector<PixelRect> freeAreas(const std::vector<PixelRect>& monitors) const = 0;

  /// A surface that draws the window `window`, made by the toolkit on another connection that has
  /// been synced since. Main thread.
  virtual std::unique_ptr<PanelSurface> makePanelSurface(std::uint32_t window) = 0;

  /// Sets the EWMH properties that keep a panel above all windows and on every desktop, out of
  /// taskbar and pager (`_NET_WM_STATE`, `_NET_WM_DESKTOP`), and from then on keeps it above
  /// full-screen windows too. Each time before the window is mapped.
  virtual void markAsFloatingPanel(std::uint32_t window) = 0;
  /// From now on the keys that ask for a context menu (Menu, Shift+F10) call `pressed`, on the main
  /// queue, whatever window has the keyboard; null lets them be. Main thread.
  virtual void takeMenuKeys(std::function<void()> pressed) = 0;

  /// Whether a program of that process has windows. Main thread.
  virtual bool hasWindows(std::int32_t processID) = 0;
  /// Brings all windows of a process to the front and gives one of them the keyboard; false when it
  /// has none. Main thread.
  virtual bool activateWindows(std::int32_t processID) = 0;

  /// Raises the window in its layer (a checked ConfigureWindow), without giving it the focus.
  virtual void raise(std::uint32_t window) = 0;
};

struct X11Desktop::OrFailure {
  std::unique_ptr<X11Desktop> desktop;
  std::string failure;
};

/// The display server is gone: writes one line to standard error, once, and ends the process with
/// status 1 without running destructors. Any thread.
[[noreturn]] void endProgramDisplayLost();

}  // namespace vistrel::platform::linux_desktop
