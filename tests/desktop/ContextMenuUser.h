#pragma once

#include <memory>
#include <optional>
#include <string>

#include "tests/desktop/DesktopTest.h"
#include "tests/desktop/MenuOnScreen.h"
#include "tests/support/AccessibilityBus.h"

namespace vistrel::testbed {

/// A person who opens a panel's menu and chooses from it, read by a screen reader. One source.
class ContextMenuUser : public DesktopTest {
 protected:
  ContextMenuUser() : ContextMenuUser(PrivateDisplay::Options{}) {}
  /// In a session of other options.
  explicit ContextMenuUser(const PrivateDisplay::Options& options)
      : DesktopTest(options), source_(openSource()) {}

  /// Starts the program with a screen reader and mirrors one of `count` sources.
  PanelOnScreen openPanel(std::size_t row, std::size_t count) {
    reader_ = std::make_unique<AccessibilityBus>(display_);
    startVistrel();
    return mirrorRow(row, count, 1);
  }
  /// The same with the only source there is.
  PanelOnScreen openPanel() {
    const PanelOnScreen panel = openPanel(0, 1);
    EXPECT_TRUE(becomes(panel, PanelOnScreen::computedArea(sourceArea, firstPanel)));
    EXPECT_TRUE(eventually([&] { return panel.shows(fourColours); }));
    return panel;
  }

  /// The menu that opens at what the person does in `open`, its first line highlighted.
  template <class Open>
  MenuOnScreen menuOpenedBy(const Open& open) {
    reader_->program(vistrel_->process().pid());
    reader_->events();
    open();
    // It is on the screen a moment before it has the keyboard, and told of when it has.
    EXPECT_TRUE(eventually([&] { return told("StateChanged showing", "popup menu").has_value(); }));
    input_.type(keyDown);
    std::optional<Accessible> line;
    EXPECT_TRUE(eventually([&] {
      line = told("StateChanged focused", "menu item");
      return line.has_value();
    })) << "no line of a menu is told of";
    return MenuOnScreen(line.value().parent());
  }
  MenuOnScreen openMenu(const PanelOnScreen& panel) {
    return menuOpenedBy([&] {
      pointAt(panel, panel.titleBar());
      input_.click(1, InputDriver::Button::right);
    });
  }
  void choose(const MenuOnScreen& menu, const std::string& title) {
    input_.moveTo(menu.line(title));
    ASSERT_TRUE(eventually([&] { return menu.isHighlighted(title); }));
    input_.click();
    EXPECT_TRUE(eventually([&] { return !isMenuOnScreen(); }));
  }
  void chooseScale(const PanelOnScreen& panel, const std::string& title) {
    const MenuOnScreen menu = openMenu(panel);
    input_.moveTo(menu.line("Scale"));
    choose(menu.submenu("Scale"), title);
  }
  void closeMenu() {
    input_.type(keyEscape);
    EXPECT_TRUE(eventually([&] { return !isMenuOnScreen(); }));
  }

  bool isMenuOnScreen() const { return !menusOnScreen().empty(); }

  /// What the keys of the menu are to leave alone.
  struct Keyboard {
    xcb_window_t active;
    xcb_window_t focused;

    friend bool operator==(const Keyboard&, const Keyboard&) = default;
  };
  Keyboard keyboard() const { return {activeWindow(), focusedWindow(connection_)}; }

  void awaitMenuKeys(bool areTaken) {
    ASSERT_TRUE(eventually([&] { return input_.isTaken(keyMenu) == areTaken; }));
  }

  std::unique_ptr<TestWindow> source_;
  std::unique_ptr<AccessibilityBus> reader_;

 private:
  /// An object of that role which was told to be so since the last call.
  std::optional<Accessible> told(const std::string& state, const std::string& role) {
    const BusObject program = reader_->program(vistrel_->process().pid()).object();
    for (const AccessibilityBus::Event& event : reader_->events()) {
      const Accessible object({program.bus(), program.program(), event.path});
      if (event.kind == state && event.detail == 1 && hasRole(object, role)) {
        return object;
      }
    }
    return std::nullopt;
  }
  /// What an event tells of may be gone again, as a tool tip is when a menu opens.
  static bool hasRole(const Accessible& object, const std::string& role) {
    try {
      return object.role() == role;
    } catch (const BusError&) {
      return false;
    }
  }
};

}  // namespace vistrel::testbed
