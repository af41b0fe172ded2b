#include "app/AppDelegate.h"

#include "picker/PickerWindowController.h"

namespace vistrel {

void AppDelegate::applicationDidFinishLaunching() { showPicker(); }

bool AppDelegate::applicationShouldHandleReopen(bool /*hasVisibleWindows*/) {
  showPicker();
  return true;
}

void AppDelegate::showPicker() {
  const auto& picker = PickerWindowController::shared();
  if (picker->window()) picker->window()->makeKeyAndOrderFront();
  platform::Application::shared().activateIgnoringOtherApps(true);
  picker->reload();
}

}  // namespace vistrel
