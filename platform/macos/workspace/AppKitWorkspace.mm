#include "platform/macos/workspace/AppKitWorkspace.h"

#import <AppKit/AppKit.h>

#include "platform/Workspace.h"
#include "platform/macos/Conversions.h"

namespace vistrel::platform::macos {

static_assert(static_cast<NSApplicationActivationOptions>(ActivationOptions::activateAllWindows) ==
              NSApplicationActivateAllWindows);

namespace {

class SystemApplication final : public RunningApplication {
 public:
  explicit SystemApplication(NSRunningApplication* application) : application_(application) {}

  bool activate(ActivationOptions options) override {
    return [application_ activateWithOptions:static_cast<NSApplicationActivationOptions>(options)];
  }

 private:
  NSRunningApplication* const application_;
};

}  // namespace

bool AppKitWorkspace::openURL(const std::string& url) {
  NSURL* const parsed = [NSURL URLWithString:nsString(url)];
  return parsed != nil && [NSWorkspace.sharedWorkspace openURL:parsed];
}

bool AppKitWorkspace::openNewInstance(const std::string& bundlePath) {
  NSTask* const task = [[NSTask alloc] init];
  task.launchPath = @"/usr/bin/open";
  task.arguments = @[ @"-n", nsString(bundlePath) ];
  // `launch` would throw.
  return [task launchAndReturnError:nil];
}

std::int32_t AppKitWorkspace::processIdentifier() {
  return NSProcessInfo.processInfo.processIdentifier;
}

std::shared_ptr<RunningApplication> AppKitWorkspace::runningApplication(std::int32_t processID) {
  NSRunningApplication* const application =
      [NSRunningApplication runningApplicationWithProcessIdentifier:processID];
  return application == nil ? nullptr : std::make_shared<SystemApplication>(application);
}

std::string AppKitWorkspace::mainBundlePath() { return utf8(NSBundle.mainBundle.bundlePath); }

std::optional<std::string> AppKitWorkspace::bundleInfo(const std::string& key) {
  const id value = [NSBundle.mainBundle objectForInfoDictionaryKey:nsString(key)];
  if (![value isKindOfClass:NSString.class]) return std::nullopt;
  return utf8(static_cast<NSString*>(value));
}

ComparisonResult AppKitWorkspace::localizedCaseInsensitiveCompare(const std::string& a,
                                                                  const std::string& b) {
  // Lists are sorted on the capture service's thread, in one block with many comparisons.
  @autoreleasepool {
    switch ([nsString(a) localizedCaseInsensitiveCompare:nsString(b)]) {
      case NSOrderedAscending:
        return ComparisonResult::ascending;
      case NSOrderedDescending:
        return ComparisonResult::descending;
      case NSOrderedSame:
        return ComparisonResult::same;
    }
  }
}

}  // namespace vistrel::platform::macos
