#include "tests/desktop/MenuOnScreen.h"

#include <algorithm>
#include <optional>
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

/// What an event tells of may be gone again, as a tool tip is when a menu opens.
bool hasRole(const Accessible& object, const std::string& role) {
  try {
    return object.role() == role;
  } catch (const BusError&) {
    return false;
  }
}

/// An object of that role in `program` which was told to be so since the last call.
std::optional<Accessible> told(AccessibilityBus& reader, const BusObject& program,
                               const std::string& state, const std::string& role) {
  for (const AccessibilityBus::Event& event : reader.events()) {
    const Accessible object({program.bus(), program.program(), event.path});
    if (event.kind == state && event.detail == 1 && hasRole(object, role)) {
      return object;
    }
  }
  return std::nullopt;
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

MenuOnScreen menuTold(AccessibilityBus& reader, pid_t process, const std::function<void()>& open,
                      const std::function<void()>& highlight) {
  const BusObject program = reader.program(process).object();
  reader.events();
  open();
  // It is on the screen a moment before it has the keyboard, and told of when it has.
  if (!eventually([&] {
        return told(reader, program, "StateChanged showing", "popup menu").has_value();
      })) {
    throw std::runtime_error("no menu opens");
  }
  highlight();
  std::optional<Accessible> line;
  if (!eventually([&] {
        line = told(reader, program, "StateChanged focused", "menu item");
        return line.has_value();
      })) {
    throw std::runtime_error("no line of a menu is told of");
  }
  return MenuOnScreen(line->parent());
}

}  // namespace vistrel::testbed
