#include "tests/macos/fakes/AppKitFakes.h"
#include "tests/macos/fakes/Recorder.h"
#include "tests/macos/fakes/State.h"
#include "tests/macos/fakes/World.h"

using namespace vistrel;

@implementation NSMenuItem (VLBehaviour)

+ (NSMenuItem*)separatorItem {
  NSMenuItem* const line = [[NSMenuItem alloc] init];
  line.isSeparator = YES;
  return line;
}

- (instancetype)initWithTitle:(NSString*)title
                       action:(SEL)action
                keyEquivalent:(NSString*)keyEquivalent {
  self = [super init];
  fake::record(self, _cmd, title, action, keyEquivalent);
  self.title = title;
  [self keepAction:action];
  self.keyEquivalent = keyEquivalent;
  [self keepEnabled:YES];
  return self;
}

@end

@implementation NSMenu (VLBehaviour)

- (instancetype)initWithTitle:(NSString*)title {
  self = [super init];
  fake::record(self, _cmd, title);
  self.title = title;
  self.items = [NSMutableArray array];
  // By default it does: NSMenu, autoenablesItems.
  [self keepAutoenablesItems:YES];
  return self;
}

/// Raises when the line is in a menu already: NSMenu, insertItem:atIndex:, which this calls.
- (void)addItem:(NSMenuItem*)line {
  fake::record(self, _cmd, line);
  if (line.menu != nil) fake::fail(fake::describe(line) + " is in a menu already");
  line.menu = self;
  [self.items addObject:line];
}

- (void)removeAllItems {
  fake::record(self, _cmd);
  for (NSMenuItem* line in self.items) line.menu = nil;
  self.items = [NSMutableArray array];
}

- (NSArray<NSMenuItem*>*)itemArray {
  fake::checkThread(self, _cmd);
  return [self.items copy];
}

@end

namespace {

/// Whoever of the responder chain performs an action without a target: the key window, then the
/// application.
id responderTo(SEL action) {
  NSApplication* const application = NSApplication.sharedApplication;
  for (id responder : {static_cast<id>(application.keyWindow), static_cast<id>(application)}) {
    if (responder != nil && [responder respondsToSelector:action]) return responder;
  }
  return nil;
}

id targetOf(NSMenuItem* line) {
  if (line.action == nullptr) return nil;
  if (line.target == nil) return responderTo(line.action);
  return [line.target respondsToSelector:line.action] ? line.target : nil;
}

}  // namespace

namespace vistrel::fake {

void open(NSMenu* menu) {
  // Before the menu is displayed: NSMenuDelegate, menuNeedsUpdate:.
  act(^{
    if ([static_cast<NSObject*>(menu.delegate) respondsToSelector:@selector(menuNeedsUpdate:)]) {
      [menu.delegate menuNeedsUpdate:menu];
    }
  });
}

bool isEnabled(NSMenuItem* line) {
  if (!line.menu.autoenablesItems) return line.isEnabled;
  // Apple, Application Menu and Pop-up List Programming Topics, "Enabling Menu Items".
  return line.submenu != nil || targetOf(line) != nil;
}

void choose(NSMenuItem* line) {
  if (!isEnabled(line)) fail("the line " + describe(line.title) + " is not enabled");
  act(^{
    [targetOf(line) perform:line.action with:line];
  });
}

}  // namespace vistrel::fake
