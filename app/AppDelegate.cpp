#include "app/AppDelegate.h"

#include "app/AppInfo.h"
#include "catalogue/WindowMirrorManager.h"
#include "picker/PickerWindowController.h"
#include "platform/Alert.h"

namespace vistrel {

void AppDelegate::applicationDidFinishLaunching() {
  buildMainMenu();
  showPicker();
}

bool AppDelegate::applicationShouldHandleReopen(bool /*hasVisibleWindows*/) {
  showPicker();
  return true;
}

void AppDelegate::applicationDidPickWindow(const platform::WindowRecord& window) {
  WindowMirrorManager::shared()->mirror(window);
  PickerWindowController::shared()->reload();
}

void AppDelegate::showPicker() {
  const auto& picker = PickerWindowController::shared();
  if (picker->window()) picker->window()->makeKeyAndOrderFront();
  platform::Application::shared().activateIgnoringOtherApps(true);
  picker->reload();
}

void AppDelegate::showAbout() {
  const platform::Alert alert{.messageText = "Vistrel " + AppInfo::version(),
                              .informativeText =
                                  "Live-mirror any on-screen window into a floating, always-on-top "
                                  "panel.\n\nMade by Tollbeck.",
                              .buttonTitles = {"OK"}};
  alert.runModal();
}

}  // namespace vistrel
