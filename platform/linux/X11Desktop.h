#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/Backend.h"
#include "platform/Factory.h"
#include "platform/VirtualDisplayClasses.h"
#include "platform/linux/PanelSurface.h"
#include "platform/linux/PixelRect.h"
#include "platform/linux/ScreenLayout.h"

namespace vistrel::platform::linux_desktop {

/// The X11 half of the backend: listing, capturing and moving windows, drawing panels, displays.
/// Knows nothing of the toolkit.
class X11Desktop : public ScreenCaptureBackend {
 public:
  struct OrFailure;
  /// Connects to the display that DISPLAY names. Fails with one line for a person, or without any
  /// when it is to be the one instance there and another one has been shown instead.
  static OrFailure connect(Instances instances);

  /// From now on calls `show`, on the main queue, whenever the program is started again; with the
  /// server's time of what the person did for that. Main thread.
  virtual void whenStartedAgain(std::function<void(std::uint32_t time)> show) = 0;
  /// The program's next start is a new instance, although this one still runs. Main thread.
  virtual void letOthersStart() = 0;

  /// Main thread, as all three.
  virtual DisplayBackend& displays() = 0;
  virtual std::shared_ptr<VirtualDisplayServer> virtualDisplays() = 0;
  virtual AccessibilityBackend& accessibility() = 0;

  /// Where windows' pixels are in points: the frames of lists asked for from now on, the bounds of
  /// displays, the positions of windows. Main thread.
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
  /// full-screen windows too. Each time before the window is mapped. Main thread.
  virtual void markAsFloatingPanel(std::uint32_t window) = 0;
  /// From now on the keys that ask for a context menu (Menu, Shift+F10) call `pressed`, on the main
  /// queue, whatever window has the keyboard; null lets them be. Main thread.
  virtual void takeMenuKeys(std::function<void()> pressed) = 0;

  /// Whether a program of that process has windows. Main thread.
  virtual bool hasWindows(std::int32_t processID) = 0;
  /// Brings all windows of a process to the front and gives one of them the keyboard; false when it
  /// has none. Main thread.
  virtual bool activateWindows(std::int32_t processID) = 0;
  /// Has the manager bring the window to the front and give it the keyboard, for something that a
  /// person did at `time` of the server's: it may refuse where they have gone on to something else
  /// since. The window is one of the toolkit's, whose requests have been synced. Main thread.
  virtual void activateWindow(std::uint32_t window, std::uint32_t time) = 0;

  /// Raises the window in its layer, without giving it the keyboard. Main thread.
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
