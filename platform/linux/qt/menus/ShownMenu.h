#pragma once

#include <QMenu>
#include <memory>

#include "platform/Menu.h"

namespace vistrel::platform::linux_desktop {

/// Shows a menu of the core with the toolkit's, submenus included. Has it filled each time it is
/// about to open, and follows its items in place while it is open. A menu that is longer than the
/// screen scrolls. A chosen item's action is sent
/// at a later turn of the main queue, when the menu is off the screen. Main thread.
class ShownMenu final : public QMenu {
 public:
  /// Who shows it, unless a person asks for it in the window by a key.
  enum class Shower { program, desktopsBar };

  explicit ShownMenu(std::shared_ptr<Menu> menu, QWidget* parent = nullptr,
                     Shower shower = Shower::program);
  ~ShownMenu() override;

  void setVisible(bool visible) override;

 protected:
  void actionEvent(QActionEvent* event) override;
  void initStyleOption(QStyleOptionMenuItem* option, const QAction* action) const override;

 private:
  class Follower;
  class Line;

  void itemsDidChange();
  /// Lines that stay what they are keep their place, so that an open menu neither flickers nor
  /// loses what a person is pointing at.
  void refill();
  /// How the toolkit is told of the item.
  QString textOf(const MenuItem& item) const;
  /// What the program draws for it.
  QString drawnTextOf(const MenuItem& item) const;
  void makeRoomForDrawnTexts();
  void appendLine(const std::shared_ptr<MenuItem>& item);
  void highlight(const QString& text);
  /// An open one.
  void layOutAnew();

  const std::shared_ptr<Menu> menu_;
  const Shower shower_;
  const std::shared_ptr<Follower> follower_;
  bool isStale_ = true;
};

}  // namespace vistrel::platform::linux_desktop
