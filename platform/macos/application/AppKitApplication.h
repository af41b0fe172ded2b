#pragma once

#import <AppKit/AppKit.h>

#include "platform/Application.h"

@class VLApplicationDelegate;

namespace vistrel::platform::macos {

/// AppKit's application object, which its first construction makes. That ends the process where
/// there is no window server. Main thread.
class AppKitApplication final : public Application {
 public:
  AppKitApplication() : application_(NSApplication.sharedApplication) {}

  void setActivationPolicy(ActivationPolicy policy) override;
  void setDelegate(std::weak_ptr<ApplicationDelegate> delegate) override;
  void activateIgnoringOtherApps(bool ignoringOtherApps) override;
  void setMainMenu(std::shared_ptr<Menu> menu) override;
  /// After `setMainMenu`.
  void setWindowsMenu(std::shared_ptr<Menu> menu) override;
  void hide() override;
  void finishLaunching() override;
  void sendNextEvent(Date until) override;
  void run() override;
  /// Ends the process.
  void terminate() override;

 private:
  NSApplication* const application_;
  /// AppKit holds its delegate weakly.
  VLApplicationDelegate* delegate_ = nil;
};

}  // namespace vistrel::platform::macos
