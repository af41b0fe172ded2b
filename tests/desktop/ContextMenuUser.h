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
    return menuTold(*reader_, vistrel_->process().pid(), open, [&] { input_.type(keyDown); });
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
};

}  // namespace vistrel::testbed
