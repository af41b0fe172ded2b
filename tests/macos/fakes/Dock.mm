#include "tests/macos/fakes/AppKitFakes.h"
#include "tests/macos/fakes/DockFakes.h"
#include "tests/macos/fakes/State.h"
#include "tests/macos/fakes/World.h"

namespace vistrel::fake {

NSMenu* openDockMenu() {
  __block NSMenu* menu = nil;
  act(^{
    NSApplication* const application = NSApplication.sharedApplication;
    menu = [application.delegate applicationDockMenu:application];
  });
  return menu;
}

bool reopen() {
  __block bool answer = false;
  act(^{
    bool hasVisibleWindows = false;
    for (NSWindow* window : windows()) hasVisibleWindows = hasVisibleWindows || window.isShown;
    NSApplication* const application = NSApplication.sharedApplication;
    answer = [application.delegate applicationShouldHandleReopen:application
                                               hasVisibleWindows:hasVisibleWindows];
  });
  return answer;
}

}  // namespace vistrel::fake
