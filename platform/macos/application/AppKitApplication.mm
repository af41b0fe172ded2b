#include "platform/macos/application/AppKitApplication.h"

#include <utility>

#include "platform/macos/menus/ShownMenu.h"

using namespace vistrel::platform;

NS_ASSUME_NONNULL_BEGIN

/// Passes on what AppKit tells and asks its delegate. Holds the core's weakly.
@interface VLApplicationDelegate : NSObject <NSApplicationDelegate>
- (instancetype)initWithDelegate:(std::weak_ptr<ApplicationDelegate>)delegate;
@end

NS_ASSUME_NONNULL_END

@implementation VLApplicationDelegate {
  std::weak_ptr<ApplicationDelegate> _delegate;
}

- (instancetype)initWithDelegate:(std::weak_ptr<ApplicationDelegate>)delegate {
  self = [super init];
  if (self != nil) _delegate = std::move(delegate);
  return self;
}

- (void)applicationDidFinishLaunching:(NSNotification*)__unused notification {
  if (const auto delegate = _delegate.lock()) delegate->applicationDidFinishLaunching();
}

- (BOOL)applicationShouldHandleReopen:(NSApplication*)__unused sender hasVisibleWindows:(BOOL)flag {
  const auto delegate = _delegate.lock();
  return delegate && delegate->applicationShouldHandleReopen(flag);
}

- (nullable NSMenu*)applicationDockMenu:(NSApplication*)__unused sender {
  const auto delegate = _delegate.lock();
  const auto menu = delegate ? delegate->applicationDockMenu() : nullptr;
  return menu ? macos::makeMenu(menu) : nil;
}

/// No window of ours keeps any state with AppKit. Without an answer AppKit warns on standard error
/// from macOS 14 on.
- (BOOL)applicationSupportsSecureRestorableState:(NSApplication*)__unused app {
  return YES;
}

@end

namespace vistrel::platform::macos {

static_assert(static_cast<NSApplicationActivationPolicy>(ActivationPolicy::regular) ==
              NSApplicationActivationPolicyRegular);

void AppKitApplication::setActivationPolicy(ActivationPolicy policy) {
  [application_ setActivationPolicy:static_cast<NSApplicationActivationPolicy>(policy)];
}

void AppKitApplication::setDelegate(std::weak_ptr<ApplicationDelegate> delegate) {
  delegate_ = [[VLApplicationDelegate alloc] initWithDelegate:std::move(delegate)];
  application_.delegate = delegate_;
}

void AppKitApplication::activateIgnoringOtherApps(bool ignoringOtherApps) {
  [application_ activateIgnoringOtherApps:ignoringOtherApps];
}

void AppKitApplication::setMainMenu(std::shared_ptr<Menu> menu) {
  application_.mainMenu = makeMenu(menu);
}

void AppKitApplication::setWindowsMenu(std::shared_ptr<Menu> menu) {
  application_.windowsMenu = submenuShowing(*menu, application_.mainMenu);
}

void AppKitApplication::hide() { [application_ hide:nil]; }

void AppKitApplication::finishLaunching() { [application_ finishLaunching]; }

void AppKitApplication::sendNextEvent(Date until) {
  // An event loop that is not AppKit's own has no pool.
  @autoreleasepool {
    NSDate* const expiration = [NSDate dateWithTimeIntervalSinceNow:until.timeIntervalSince(now())];
    NSEvent* const event = [application_ nextEventMatchingMask:NSEventMaskAny
                                                     untilDate:expiration
                                                        inMode:NSDefaultRunLoopMode
                                                       dequeue:YES];
    if (event != nil) [application_ sendEvent:event];
  }
}

void AppKitApplication::run() { [application_ run]; }

void AppKitApplication::terminate() { [application_ terminate:nil]; }

}  // namespace vistrel::platform::macos
