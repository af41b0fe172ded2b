#include "tests/macos/fakes/AppKitFakes.h"
#include "tests/macos/fakes/Recorder.h"
#include "tests/macos/fakes/State.h"
#include "tests/macos/fakes/World.h"

using namespace vistrel;

@implementation NSApplication (VLBehaviour)

- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)policy {
  fake::record(self, _cmd, policy);
  return YES;
}

- (void)activateIgnoringOtherApps:(BOOL)ignoring {
  fake::record(self, _cmd, ignoring);
  self.isActive = YES;
  self.isHidden = NO;
}

- (void)hide:(id)sender {
  fake::record(self, _cmd, sender);
  self.isActive = NO;
  self.isHidden = YES;
}

- (NSWindow*)keyWindow {
  for (NSWindow* window : fake::windows()) {
    if (window.isKey) return window;
  }
  return nil;
}

- (void)finishLaunching {
  fake::record(self, _cmd);
  if (self.isFinishedLaunching) return;
  self.isFinishedLaunching = YES;
  [self.delegate applicationDidFinishLaunching:[[NSNotification alloc] init]];
}

/// Calls `finishLaunching` first and drains a pool for each event: NSApplication, run. Returns
/// where the person has nothing more to do.
- (void)run {
  fake::record(self, _cmd);
  @autoreleasepool {
    [self finishLaunching];
  }
  @autoreleasepool {
    fake::turn();
  }
  bool isTerminated = false;
  @autoreleasepool {
    try {
      fake::world().person();
    } catch (const fake::Terminated&) {
      isTerminated = true;
    }
  }
  if (isTerminated) throw fake::Terminated();
}

/// Never returns: it exits the process, see NSApplication, terminate:.
- (void)terminate:(id)sender {
  fake::record(self, _cmd, sender);
  throw fake::Terminated();
}

- (NSEvent*)nextEventMatchingMask:(NSEventMask)mask
                        untilDate:(NSDate*)expiration
                           inMode:(NSRunLoopMode)mode
                          dequeue:(BOOL)dequeue {
  fake::record(self, _cmd, mask, expiration, mode, dequeue);
  int& waiting = fake::world().desktop().waitingEvents;
  if (waiting > 0) {
    --waiting;
    return [[NSEvent alloc] init];
  }
  const double seconds = expiration.moment - NSDate.timeIntervalSinceReferenceDate;
  bool hasTurned = false;
  fake::world().dispatch().turnMainUntil([&] { return std::exchange(hasTurned, true); }, seconds);
  fake::displayWindows();
  return nil;
}

@end

@implementation NSAlert (VLBehaviour)

- (NSButton*)addButtonWithTitle:(NSString*)title {
  fake::record(self, _cmd, title);
  if (self.buttonTitles == nil) self.buttonTitles = [NSMutableArray array];
  [self.buttonTitles addObject:title];
  return [NSButton buttonWithTitle:title target:nil action:nil];
}

/// Runs a modal event loop, in which the main queue turns as well: NSAlert, runModal.
- (NSModalResponse)runModal {
  fake::record(self, _cmd);
  fake::turn();
  auto& answers = fake::world().desktop().alertAnswers;
  if (answers.empty()) fake::fail("nobody answers the alert " + fake::describe(self.messageText));
  const long answer = answers.front();
  answers.pop_front();
  return answer;
}

@end

@implementation NSWorkspace (VLBehaviour)

- (BOOL)openURL:(NSURL*)url {
  fake::note("open " + std::string(url.text.UTF8String));
  return YES;
}

@end

@implementation NSRunningApplication (VLBehaviour)

+ (instancetype)runningApplicationWithProcessIdentifier:(pid_t)processID {
  fake::record(self, _cmd, processID);
  for (const auto& window : fake::world().desktop().windows) {
    if (window.processID == processID) return [[self alloc] init];
  }
  return nil;
}

- (BOOL)activateWithOptions:(NSApplicationActivationOptions)options {
  fake::record(self, _cmd, options);
  return YES;
}

@end

extern "C" {

void NSAccessibilityPostNotificationWithUserInfo(
    id element, NSAccessibilityNotificationName notification,
    NSDictionary<NSAccessibilityNotificationUserInfoKey, id>* userInfo) {
  if (!NSThread.isMainThread) fake::fail("an accessibility notification on another queue");
  fake::note("post " + fake::describe(element) + ' ' + fake::describe(notification) + ' ' +
             fake::describe(userInfo[NSAccessibilityAnnouncementKey]));
}
}
