#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace vistrel::platform {

class MenuItem;
class Menu;

/// Fills a menu each time it is about to open. Held weakly by the menu.
class MenuDelegate {
 public:
  virtual ~MenuDelegate() = default;
  virtual void menuNeedsUpdate(Menu& menu) = 0;
};

/// What a menu item does when chosen: a selector's name, and the handler of a target that is held
/// weakly and is given the item. Choosing locks the target for the length of the call.
class MenuAction {
 public:
  MenuAction() = default;

  template <class Target>
  MenuAction(std::string selector, std::weak_ptr<Target> target,
             void (Target::*handler)(const MenuItem& sender))
      : selector_(std::move(selector)),
        target_(target),
        handler_([target, handler](const MenuItem& sender) {
          if (const auto strong = target.lock()) (strong.get()->*handler)(sender);
        }) {}

  const std::string& selector() const { return selector_; }
  std::shared_ptr<const void> target() const { return target_.lock(); }
  void send(const MenuItem& sender) const {
    if (const auto handler = handler_) handler(sender);
  }

 private:
  std::string selector_;
  std::weak_ptr<const void> target_;
  std::function<void(const MenuItem&)> handler_;
};

/// Anything that an item stands for; the receiver asks for its own type by `dynamic_pointer_cast`.
class RepresentedObject {
 public:
  virtual ~RepresentedObject() = default;
};

/// One line of a menu. Main thread.
class MenuItem {
 public:
  MenuItem(std::string title, MenuAction action, std::string keyEquivalent)
      : title_(std::move(title)),
        action_(std::move(action)),
        keyEquivalent_(std::move(keyEquivalent)) {}

  const std::string& title() const { return title_; }
  const MenuAction& action() const { return action_; }
  const std::string& keyEquivalent() const { return keyEquivalent_; }
  bool isEnabled() const { return enabled_; }
  void setEnabled(bool enabled) { enabled_ = enabled; }
  const std::shared_ptr<RepresentedObject>& representedObject() const { return representedObject_; }
  void setRepresentedObject(std::shared_ptr<RepresentedObject> object) {
    representedObject_ = std::move(object);
  }

 private:
  std::string title_;
  MenuAction action_;
  std::string keyEquivalent_;
  bool enabled_ = true;
  std::shared_ptr<RepresentedObject> representedObject_;
};

/// Lines in order. Main thread.
class Menu {
 public:
  explicit Menu(std::string title) : title_(std::move(title)) {}

  const std::string& title() const { return title_; }
  void setDelegate(std::weak_ptr<MenuDelegate> delegate) { delegate_ = std::move(delegate); }
  std::shared_ptr<MenuDelegate> delegate() const { return delegate_.lock(); }
  const std::vector<std::shared_ptr<MenuItem>>& items() const { return items_; }
  void addItem(std::shared_ptr<MenuItem> item) { items_.push_back(std::move(item)); }
  void removeAllItems() { items_.clear(); }

 private:
  std::string title_;
  std::weak_ptr<MenuDelegate> delegate_;
  std::vector<std::shared_ptr<MenuItem>> items_;
};

}  // namespace vistrel::platform
