#include "platform/macos/windows/AppKitWindows.h"

#import <AppKit/AppKit.h>

#include "platform/Alert.h"
#include "platform/macos/Conversions.h"
#include "platform/macos/views/ControlState.h"
#include "platform/macos/windows/AppKitWindowPeer.h"

namespace vistrel::platform::macos {

namespace {

Screen coreScreen(NSScreen* screen) {
  return {.frame = coreRect(screen.frame),
          .visibleFrame = coreRect(screen.visibleFrame),
          .backingScaleFactor = screen.backingScaleFactor};
}

}  // namespace

std::unique_ptr<WindowPeer> AppKitWindows::makePeer(Window& window, bool isPanel) {
  return std::make_unique<AppKitWindowPeer>(window, isPanel);
}

std::vector<Screen> AppKitWindows::screens() {
  // The self-tests run outside any event loop, and so outside any pool.
  @autoreleasepool {
    std::vector<Screen> screens;
    for (NSScreen* screen in NSScreen.screens) screens.push_back(coreScreen(screen));
    return screens;
  }
}

std::optional<Screen> AppKitWindows::mainScreen() {
  NSScreen* screen = NSScreen.mainScreen;
  if (screen == nil) return std::nullopt;
  return coreScreen(screen);
}

Window* AppKitWindows::keyWindow() {
  return AppKitWindowPeer::windowShownBy(NSApplication.sharedApplication.keyWindow);
}

Point AppKitWindows::mouseLocation() { return corePoint(NSEvent.mouseLocation); }

Size AppKitWindows::intrinsicContentSize(const Control& control) {
  return macos::intrinsicContentSize(control);
}

int AppKitWindows::runModal(const Alert& alert) {
  NSAlert* shown = [[NSAlert alloc] init];
  shown.messageText = nsString(alert.messageText);
  shown.informativeText = nsString(alert.informativeText);
  for (const std::string& title : alert.buttonTitles) [shown addButtonWithTitle:nsString(title)];
  return static_cast<int>([shown runModal]);
}

}  // namespace vistrel::platform::macos
