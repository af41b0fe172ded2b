#pragma once

#include <QStringList>
#include <QVariant>
#include <memory>
#include <optional>
#include <vector>

#include "platform/Menu.h"
#include "platform/linux/qt/BusTypes.h"

namespace vistrel::platform::linux_desktop {

/// A menu as a host reads it over the bus (com.canonical.dbusmenu): its lines, those of submenus
/// included, by numbers. The menu itself is number 0.
class NumberedMenu {
 public:
  /// An empty one.
  NumberedMenu() = default;
  /// The lines get numbers from `first` on.
  NumberedMenu(const Menu& menu, int first);

  /// One more than the last line's.
  int end() const { return first_ + static_cast<int>(lines_.size()); }
  bool contains(int number) const { return number >= first_ && number < end(); }
  /// Of one that it contains.
  const std::shared_ptr<MenuItem>& item(int number) const { return line(number).item; }

  /// The line, or the menu, with `depth` levels of what is below it (all of them: negative); none
  /// when there is no such line. Of the properties those that `names` asks for (all of them:
  /// empty).
  std::optional<MenuLayout> layout(int number, int depth, const QStringList& names) const;

 private:
  struct Line {
    std::shared_ptr<MenuItem> item;
    std::vector<int> children;
  };

  std::vector<int> add(const Menu& menu);
  const Line& line(int number) const { return lines_[static_cast<std::size_t>(number - first_)]; }

  int first_ = 1;
  std::vector<Line> lines_;
  std::vector<int> topLevel_;
};

}  // namespace vistrel::platform::linux_desktop
