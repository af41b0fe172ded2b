#include <chrono>
#include <csignal>
#include <fstream>
#include <functional>
#include <gmock/gmock.h>
#include <sstream>

#include "tests/desktop/KWinDesktopTest.h"
#include "tests/support/DBus.h"

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

/// The keys for a context menu, with the pointer over the panel or not.
class KWinMenuKeys : public KWinContextMenu {
 protected:
  /// The kernel's numbers (linux/input-event-codes.h).
  static constexpr std::uint32_t keyMenu = 127;
  static constexpr std::uint32_t keyShift = 42;
  static constexpr std::uint32_t keyF10 = 68;
  /// The toolkit's.
  static constexpr int menu = 0x01000055;
  static constexpr int shiftF10 = 0x02000000 | 0x01000039;

  /// Whether anybody else may have it for a shortcut of KWin's.
  bool isFree(int key) const {
    return keys_
        .call("org.kde.KGlobalAccel", "isGlobalShortcutAvailable", "is", key, "com.example.other")
        .truth();
  }
  /// Whether the person's settings of shortcuts have the program in them.
  bool isInSettings() const {
    std::ifstream file(desktop_.home() / "config/kglobalshortcutsrc");
    std::ostringstream text;
    text << file.rdbuf();
    return text.str().find("com.tollbeck.vistrel") != std::string::npos;
  }
  void expectMenuAt(const std::function<void()>& press) {
    EXPECT_TRUE(eventually([&] {
      press();
      return eventually([&] { return isMenuOnScreen(); }, std::chrono::seconds(1));
    })) << "no menu opens";
    EXPECT_TRUE(eventually([&] {
      hand_.type(keyEscape);
      return !isMenuOnScreen();
    }));
  }
  void expectMenuKeyAtSource() {
    EXPECT_TRUE(eventually([&] { return active() == "Source"; })) << active();
    const int before = source_->typedKeys();
    hand_.type(keyMenu);
    EXPECT_TRUE(eventually([&] { return source_->typedKeys() > before; }));
    EXPECT_TRUE(!vistrel_ || !isMenuOnScreen());
  }

 private:
  const BusObject keys_{connectToBus(desktop_.busAddress()), "org.kde.kglobalaccel",
                        "/kglobalaccel"};
};

TEST_F(KWinMenuKeys, OpenThePanelsMenuWhileTheyAreMeantForItAndGoToTheSourceElse) {
  const PanelOnScreen panel = openPanel();
  expectMenuKeyAtSource();
  EXPECT_TRUE(isFree(menu) && isFree(shiftF10));
  hand_.moveTo(panel.contents().centre());
  expectMenuAt([&] { hand_.type(keyMenu); });
  expectKeyboardAtSource();
  // XWayland tells only by the next motion that the pointer is over the panel again.
  hand_.moveTo({panel.contents().centre().x + 1, panel.contents().centre().y});
  expectMenuAt([&] { hand_.typeHolding(keyShift, keyF10); });
  hand_.moveTo({600, 800});
  EXPECT_TRUE(eventually([&] { return isFree(menu) && isFree(shiftF10); }));
  expectMenuKeyAtSource();
  EXPECT_TRUE(eventually([&] { return !isInSettings(); }));
}

TEST_F(KWinMenuKeys, AreTheSourcesWhenAMenuClosesOverThePanelThatThePointerHasLeft) {
  const PanelOnScreen panel = openPanel();
  openMenu(panel);
  hand_.moveTo({600, 800});
  EXPECT_TRUE(eventually([&] {
    hand_.type(keyEscape);
    return !isMenuOnScreen();
  }));
  expectKeyboardAtSource();
  EXPECT_EQ(rows().size(), 1U) << "the program has dealt with what came before";
  EXPECT_TRUE(eventually([&] { return isFree(menu) && isFree(shiftF10); }));
  expectMenuKeyAtSource();
}

TEST_F(KWinMenuKeys, AreAnybodysWhenTheProgramHasBeenKilledOverAPanel) {
  const PanelOnScreen panel = openPanel();
  hand_.moveTo(panel.contents().centre());
  ASSERT_TRUE(eventually([&] { return !isFree(menu); }));
  vistrel_->process().sendSignal(SIGKILL);
  ASSERT_TRUE(vistrel_->process().waitForEnd().has_value());
  vistrel_.reset();
  EXPECT_TRUE(eventually([&] { return isFree(menu) && isFree(shiftF10); }));
  expectMenuKeyAtSource();
}

TEST_F(KWinMenuKeys, AreAnybodysWhenTheProgramHasEndedOverAPanel) {
  const PanelOnScreen panel = openPanel();
  hand_.moveTo(panel.contents().centre());
  ASSERT_TRUE(eventually([&] { return !isFree(menu); }));
  vistrel_->process().sendSignal(SIGTERM);
  ASSERT_TRUE(vistrel_->process().waitForEnd().has_value());
  vistrel_.reset();
  EXPECT_TRUE(eventually([&] { return isFree(menu) && isFree(shiftF10); }));
}

}  // namespace
}  // namespace vistrel::testbed
