#pragma once

#include <memory>

#include "platform/Application.h"
#include "platform/Menu.h"

namespace vistrel {

/// What the application object asks and tells. Main thread.
class AppDelegate : public platform::ApplicationDelegate,
                    public std::enable_shared_from_this<AppDelegate> {
 public:
  void applicationDidFinishLaunching() override;
  /// Shows the picker, whether or not windows are visible; always true.
  bool applicationShouldHandleReopen(bool hasVisibleWindows) override;
  std::shared_ptr<platform::Menu> applicationDockMenu() override;
  /// Mirrors it, and has the picker list it.
  void applicationDidPickWindow(const platform::WindowRecord& window) override;
  /// Brings the picker to the front and reloads its list.
  void showPicker();
  /// Shows the program's name, version and purpose until it is answered.
  void showAbout();

 private:
  void buildMainMenu();
  std::shared_ptr<platform::Menu> makeApplicationMenu();
  std::shared_ptr<platform::Menu> makeMirrorMenu();
};

}  // namespace vistrel
