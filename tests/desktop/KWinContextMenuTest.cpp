#include <gmock/gmock.h>

#include "tests/desktop/KWinDesktopTest.h"

namespace vistrel::testbed {
namespace {

/// A panel's menu while a native window has the keyboard.
class KWinContextMenu : public OneNativeSource {
 protected:
  static constexpr const char* titleOfPanel = "Vistrel — com.example.sample — Source";

  PanelOnScreen openPanel() {
    const PanelOnScreen panel = mirrorSource();
    EXPECT_EQ(active(), "Source");
    return panel;
  }
  void open(const PanelOnScreen& panel) {
    pressMenuButton(panel);
    ASSERT_TRUE(eventually([&] { return isMenuOnScreen(); })) << "no menu opens";
  }
  void expectClosed() {
    EXPECT_TRUE(eventually([&] { return !isMenuOnScreen(); })) << "the menu stays";
  }
  void expectKeyboardAtSource() {
    EXPECT_TRUE(eventually([&] { return active() == "Source"; })) << active();
    const int before = source_->typedKeys();
    hand_.type(keyA);
    EXPECT_TRUE(eventually([&] { return source_->typedKeys() > before; }));
  }
  /// The titles of the program's windows that a taskbar or pager lists, or that ask for attention.
  std::string listed() {
    return kwin_.run("tell(workspace.clientList().filter(function (each) { return each.pid == " +
                     std::to_string(vistrel_->process().pid()) +
                     " && (!each.skipTaskbar || !each.skipPager || each.demandsAttention); "
                     "}).map(function (each) { return each.caption; }).join('\\n'))");
  }
};

TEST_F(KWinContextMenu, ClosesAsMenusDoAndGivesTheKeyboardBack) {
  const PanelOnScreen panel = openPanel();
  EXPECT_EQ(listed(), "Vistrel");
  EXPECT_NE(kwin_.run(std::string("tell(win('") + titleOfPanel + "'))"), "undefined");
  expectKeyboardAtSource();

  open(panel);
  EXPECT_EQ(listed(), "Vistrel") << "whoever holds the keyboard is in a list";
  // Keys go to nobody while the compositor gives the keyboard to another.
  EXPECT_TRUE(eventually([&] {
    hand_.type(keyEscape);
    return !isMenuOnScreen();
  }));
  expectKeyboardAtSource();

  open(panel);
  hand_.clickAt({600, 800});
  expectClosed();
  expectKeyboardAtSource();

  open(panel);
  kwin_.showDesktop(2);
  expectClosed();
  kwin_.showDesktop(1);
  expectKeyboardAtSource();
}

TEST_F(KWinContextMenu, CarriesOutWhatIsChosenAndGivesTheKeyboardBack) {
  const PanelOnScreen panel = openPanel();
  const Rect full = panel.area();
  choose(openMenu(panel), "Roll Up (Title Only)");
  EXPECT_TRUE(becomes(panel, {full.x, full.y, full.width, PanelOnScreen::titleBarHeight}));
  expectKeyboardAtSource();
  choose(openMenu(panel), "Roll Down (Show Mirror)");
  EXPECT_TRUE(becomes(panel, full));
  expectKeyboardAtSource();
}

}  // namespace
}  // namespace vistrel::testbed
