#pragma once

#include <functional>
#include <string>
#include <sys/types.h>
#include <utility>

#include "tests/support/AccessibilityBus.h"
#include "tests/support/Accessible.h"

namespace vistrel::testbed {

/// A menu of the program as a person finds it on the screen: a bar, or one that has been opened.
class MenuOnScreen {
 public:
  explicit MenuOnScreen(Accessible menu) : menu_(std::move(menu)) {}

  bool isOpen() const;
  /// Its lines from the top: each its title, in parentheses when it cannot be chosen, with a tick
  /// before it when it is checked, with an arrow after it when it opens a submenu; "---" is a line
  /// between groups.
  std::string lines() const;
  /// Where to point at the line of that title. Throws std::runtime_error when there is none.
  Point line(const std::string& title) const { return item(title).area().centre(); }
  /// Whether that line is the one that a key or a click would choose.
  bool isHighlighted(const std::string& title) const;
  /// The title of that line; empty while there is none.
  std::string highlighted() const;
  /// What that line opens, once it is open. Throws std::runtime_error when it does not open.
  MenuOnScreen submenu(const std::string& title) const;

 private:
  Accessible item(const std::string& title) const;

  Accessible menu_;
};

/// The menu of the program `process` that opens at what a person does in `open`, read by `reader`,
/// with a line highlighted by what `highlight` does. Throws std::runtime_error when none opens, or
/// that is not heard.
MenuOnScreen menuTold(AccessibilityBus& reader, pid_t process, const std::function<void()>& open,
                      const std::function<void()>& highlight);

}  // namespace vistrel::testbed
