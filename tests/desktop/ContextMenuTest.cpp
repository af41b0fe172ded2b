#include <unistd.h>

#include "tests/desktop/ContextMenuUser.h"

namespace vistrel::testbed {
namespace {

constexpr const char* rollUp = "Roll Up (Title Only)";
constexpr const char* rollDown = "Roll Down (Show Mirror)";
constexpr const char* recapture = "Re-capture (Refresh / Fix Blur or Black)";
constexpr const char* keepAwake = "Keep Source Awake (Park Off-Screen)";
constexpr const char* bringSource = "Bring Source Window to Front";
constexpr const char* hideThis = "Hide This Mirror";
constexpr const char* hideAll = "Hide All Window Mirrors";
constexpr const char* linesOfOnlyPanel = R"(Roll Up (Title Only)
Re-capture (Refresh / Fix Blur or Black)
Keep Source Awake (Park Off-Screen)
Bring Source Window to Front
Scale ▸
---
Hide This Mirror
)";

/// What several tests here do.
class ContextMenu : public ContextMenuUser {
 protected:
  using ContextMenuUser::ContextMenuUser;

  /// Rolls the panel up and down again.
  void roll(const PanelOnScreen& panel) {
    const Rect full = panel.area();
    choose(openMenu(panel), rollUp);
    EXPECT_TRUE(becomes(panel, {full.x, full.y, full.width, PanelOnScreen::titleBarHeight}));
    choose(openMenu(panel), rollDown);
    EXPECT_TRUE(becomes(panel, full));
    EXPECT_TRUE(eventually([&] { return panel.shows(fourColours); }));
  }
  /// From under `cover`, which another program has just activated.
  void bringToFront(const PanelOnScreen& panel, const TestWindow& other, const TestWindow& cover) {
    activate(cover.id());
    ASSERT_TRUE(eventually([&] {
      return isAbove(connection_, cover.id(), source_->id()) &&
             isAbove(connection_, cover.id(), other.id());
    }));
    choose(openMenu(panel), bringSource);
    EXPECT_TRUE(eventually([&] {
      return isAbove(connection_, source_->id(), cover.id()) &&
             isAbove(connection_, other.id(), cover.id());
    }));
    EXPECT_TRUE(eventually(
        [&] { return activeWindow() == source_->id() || activeWindow() == other.id(); }));

    goToDesktop(1);
    choose(openMenu(panel), bringSource);
    EXPECT_TRUE(eventually([&] { return currentDesktop() == 0; }));
  }
};

TEST_F(ContextMenu, OpensByTheRightButtonAndByKeysAndLeavesTheKeyboardWhereItIs) {
  const PanelOnScreen panel = openPanel();
  activate(source_->id());
  const Keyboard before = keyboard();
  EXPECT_EQ(openMenu(panel).lines(), linesOfOnlyPanel);
  closeMenu();
  EXPECT_EQ(keyboard(), before);

  awaitMenuKeys(true);
  EXPECT_EQ(menuOpenedBy([&] { input_.type(keyMenu); }).lines(), linesOfOnlyPanel);
  closeMenu();
  awaitMenuKeys(true);
  const MenuOnScreen menu = menuOpenedBy([&] { input_.typeHolding(keyShift, keyF10); });
  EXPECT_EQ(menu.lines(), linesOfOnlyPanel);
  EXPECT_TRUE(menu.isHighlighted(rollUp));
  for (const char* title : {recapture, keepAwake, bringSource, "Scale", hideThis, rollUp}) {
    input_.type(keyDown);
    EXPECT_TRUE(eventually([&] { return menu.isHighlighted(title); })) << title;
  }
  closeMenu();
  EXPECT_EQ(keyboard(), before);
  EXPECT_EQ(source_->typedKeys(), 1) << "more than Shift alone went to the window";

  input_.moveTo({sourceArea.x + 10, sourceArea.y + 10});
  awaitMenuKeys(false);
  input_.type(keyMenu);
  EXPECT_TRUE(eventually([&] { return source_->typedKeys() == 2; }));
  EXPECT_FALSE(isMenuOnScreen());
}

TEST_F(ContextMenu, ThatClosesLeavesTheKeyboardWhereItHasGoneMeanwhile) {
  const PanelOnScreen panel = openPanel();
  activate(vistrel_->picker().id());
  openMenu(panel);
  activate(source_->id());
  const Keyboard before = keyboard();
  closeMenu();
  input_.type(keyReturn);
  EXPECT_TRUE(eventually([&] { return source_->typedKeys() > 0; }));
  EXPECT_EQ(keyboard(), before);
}

// The toolkit is sure that the keyboard has left only a tenth of a second later.
TEST_F(ContextMenu, StaysOpenWhereTheKeyboardHasJustLeftTheProgram) {
  const PanelOnScreen panel = openPanel();
  for (const std::uint32_t milliseconds : {84, 88, 92, 95, 97, 99, 101, 103}) {
    activate(vistrel_->picker().id());
    pointAt(panel, panel.titleBar());
    const MenuOnScreen menu = menuOpenedBy([&] {
      xcb_set_input_focus(connection_.get(), XCB_INPUT_FOCUS_PARENT, source_->id(),
                          XCB_CURRENT_TIME);
      input_.rest(milliseconds);
      input_.click(1, InputDriver::Button::right);
    });
    EXPECT_TRUE(menu.isHighlighted(rollUp)) << milliseconds;
    closeMenu();
  }
}

TEST_F(ContextMenu, RollsUpAndDownAndCapturesAnew) {
  const PanelOnScreen panel = openPanel();
  roll(panel);
  choose(openMenu(panel), recapture);
  source_->show(Quadrants::uniform(blue));
  EXPECT_TRUE(eventually([&] { return panel.shows(Quadrants::uniform(blue)); }));
}

TEST_F(ContextMenu, ScalesToPartsOfTheSource) {
  const PanelOnScreen panel = openPanel();
  const Rect start = panel.area();
  const MenuOnScreen menu = openMenu(panel);
  input_.moveTo(menu.line("Scale"));
  const MenuOnScreen scale = menu.submenu("Scale");
  EXPECT_EQ(scale.lines(), "25% of source\n50% of source\n75% of source\n100% of source\n");
  choose(scale, "50% of source");
  constexpr int bar = PanelOnScreen::titleBarHeight;
  EXPECT_TRUE(becomes(panel, {start.x, start.y, 500, 250 + bar}));
  chooseScale(panel, "25% of source");
  EXPECT_TRUE(becomes(panel, {start.x, start.y, 250, 125 + bar}));
  choose(openMenu(panel), rollUp);
  EXPECT_TRUE(becomes(panel, {start.x, start.y, 250, bar}));
  chooseScale(panel, "75% of source");
  EXPECT_TRUE(becomes(panel, {start.x, start.y, 750, 375 + bar}));
  chooseScale(panel, "100% of source");
  EXPECT_TRUE(becomes(panel, {start.x, start.y, 1000, 500 + bar}));
}

TEST_F(ContextMenu, HidesOneMirrorOrAll) {
  const auto second = openSource({.title = "Second", .area = sourceArea, .decorated = false});
  const PanelOnScreen first = openPanel(0, 2);
  mirrorRow(1, 2, 2);
  const MenuOnScreen menu = openMenu(vistrel_->panels(2).back());
  EXPECT_EQ(menu.lines(), std::string(linesOfOnlyPanel) + "Hide All Window Mirrors\n");
  choose(menu, hideThis);
  EXPECT_EQ(vistrel_->panels(1).front().id(), first.id());
  EXPECT_EQ(openMenu(first).lines(), linesOfOnlyPanel);
  closeMenu();

  mirrorRow(1, 2, 2);
  choose(openMenu(first), hideAll);
  vistrel_->panels(0);
  EXPECT_EQ(vistrel_->pickerRows(2).size(), 2u);
}

TEST_F(ContextMenu, BringsAllWindowsOfTheSourcesProgramToTheFront) {
  const auto other = openSource({.title = "Other", .area = {700, 600, 300, 200}});
  const PanelOnScreen panel = openPanel(0, 2);
  const auto cover =
      openSource({.title = "Cover", .area = {500, 500, 600, 400}, .pid = ::getppid()});
  bringToFront(panel, *other, *cover);
}

class ContextMenuUnderManager : public ContextMenu,
                                public ::testing::WithParamInterface<WindowManager> {
 protected:
  ContextMenuUnderManager() : ContextMenu({.windowManager = GetParam()}) {}
};

TEST_P(ContextMenuUnderManager, EachCommandIsCarriedOut) {
  const auto other = openSource({.title = "Other", .area = {700, 600, 300, 200}});
  const PanelOnScreen panel = openPanel(0, 2);
  roll(panel);
  const Rect start = panel.area();
  chooseScale(panel, "50% of source");
  EXPECT_TRUE(becomes(panel, {start.x, start.y, 500, 250 + PanelOnScreen::titleBarHeight}));

  const PanelOnScreen second = mirrorRow(1, 2, 2);
  EXPECT_TRUE(eventually([&] {
    return second.area().y == firstPanel.y + cascadeStep &&
           isAbove(connection_, second.id(), panel.id());
  }));
  // Out of the way of a click on the second, whatever the manager puts on top for a moment.
  choose(openMenu(panel), rollUp);
  EXPECT_TRUE(becomes(panel, {start.x, start.y, 500, PanelOnScreen::titleBarHeight}));
  choose(openMenu(second), hideThis);
  EXPECT_EQ(vistrel_->panels(1).front().id(), panel.id());
  mirrorRow(1, 2, 2);

  const auto cover =
      openSource({.title = "Cover", .area = {500, 500, 600, 400}, .pid = ::getppid()});
  bringToFront(panel, *other, *cover);
  choose(openMenu(panel), hideAll);
  vistrel_->panels(0);
}

// Another one is what every other test here runs under.
INSTANTIATE_TEST_SUITE_P(WindowManagers, ContextMenuUnderManager,
                         ::testing::Values(WindowManager::xfwm4, WindowManager::mutter),
                         [](const auto& test) { return std::string(nameOf(test.param)); });

}  // namespace
}  // namespace vistrel::testbed
