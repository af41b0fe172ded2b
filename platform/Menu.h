#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/Action.h"

namespace vistrel::platform {

class Menu;

/// Fills a menu each time it is about to open. Held weakly by the menu.
class MenuDelegate {
 public:
  virtual ~MenuDelegate() = default;
  virtual void menuNeedsUpdate(Menu& menu) = 0;
};

/// What shows a menu, if anything does. Held weakly by the menu. Main thread.
class MenuPeer {
 public:
  virtual ~MenuPeer() = default;
  /// Lines came or went, perhaps while the menu is open.
  virtual void itemsDidChange() = 0;
};

/// Anything that an item stands for; the receiver asks for its own type by `dynamic_pointer_cast`.
class RepresentedObject {
 public:
  virtual ~RepresentedObject() = default;
};

/// Raw values are AppKit's NSControlStateValue.
enum class MenuItemState { off = 0, on = 1 };

/// One line of a menu: a command, the door to a submenu, a header (disabled), or a separator. Main
/// thread. Set up before it is added to a menu.
class MenuItem {
 public:
  /// `keyEquivalent` is a lower-case letter that is pressed with Command, or empty.
  MenuItem(std::string title, Action action, std::string keyEquivalent)
      : title_(std::move(title)),
        action_(std::move(action)),
        keyEquivalent_(std::move(keyEquivalent)) {}

  static std::shared_ptr<MenuItem> separatorItem();
  bool isSeparatorItem() const { return separator_; }

  const std::string& title() const { return title_; }
  const Action& action() const { return action_; }
  const std::string& keyEquivalent() const { return keyEquivalent_; }
  bool isEnabled() const { return enabled_; }
  void setEnabled(bool enabled) { enabled_ = enabled; }
  /// On shows a check mark.
  MenuItemState state() const { return state_; }
  void setState(MenuItemState state) { state_ = state; }
  /// A number of the owner's choosing.
  int tag() const { return tag_; }
  void setTag(int tag) { tag_ = tag; }
  const std::shared_ptr<RepresentedObject>& representedObject() const { return representedObject_; }
  void setRepresentedObject(std::shared_ptr<RepresentedObject> object) {
    representedObject_ = std::move(object);
  }
  const std::shared_ptr<Menu>& submenu() const { return submenu_; }
  void setSubmenu(std::shared_ptr<Menu> submenu) { submenu_ = std::move(submenu); }

 private:
  std::string title_;
  Action action_;
  std::string keyEquivalent_;
  bool separator_ = false;
  bool enabled_ = true;
  MenuItemState state_ = MenuItemState::off;
  int tag_ = 0;
  std::shared_ptr<RepresentedObject> representedObject_;
  std::shared_ptr<Menu> submenu_;
};

/// Lines in order. Main thread. Make menus with `std::make_shared`.
class Menu : public std::enable_shared_from_this<Menu> {
 public:
  explicit Menu(std::string title) : title_(std::move(title)) {}
  Menu(const Menu&) = delete;
  Menu& operator=(const Menu&) = delete;

  const std::string& title() const { return title_; }
  void setDelegate(std::weak_ptr<MenuDelegate> delegate) { delegate_ = std::move(delegate); }
  std::shared_ptr<MenuDelegate> delegate() const { return delegate_.lock(); }
  const std::vector<std::shared_ptr<MenuItem>>& items() const { return items_; }
  void addItem(std::shared_ptr<MenuItem> item);
  void removeAllItems();

  // For peers.

  /// The menu is about to open: has the delegate fill it.
  void update();
  void setPeer(std::weak_ptr<MenuPeer> peer) { peer_ = std::move(peer); }

 private:
  void itemsDidChange();

  std::string title_;
  std::weak_ptr<MenuDelegate> delegate_;
  std::weak_ptr<MenuPeer> peer_;
  std::vector<std::shared_ptr<MenuItem>> items_;
};

/// A person has chosen `item`: sends its action, unless it is disabled. The item and the target
/// stay alive for the length of the call.
void performAction(const std::shared_ptr<MenuItem>& item);

}  // namespace vistrel::platform
