#pragma once

#include <QMenu>
#include <memory>

#include "platform/Menu.h"

namespace vistrel::platform::linux_desktop {

/// Shows a menu of the core with the toolkit's, submenus included. Has it filled each time it is
/// about to open, and follows its items in place while it is open. A chosen item's action is sent
/// at a later turn of the main queue, when the menu is off the screen. Main thread.
class ShownMenu final : public QMenu {
 public:
  explicit ShownMenu(std::shared_ptr<Menu> menu, QWidget* parent = nullptr);
  ~ShownMenu() override;

  void setVisible(bool visible) override;

 private:
  class Follower;
  class Line;

  void itemsDidChange();
  /// Lines that stay what they are keep their place, so that an open menu neither flickers nor
  /// loses what a person is pointing at.
  void refill();
  void appendLine(const std::shared_ptr<MenuItem>& item);
  void highlight(const QString& text);
  void stayOnScreen();

  const std::shared_ptr<Menu> menu_;
  const std::shared_ptr<Follower> follower_;
  bool isStale_ = true;
};

}  // namespace vistrel::platform::linux_desktop
