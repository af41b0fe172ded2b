#include "tests/desktop/MenuOnScreen.h"

#include <algorithm>
#include <stdexcept>

#include "tests/support/Poll.h"

namespace vistrel::testbed {
namespace {

using enum AccessibleState;

bool opensSubmenu(const Accessible& item) {
  return item.actions() == std::vector<std::string>{"ShowMenu"};
}

std::string lineOf(const Accessible& item) {
  if (item.role() == "separator") return "---";
  std::string line = item.name();
  if (!item.is(enabled)) line = "(" + line + ")";
  if (item.is(checked)) line = "✓ " + line;
  if (opensSubmenu(item)) line += " ▸";
  return line;
}

}  // namespace

bool MenuOnScreen::isOpen() const {
  try {
    return menu_.is(showing);
  } catch (const BusError&) {
    return false;  // it is gone
  }
}

std::string MenuOnScreen::lines() const {
  std::string lines;
  for (const Accessible& item : menu_.children()) {
    try {
      lines += lineOf(item) + "\n";
    } catch (const BusError&) {
      continue;  // the menu is being filled anew
    }
  }
  return lines;
}

bool MenuOnScreen::isHighlighted(const std::string& title) const { return item(title).is(focused); }

std::string MenuOnScreen::highlighted() const {
  for (const Accessible& item : menu_.children()) {
    try {
      if (item.is(focused)) return item.name();
    } catch (const BusError&) {
      continue;  // the menu is being filled anew
    }
  }
  return {};
}

MenuOnScreen MenuOnScreen::submenu(const std::string& title) const {
  const MenuOnScreen menu(item(title).children().at(0));
  if (!eventually([&] { return menu.isOpen(); })) {
    throw std::runtime_error("\"" + title + "\" does not open");
  }
  return menu;
}

Accessible MenuOnScreen::item(const std::string& title) const {
  const std::vector<Accessible> items = menu_.children();
  const auto found =
      std::ranges::find_if(items, [&](const Accessible& item) { return item.name() == title; });
  if (found == items.end()) {
    throw std::runtime_error("no line \"" + title + "\" among:\n" + lines());
  }
  return *found;
}

}  // namespace vistrel::testbed
