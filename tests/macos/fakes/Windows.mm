#include <algorithm>
#include <vector>

#include "tests/macos/fakes/AppKitFakes.h"
#include "tests/macos/fakes/Displays.h"
#include "tests/macos/fakes/Recorder.h"
#include "tests/macos/fakes/State.h"
#include "tests/macos/fakes/World.h"

using namespace vistrel;

extern "C" void objc_release(void* object);

namespace {

constexpr CGFloat titleBarHeight = 28;
constexpr double animationSeconds = 0.2;
/// NSFloatingWindowLevel and NSNormalWindowLevel.
constexpr NSWindowLevel floatingLevel = 3;
constexpr NSWindowLevel normalLevel = 0;

bool isSame(CGPoint a, CGPoint b) { return a.x == b.x && a.y == b.y; }
bool isSame(CGSize a, CGSize b) { return a.width == b.width && a.height == b.height; }

/// Without keeping them.
std::vector<NSWindow * __unsafe_unretained>& allWindows() {
  static auto* const windows = new std::vector<NSWindow * __unsafe_unretained>;
  return *windows;
}

CGRect halfway(const CGRect& a, const CGRect& b) {
  return {{(a.origin.x + b.origin.x) / 2, (a.origin.y + b.origin.y) / 2},
          {(a.size.width + b.size.width) / 2, (a.size.height + b.size.height) / 2}};
}

/// How much of `frame` is on `screen`.
CGFloat areaOn(const fake::ScreenArea& screen, const CGRect& frame) {
  const auto overlap = [](CGFloat a, CGFloat aLength, CGFloat b, CGFloat bLength) {
    return std::max(std::min(a + aLength, b + bLength) - std::max(a, b), 0.0);
  };
  const CGRect& area = screen.frame;
  return overlap(area.origin.x, area.size.width, frame.origin.x, frame.size.width) *
         overlap(area.origin.y, area.size.height, frame.origin.y, frame.size.height);
}

/// Of the screen that shows most of `frame`: NSWindow, screen.
double backingScaleAt(const CGRect& frame) {
  const auto& screens = fake::world().desktop().screens;
  const auto most = std::max_element(screens.begin(), screens.end(),
                                     [&frame](const auto& first, const auto& second) {
                                       return areaOn(first, frame) < areaOn(second, frame);
                                     });
  return most != screens.end() ? most->backingScaleFactor : 1;
}

}  // namespace

@implementation NSWindow (VLBehaviour)

- (instancetype)initWithContentRect:(NSRect)content
                          styleMask:(NSWindowStyleMask)style
                            backing:(NSBackingStoreType)backing
                              defer:(BOOL)defer {
  self = [super init];
  fake::record(self, _cmd, content, style, backing, defer);
  self.styleMask = style;
  self.frame = [self frameRectForContentRect:content];
  // By default a window is, a panel is not: NSWindow, isReleasedWhenClosed.
  [self keepReleasedWhenClosed:![self isKindOfClass:[NSPanel class]]];
  // By default a panel does, a window does not: NSWindow, hidesOnDeactivate.
  [self keepHidesOnDeactivate:[self isKindOfClass:[NSPanel class]]];
  [self keepContentView:[[NSView alloc] initWithFrame:{{0, 0}, content.size}]];
  allWindows().push_back(self);
  return self;
}

- (void)dealloc {
  std::erase(allWindows(), self);
  self.contentView.windowShowingIt = nil;
}

- (NSRect)frameRectForContentRect:(NSRect)content {
  fake::checkThread(self, _cmd);
  if ((self.styleMask & NSWindowStyleMaskTitled) != 0) content.size.height += titleBarHeight;
  return content;
}

- (NSRect)contentRectForFrameRect:(NSRect)frame {
  fake::checkThread(self, _cmd);
  if ((self.styleMask & NSWindowStyleMaskTitled) != 0) frame.size.height -= titleBarHeight;
  return frame;
}

/// Tells the delegate of what has changed: NSWindowDelegate, windowDidMove:, windowDidResize:,
/// windowDidChangeBackingProperties:.
- (void)adoptFrame:(NSRect)frame {
  const CGRect former = self.frame;
  self.frame = frame;
  [self.contentView keepFrame:{{0, 0}, [self contentRectForFrameRect:frame].size}];
  if (!isSame(former.origin, frame.origin)) [self tell:@selector(windowDidMove:)];
  if (!isSame(former.size, frame.size)) [self tell:@selector(windowDidResize:)];
  if (backingScaleAt(former) != backingScaleAt(frame)) {
    [self tell:@selector(windowDidChangeBackingProperties:)];
  }
}

- (void)tell:(SEL)selector {
  NSObject* const delegate = static_cast<NSObject*>(self.delegate);
  if (![delegate respondsToSelector:selector]) return;
  [delegate perform:selector with:[[NSNotification alloc] init]];
}

- (void)setFrame:(NSRect)frame display:(BOOL)displays {
  fake::record(self, _cmd, frame, displays);
  [self adoptFrame:frame];
  if (displays) fake::displayWindows();
}

/// Animates on the main thread, with a run loop of its own until the frame has arrived:
/// NSAnimation, BlockingMode.blocking, its default. For how long: NSWindow, animationResizeTime:.
- (void)setFrame:(NSRect)frame display:(BOOL)displays animate:(BOOL)animates {
  fake::record(self, _cmd, frame, displays, animates);
  if (animates) {
    [self adoptFrame:halfway(self.frame, frame)];
    fake::advance(animationSeconds);
  }
  [self adoptFrame:frame];
  if (displays) fake::displayWindows();
}

- (void)setFrameOrigin:(NSPoint)origin {
  fake::record(self, _cmd, origin);
  [self adoptFrame:{origin, self.frame.size}];
}

/// In the middle across, somewhat above it in height: NSWindow, center.
- (void)center {
  fake::record(self, _cmd);
  const CGRect area = fake::world().desktop().screens.front().visibleFrame;
  const CGSize size = self.frame.size;
  [self adoptFrame:{{area.origin.x + (area.size.width - size.width) / 2,
                     area.origin.y + (area.size.height - size.height) * 2 / 3},
                    size}];
}

- (BOOL)setFrameUsingName:(NSWindowFrameAutosaveName)name {
  fake::record(self, _cmd, name);
  const auto& saved = fake::world().desktop().savedFrames;
  const auto found = saved.find(name.UTF8String);
  if (found == saved.end()) return NO;
  [self adoptFrame:found->second];
  return YES;
}

- (BOOL)setFrameAutosaveName:(NSWindowFrameAutosaveName)name {
  fake::record(self, _cmd, name);
  return YES;
}

- (void)setContentView:(NSView*)view {
  fake::record(self, _cmd, view);
  self.contentView.windowShowingIt = nil;
  [self keepContentView:view];
  view.windowShowingIt = self;
  [view keepFrame:{{0, 0}, [self contentRectForFrameRect:self.frame].size}];
}

/// With a title bar or a resize bar it can: NSWindow, canBecomeKeyWindow.
- (BOOL)canBecomeKeyWindow {
  fake::checkThread(self, _cmd);
  return (self.styleMask & (NSWindowStyleMaskTitled | NSWindowStyleMaskResizable)) != 0;
}

- (void)orderFrontRegardless {
  fake::record(self, _cmd);
  self.isShown = YES;
}

- (void)makeKeyAndOrderFront:(id)sender {
  fake::record(self, _cmd, sender);
  self.isShown = YES;
  if (!self.canBecomeKeyWindow) return;
  for (NSWindow* window : fake::windows()) window.isKey = window == self;
}

- (void)orderOut:(id)sender {
  fake::record(self, _cmd, sender);
  self.isShown = self.isKey = NO;
}

- (void)miniaturize:(id)sender {
  fake::record(self, _cmd, sender);
  self.isMiniaturized = YES;
  self.isKey = NO;
}

- (void)performMiniaturize:(id)__unused sender {
  [self miniaturize:self];
}

- (void)performClose:(id)__unused sender {
  [self close];
}

/// Releases itself unless told otherwise: NSWindow, close.
- (void)close {
  fake::record(self, _cmd);
  [self tell:@selector(windowWillClose:)];
  self.isShown = self.isKey = NO;
  if (self.isReleasedWhenClosed) objc_release((__bridge void*)self);
}

@end

@implementation NSPanel (VLBehaviour)

/// Sets the level too: NSPanel, isFloatingPanel.
- (void)setFloatingPanel:(BOOL)floating {
  fake::record(self, _cmd, floating);
  [self keepFloatingPanel:floating];
  [self keepLevel:floating ? floatingLevel : normalLevel];
}

@end

@implementation NSScreen (VLBehaviour)

+ (instancetype)screenOf:(const fake::ScreenArea&)area {
  NSScreen* const screen = [[NSScreen alloc] init];
  screen.frame = area.frame;
  screen.visibleFrame = area.visibleFrame;
  screen.backingScaleFactor = area.backingScaleFactor;
  return screen;
}

/// Of the displays that nobody sees, too.
+ (NSArray<NSScreen*>*)screens {
  const fake::Desktop& desktop = fake::world().desktop();
  NSMutableArray<NSScreen*>* const screens = [NSMutableArray array];
  for (const fake::ScreenArea& area : desktop.screens) [screens addObject:[self screenOf:area]];
  for (const auto& [number, bounds] : desktop.virtualDisplays.displays) {
    const CGRect frame = fake::flipped(bounds);
    [screens addObject:[self screenOf:{frame, frame, 2}]];
  }
  return screens;
}

+ (NSScreen*)mainScreen {
  return NSScreen.screens.firstObject;
}

@end

namespace vistrel::fake {

std::vector<NSWindow*> windows() { return {allWindows().begin(), allWindows().end()}; }

}  // namespace vistrel::fake
