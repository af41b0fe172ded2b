#pragma once

#include <memory>
#include <string>

#include "platform/Dispatch.h"
#include "platform/ScreenCapture.h"

namespace vistrel::platform {

class Menu;

/// Raw value is AppKit's NSApplicationActivationPolicy.
enum class ActivationPolicy { regular = 0 };

class ApplicationDelegate {
 public:
  virtual ~ApplicationDelegate() = default;
  virtual void applicationDidFinishLaunching() = 0;
  /// A click on the program's icon (or what stands in for it) while it runs.
  virtual bool applicationShouldHandleReopen(bool hasVisibleWindows) = 0;
  /// The menu of the program's icon, made anew each time it opens.
  virtual std::shared_ptr<Menu> applicationDockMenu() = 0;
  /// A person has picked a window in a dialog of the desktop's, which stands in for the list where
  /// programs are not told which windows there are.
  virtual void applicationDidPickWindow(const WindowRecord& window) = 0;
};

/// The running program. Main thread.
class Application {
 public:
  virtual ~Application() = default;

  static Application& shared();

  virtual void setActivationPolicy(ActivationPolicy policy) = 0;
  /// Held weakly.
  virtual void setDelegate(std::weak_ptr<ApplicationDelegate> delegate) = 0;
  /// Also shows what `hide` took off the screen.
  virtual void activateIgnoringOtherApps(bool ignoringOtherApps) = 0;
  /// The bar of menus: each item's submenu is one of them, the first being the application's own.
  virtual void setMainMenu(std::shared_ptr<Menu> menu) = 0;
  /// The menu of the main menu that the desktop appends the list of open windows to.
  virtual void setWindowsMenu(std::shared_ptr<Menu> menu) = 0;
  /// Takes every window of the program off the screen, panels included, until it is activated. A
  /// desktop may leave a person a door to it in its taskbar.
  virtual void hide() = 0;
  /// Ends launching and tells the delegate, if there is one. For those that do not `run`.
  virtual void finishLaunching() = 0;
  /// Waits for the next event of any kind, until `until` at most, takes it off the queue (of the
  /// default run loop mode) and sends it where it belongs. Returns after one event, or a few that
  /// came together, or none. What is due on the main queue runs meanwhile. For those that do not
  /// `run`.
  virtual void sendNextEvent(Date until) = 0;
  /// The event loop; tells the delegate first that launching has finished. Returns after
  /// `terminate` where the platform lets it.
  virtual void run() = 0;
  virtual void terminate() = 0;

  /// Has the first object that knows the selector perform it: the key window ("performClose:",
  /// "performMiniaturize:"), then the application ("hide:", "terminate:"). False when none does.
  bool sendAction(const std::string& selector);

 private:
  bool tryToPerform(const std::string& selector);
};

}  // namespace vistrel::platform
