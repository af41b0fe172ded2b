#include "platform/macos/menus/ShownMenu.h"

#import <objc/runtime.h>

#include <utility>

#include "platform/Dispatch.h"
#include "platform/macos/Conversions.h"

using namespace vistrel::platform;

NS_ASSUME_NONNULL_BEGIN

/// What a line does when it is chosen. The line keeps it as its represented object.
@interface VLMenuCommand : NSObject
- (instancetype)initWithItem:(std::shared_ptr<MenuItem>)item;
- (void)perform:(nullable id)sender;
@end

/// Fills an AppKit menu with the items of the core's, and is its delegate where the core's menu has
/// one.
@interface VLMenuFiller : NSObject <NSMenuDelegate>
- (instancetype)initWithMenu:(std::shared_ptr<Menu>)menu shownBy:(NSMenu*)shown;
- (BOOL)isForMenu:(const Menu&)menu;
- (void)itemsDidChange;
- (void)refill;
@end

NS_ASSUME_NONNULL_END

namespace {

static_assert(static_cast<NSControlStateValue>(MenuItemState::off) == NSControlStateValueOff);
static_assert(static_cast<NSControlStateValue>(MenuItemState::on) == NSControlStateValueOn);

class Follower final : public MenuPeer {
 public:
  explicit Follower(VLMenuFiller* filler) : filler_(filler) {}
  void itemsDidChange() override { [filler_ itemsDidChange]; }

 private:
  __weak VLMenuFiller* const filler_;
};

void setCommand(const std::shared_ptr<MenuItem>& item, NSMenuItem* line) {
  if (item->action().target() != nullptr) {
    VLMenuCommand* const command = [[VLMenuCommand alloc] initWithItem:item];
    line.representedObject = command;
    line.target = command;
    line.action = @selector(perform:);
  } else if (!item->action().selector().empty()) {
    line.action = NSSelectorFromString(macos::nsString(item->action().selector()));
  }
}

/// Most menus enable a line by themselves when somebody performs its action: our command, or an
/// object of the responder chain, which may know better. So a disabled item has no action.
NSMenuItem* makeLine(const std::shared_ptr<MenuItem>& item) {
  if (item->isSeparatorItem()) return [NSMenuItem separatorItem];
  NSMenuItem* const line =
      [[NSMenuItem alloc] initWithTitle:macos::nsString(item->title())
                                 action:nil
                          keyEquivalent:macos::nsString(item->keyEquivalent())];
  line.enabled = item->isEnabled();
  line.state = static_cast<NSControlStateValue>(item->state());
  line.tag = item->tag();
  if (!item->isEnabled()) return line;
  if (item->submenu()) {
    line.submenu = macos::makeMenu(item->submenu());
  } else {
    setCommand(item, line);
  }
  return line;
}

}  // namespace

@implementation VLMenuCommand {
  std::shared_ptr<MenuItem> _item;
}

- (instancetype)initWithItem:(std::shared_ptr<MenuItem>)item {
  self = [super init];
  if (self != nil) _item = std::move(item);
  return self;
}

- (void)perform:(nullable id)__unused sender {
  performAction(_item);
}

@end

@implementation VLMenuFiller {
  std::shared_ptr<Menu> _menu;
  std::shared_ptr<Follower> _follower;
  __weak NSMenu* _shown;
  BOOL _isStale;
}

- (instancetype)initWithMenu:(std::shared_ptr<Menu>)menu shownBy:(NSMenu*)shown {
  self = [super init];
  if (self != nil) {
    _menu = std::move(menu);
    _shown = shown;
    _follower = std::make_shared<Follower>(self);
    _menu->setPeer(_follower);
    _isStale = YES;
    [self refill];
  }
  return self;
}

- (BOOL)isForMenu:(const Menu&)menu {
  return _menu.get() == &menu;
}

- (void)menuNeedsUpdate:(NSMenu*)__unused menu {
  _menu->update();
  [self refill];
}

/// Without it AppKit has the menu filled at every press of a key with Command, to look for one of
/// its lines' keys. What delegates of the core fill in has none.
- (BOOL)menuHasKeyEquivalent:(NSMenu*)__unused menu
                    forEvent:(NSEvent*)__unused event
                      target:(id _Nullable* _Nonnull)__unused target
                      action:(SEL _Nullable* _Nonnull)__unused action {
  return NO;
}

- (void)itemsDidChange {
  if (_isStale) return;
  _isStale = YES;
  // Once for all the changes of one refill.
  __weak VLMenuFiller* const filler = self;
  mainQueue().async([filler] { [filler refill]; });
}

- (void)refill {
  if (!_isStale) return;
  _isStale = NO;
  NSMenu* const shown = _shown;
  [shown removeAllItems];
  for (const auto& item : _menu->items()) [shown addItem:makeLine(item)];
}

@end

namespace vistrel::platform::macos {

namespace {

const char fillerKey = 0;

}  // namespace

NSMenu* makeMenu(const std::shared_ptr<Menu>& menu) {
  NSMenu* const shown = [[NSMenu alloc] initWithTitle:nsString(menu->title())];
  VLMenuFiller* const filler = [[VLMenuFiller alloc] initWithMenu:menu shownBy:shown];
  // The menu holds its delegate weakly, and a copy of it has no filler.
  objc_setAssociatedObject(shown, &fillerKey, filler, OBJC_ASSOCIATION_RETAIN_NONATOMIC);
  if (menu->delegate()) {
    shown.delegate = filler;
    // Lines may come while the menu is open, when AppKit has looked which of them to enable.
    shown.autoenablesItems = NO;
  }
  return shown;
}

NSMenu* submenuShowing(const Menu& menu, NSMenu* bar) {
  for (NSMenuItem* line in bar.itemArray) {
    NSMenu* const submenu = line.submenu;
    if (submenu == nil) continue;
    VLMenuFiller* const filler = objc_getAssociatedObject(submenu, &fillerKey);
    if ([filler isForMenu:menu]) return submenu;
  }
  return nil;
}

}  // namespace vistrel::platform::macos
