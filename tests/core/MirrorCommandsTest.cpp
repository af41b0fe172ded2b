#include <gtest/gtest.h>

#include "mirror/LiveDotColors.h"
#include "tests/core/CoreTest.h"

namespace vistrel {
namespace {

using platform::Menu;
using platform::MenuItem;

class MirrorCommandsTest : public MirrorTest {
 protected:
  MirrorCommandsTest() {
    showMirror();
    mirror_->panel()->setFrame(rect(100, 500, 340, 196), Redisplay::atOnce);
  }

  /// A person clicks the picture with the right button.
  std::shared_ptr<Menu> openMenu() {
    windows().moveMouse({150, 550});
    return windows().clickRight(*mirror_->panel());
  }
  static std::vector<std::string> titlesOf(const Menu& menu) {
    std::vector<std::string> titles;
    for (const auto& item : menu.items()) {
      titles.push_back(item->isSeparatorItem() ? "--" : item->title());
    }
    return titles;
  }
  static std::vector<std::string> selectorsOf(const Menu& menu) {
    std::vector<std::string> selectors;
    for (const auto& item : menu.items()) selectors.push_back(item->action().selector());
    return selectors;
  }
  void choose(const std::string& title) {
    const auto menu = openMenu();
    for (const auto& item : menu->items()) {
      if (item->title() == title) platform::performAction(item);
    }
  }
  std::shared_ptr<Menu> scaleMenu() { return openMenu()->items().at(4)->submenu(); }
};

TEST_F(MirrorCommandsTest, MenuOfOneMirrorOffersWhatCanBeDoneToIt) {
  const auto menu = openMenu();
  EXPECT_THAT(titlesOf(*menu),
              ElementsAre("Roll Up (Title Only)", "Re-capture (Refresh / Fix Blur or Black)",
                          "Keep Source Awake (Park Off-Screen)", "Bring Source Window to Front",
                          "Scale", "--", "Hide This Mirror"));
  EXPECT_THAT(selectorsOf(*menu),
              ElementsAre("toggleRollUpMenu", "recaptureMenu", "toggleKeepAwakeMenu",
                          "activateSource", "", "", "closeClicked"));
  for (const auto& item : menu->items()) {
    EXPECT_EQ(item->keyEquivalent(), "");
    EXPECT_EQ(item->state(), platform::MenuItemState::off);
    EXPECT_EQ(item->isEnabled(), !item->isSeparatorItem());
    const bool isCommand = !item->action().selector().empty();
    EXPECT_EQ(item->action().target(), isCommand ? mirror_ : nullptr);
  }
}

TEST_F(MirrorCommandsTest, MenuOfOneMirrorOfSeveralOffersToHideThemAll) {
  host_->count = 2;
  const auto menu = openMenu();
  EXPECT_EQ(titlesOf(*menu).back(), "Hide All Window Mirrors");
  EXPECT_EQ(menu->items().back()->action().selector(), "hideAllMenu");
  platform::performAction(menu->items().back());
  EXPECT_EQ(host_->closeAllCount, 1);
  EXPECT_THAT(closed_, IsEmpty());
}

TEST_F(MirrorCommandsTest, MenuIsMadeAnewEachTime) { EXPECT_NE(openMenu(), openMenu()); }

TEST_F(MirrorCommandsTest, MenuOpensAnywhereOnThePanel) {
  for (const Point point : {Point{105, 690}, Point{435, 505}, Point{270, 683}}) {
    windows().moveMouse(point);
    EXPECT_NE(windows().clickRight(*mirror_->panel()), nullptr);
  }
}

TEST_F(MirrorCommandsTest, MenuRollsUpAndDown) {
  choose("Roll Up (Title Only)");
  EXPECT_EQ(mirror_->panel()->frame(), rect(100, 670, 340, 26));
  windows().moveMouse({150, 680});
  const auto menu = windows().clickRight(*mirror_->panel());
  EXPECT_EQ(menu->items().front()->title(), "Roll Down (Show Mirror)");
  platform::performAction(menu->items().front());
  EXPECT_EQ(mirror_->panel()->frame(), rect(100, 500, 340, 196));
}

TEST_F(MirrorCommandsTest, MenuKeepsTheSourceAwakeAndStopsToDoSo) {
  choose("Keep Source Awake (Park Off-Screen)");
  EXPECT_TRUE(inside(*mirror_).keepAwake());
  const auto item = openMenu()->items().at(2);
  EXPECT_EQ(item->title(), "Stop Keeping Source Awake (Restore Window)");
  EXPECT_EQ(item->action().selector(), "toggleKeepAwakeMenu");
  platform::performAction(item);
  EXPECT_FALSE(inside(*mirror_).keepAwake());
  EXPECT_EQ(openMenu()->items().at(2)->title(), "Keep Source Awake (Park Off-Screen)");
}

TEST_F(MirrorCommandsTest, MenuHidesTheMirror) {
  choose("Hide This Mirror");
  EXPECT_THAT(closed_, ElementsAre(mirror_->windowID()));
  EXPECT_FALSE(mirror_->panel()->isVisible());
}

TEST_F(MirrorCommandsTest, RecaptureReplacesTheStream) {
  deliverPicture();
  const auto former = stream();
  const auto picture = inside(*mirror_).lastImage();
  choose("Re-capture (Refresh / Fix Blur or Black)");
  desktop_.turnMainQueue();
  EXPECT_EQ(former->steps().back(), StreamCall::Kind::stop);
  EXPECT_NE(stream(), former);
  EXPECT_TRUE(stream()->isRunning());
  EXPECT_EQ(inside(*mirror_).lastImage(), picture);
}

TEST_F(MirrorCommandsTest, RecaptureOfAVanishedSourceSaysSo) {
  capture().closeWindow(mirror_->windowID());
  choose("Re-capture (Refresh / Fix Blur or Black)");
  desktop_.turnMainQueue();
  EXPECT_EQ(status(), "Source window is no longer available.");
  EXPECT_EQ(inside(*mirror_).stream(), nullptr);
}

TEST_F(MirrorCommandsTest, ScaleMenuOffersFourFractionsUnmarked) {
  const auto menu = scaleMenu();
  EXPECT_THAT(titlesOf(*menu),
              ElementsAre("25% of source", "50% of source", "75% of source", "100% of source"));
  std::vector<int> tags;
  for (const auto& item : menu->items()) {
    tags.push_back(item->tag());
    EXPECT_EQ(item->action().selector(), "scaleFromMenu:");
    EXPECT_EQ(item->action().target(), mirror_);
    EXPECT_EQ(item->state(), platform::MenuItemState::off);
  }
  EXPECT_THAT(tags, ElementsAre(25, 50, 75, 100));
}

TEST_F(MirrorCommandsTest, ScaleSizesThePanelByTheSourceAndKeepsTheTopEdge) {
  platform::performAction(scaleMenu()->items().at(1));
  EXPECT_EQ(mirror_->panel()->frame(), rect(100, 420, 500, 276));
  platform::performAction(scaleMenu()->items().at(3));
  EXPECT_EQ(mirror_->panel()->frame(), rect(100, 170, 1000, 526));
}

TEST_F(MirrorCommandsTest, ScaleUnrollsFirst) {
  mirror_->toggleRollUp();
  mirror_->setScale(0.5);
  EXPECT_FALSE(inside(*mirror_).rolledUp());
  EXPECT_EQ(mirror_->panel()->frame(), rect(100, 420, 500, 276));
  EXPECT_EQ(mirror_->panel()->contentMinSize(), (Size{160, 120}));
  desktop_.turnMainQueue();
  EXPECT_FALSE(partsOf(*mirror_).content->isHidden());
}

TEST_F(MirrorCommandsTest, ScaleIsAnimatedAndLetsTheCaptureGrow) {
  mirror_->setScale(1.5);
  const auto& calls = windows().historyOf(*mirror_->panel())->calls;
  const auto told = std::find_if(calls.rbegin(), calls.rend(), [](const PeerCall& call) {
    return call.kind == PeerCall::Kind::frameDidChange;
  });
  EXPECT_TRUE(told->display);
  EXPECT_TRUE(told->animate);
  desktop_.turnMainQueue();
  EXPECT_EQ(inside(*mirror_).captureWidth(), 1500);
}

TEST_F(MirrorCommandsTest, ScaleOfANarrowSourceStopsAtTheSmallestPanel) {
  makeMirror(openSource([](ShareableWindow& window) { window.frame.size = {400, 400}; }));
  mirror_->setScale(0.25);
  EXPECT_EQ(mirror_->panel()->frame().size, (Size{160, 186}));
}

TEST_F(MirrorCommandsTest, SourceIsBroughtToTheFrontByItsProcess) {
  desktop_.workspace().startApplication(99);
  choose("Bring Source Window to Front");
  EXPECT_THAT(desktop_.workspace().activatedApplications(), ElementsAre(99));
}

TEST_F(MirrorCommandsTest, SourceWhoseProgramHasQuitStaysWhereItIs) {
  choose("Bring Source Window to Front");
  EXPECT_THAT(desktop_.workspace().activatedApplications(), IsEmpty());
}

TEST_F(MirrorCommandsTest, SourceWithoutAProcessIsNotLookedFor) {
  for (const std::int32_t pid : {-1, 0}) {
    desktop_.workspace().startApplication(pid);
    makeMirror(openSource([pid](ShareableWindow& window) {
      window.owningApplication =
          std::make_shared<platform::SharedApplication>(platform::SharedApplication{"App", pid});
    }));
    mirror_->activateSource();
  }
  EXPECT_THAT(desktop_.workspace().activatedApplications(), IsEmpty());
}

TEST_F(MirrorCommandsTest, FlashedTextStaysWhileThereIsNoPicture) {
  mirror_->flashStatus("Just so.");
  desktop_.advance(10);
  EXPECT_EQ(status(), "Just so.");
}

TEST_F(MirrorCommandsTest, FlashedTextGoesAfterAWhileAndLeavesTheDot) {
  deliverPicture();
  inside(*mirror_).freshnessTimer()->invalidate();
  mirror_->flashStatus("Just so.");
  EXPECT_EQ(dot(), Color::systemRed());
  desktop_.advance(2.4);
  EXPECT_EQ(status(), "Just so.");
  desktop_.advance(0.2);
  EXPECT_EQ(status(), "");
  EXPECT_EQ(dot(), Color::systemRed());
  deliverPicture();
  EXPECT_EQ(dot(), liveColor);
}

TEST_F(MirrorCommandsTest, DragsAskTheHostWhereToGoAndKeepTheirSize) {
  host_->snapOffset = {3, -4};
  EXPECT_EQ(partsOf(*mirror_).card->snap(rect(10, 20, 30, 40)), rect(13, 16, 30, 40));
  host_.reset();
  EXPECT_EQ(partsOf(*mirror_).card->snap(rect(10, 20, 30, 40)), rect(10, 20, 30, 40));
}

}  // namespace
}  // namespace vistrel
