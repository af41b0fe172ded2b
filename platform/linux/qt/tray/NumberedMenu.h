#pragma once

#include <QStringList>
#include <QVariant>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "platform/Menu.h"
#include "platform/linux/qt/tray/BusTypes.h"

namespace vistrel::platform::linux_desktop {

/// A menu as a host reads it over the bus (com.canonical.dbusmenu): its lines, those of submenus
/// included, by numbers. The menu itself is number 0.
class NumberedMenu {
 public:
  /// An empty one.
  NumberedMenu() = default;
  /// The lines have numbers that none in `former` has, except for those of the menu itself that are
  /// what they were there: a host that shows them leaves them alone.
  NumberedMenu(const Menu& menu, const NumberedMenu& former);

  /// Null when there is no such line.
  std::shared_ptr<MenuItem> item(int number) const;
  /// The line, or the menu, with `depth` levels of what is below it (all of them: negative); none
  /// when there is no such line. Of the properties those that `names` asks for (all of them:
  /// empty).
  std::optional<MenuLayout> layout(int number, int depth, const QStringList& names) const;

 private:
  struct Line {
    std::shared_ptr<MenuItem> item;
    std::vector<int> children;
  };

  std::vector<int> add(const Menu& menu, const std::vector<int>& formerNumbers,
                       const NumberedMenu& former);

  std::map<int, Line> lines_;
  std::vector<int> topLevel_;
  int next_ = 1;
};

}  // namespace vistrel::platform::linux_desktop
