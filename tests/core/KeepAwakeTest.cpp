#include <gtest/gtest.h>
#include <random>

#include "catalogue/WindowMirrorManager.h"
#include "tests/core/CoreTest.h"

namespace vistrel {
namespace {

using platform::AccessibilityError;
using platform::AccessibilityValue;
using enum PeerCall::Kind;

/// A mirror of an ordinary window at (10, 20), on a desktop where it can be parked.
class KeepAwakeTest : public MirrorTest {
 protected:
  KeepAwakeTest() {
    showMirror();
    desktop_.journal().clear();
  }

  platform::simulated::SimulatedDisplays& displays() { return desktop_.displays(); }
  platform::simulated::SimulatedAccessibility& accessibility() { return desktop_.accessibility(); }
  platform::simulated::SimulatedVirtualDisplayServer& server() {
    return desktop_.virtualDisplays().server();
  }

  Point sourceOrigin(WindowID id) {
    for (const auto& window : capture().windows()) {
      if (window->windowID == id) return window->frame.origin;
    }
    ADD_FAILURE() << "window " << id << " is gone";
    return {};
  }
  Point sourceOrigin() { return sourceOrigin(mirror_->windowID()); }
  std::string moveTo(const std::string& place) const {
    return "AXPosition of " + std::to_string(mirror_->windowID()) + ": " + place;
  }
  void expectNotParked() {
    EXPECT_FALSE(inside(*mirror_).keepAwake());
    EXPECT_EQ(inside(*mirror_).parkedWindow(), nullptr);
    EXPECT_EQ(inside(*mirror_).savedOrigin(), std::nullopt);
    EXPECT_EQ(inside(*mirror_).virtualHost(), nullptr);
  }
};

TEST_F(KeepAwakeTest, ParksTheSourceOnAHiddenDisplay) {
  displays().setMainBounds(rect(0, 0, 3000, 900));
  mirror_->toggleKeepAwake();
  EXPECT_TRUE(inside(*mirror_).keepAwake());
  ASSERT_NE(inside(*mirror_).virtualHost(), nullptr);
  EXPECT_EQ(inside(*mirror_).virtualHost()->bounds(), rect(3000, 0, 1000, 500));
  EXPECT_NE(inside(*mirror_).parkedWindow(), nullptr);
  EXPECT_EQ(inside(*mirror_).savedOrigin(), (Point{10, 20}));
  EXPECT_EQ(sourceOrigin(), (Point{3008, 8}));
}

TEST_F(KeepAwakeTest, ParksEightPointsInFromWhereverTheDisplayLies) {
  displays().setPlacement([](Point) { return Point{5000.5, -300.25}; });
  mirror_->toggleKeepAwake();
  EXPECT_EQ(sourceOrigin(), (Point{5008.5, -292.25}));
}

TEST_F(KeepAwakeTest, MakesTheDisplayForTheSourcesSize) {
  mirror_->toggleKeepAwake();
  EXPECT_EQ(server().descriptors().at(0).maxPixelsWide, 2000U);
  EXPECT_EQ(server().descriptors().at(0).maxPixelsHigh, 1000U);
  EXPECT_EQ(server().descriptors().at(0).name, "Vistrel (hidden)");
}

TEST_F(KeepAwakeTest, PlacesTheDisplayThenMovesTheWindowThenStartsCaptureAnew) {
  mirror_->toggleKeepAwake();
  const auto calls = desktop_.journal().calls();
  ASSERT_GE(calls.size(), 6U);
  EXPECT_THAT(std::vector(calls.end() - 6, calls.end()),
              ElementsAre("beginDisplayConfiguration", "configureOrigin 2: 1440,0",
                          "completeDisplayConfiguration 1", moveTo("1448,8"), "Stream stopCapture",
                          "getShareableContent"));
}

TEST_F(KeepAwakeTest, WithoutAHiddenDisplayParksInTheMainScreensCorner) {
  server().setHosts(false);
  windows().setMainScreen(platform::Screen{.frame = rect(-700, 300, 1512, 982)});
  mirror_->toggleKeepAwake();
  EXPECT_TRUE(inside(*mirror_).keepAwake());
  EXPECT_EQ(inside(*mirror_).virtualHost(), nullptr);
  EXPECT_NE(inside(*mirror_).parkedWindow(), nullptr);
  EXPECT_EQ(sourceOrigin(), (Point{1472, 942}));
}

TEST_F(KeepAwakeTest, WithoutAHiddenDisplayOrAScreenParksAtAFixedPlace) {
  server().setHosts(false);
  windows().setScreens({});
  mirror_->toggleKeepAwake();
  EXPECT_EQ(sourceOrigin(), (Point{1400, 860}));
}

TEST_F(KeepAwakeTest, ADisplayThatStaysLeftOfTheEdgeLeavesTheCorner) {
  displays().setPlacement([](Point) { return Point{1438.5, 0}; });
  mirror_->toggleKeepAwake();
  EXPECT_EQ(inside(*mirror_).virtualHost(), nullptr);
  EXPECT_EQ(sourceOrigin(), (Point{1400, 860}));
  desktop_.turnMainQueue();
  EXPECT_EQ(displays().onlineDisplayCount(), 1U);
}

TEST_F(KeepAwakeTest, StartsCaptureAnewOnlyWhenItParks) {
  const auto former = stream();
  mirror_->toggleKeepAwake();
  EXPECT_EQ(former->steps().back(), StreamCall::Kind::stop);
  EXPECT_EQ(capture().contentRequests().size(), 2U);
  desktop_.turnMainQueue();
  const auto current = stream();
  EXPECT_NE(current, former);
  EXPECT_TRUE(current->isRunning());

  mirror_->toggleKeepAwake();
  desktop_.turnMainQueue();
  EXPECT_EQ(stream(), current);
  EXPECT_TRUE(current->isRunning());
  EXPECT_EQ(capture().contentRequests().size(), 2U);
}

TEST_F(KeepAwakeTest, StopsCaptureAfterTheWindowWasMoved) {
  bool wasRunning = false;
  accessibility().setWhenTold([&](WindowID) { wasRunning = stream()->isRunning(); });
  mirror_->toggleKeepAwake();
  EXPECT_TRUE(wasRunning);
  EXPECT_FALSE(stream()->isRunning());
}

TEST_F(KeepAwakeTest, PutsTheSourceBackAndRemovesTheDisplay) {
  mirror_->toggleKeepAwake();
  desktop_.turnMainQueue();
  std::size_t displaysAtMove = 0;
  accessibility().setWhenTold([&](WindowID) {
    desktop_.turnMainQueue();  // on which a display that was let go is taken down
    displaysAtMove = server().live().size();
  });
  mirror_->toggleKeepAwake();
  EXPECT_EQ(sourceOrigin(), (Point{10, 20}));
  EXPECT_EQ(displaysAtMove, 1U);
  expectNotParked();
  desktop_.turnMainQueue();
  EXPECT_THAT(server().live(), IsEmpty());
  EXPECT_EQ(displays().onlineDisplayCount(), 1U);
}

TEST_F(KeepAwakeTest, MakesANewDisplayEachTime) {
  for (const platform::DisplayID id : {2U, 3U}) {
    mirror_->toggleKeepAwake();
    ASSERT_NE(inside(*mirror_).virtualHost(), nullptr);
    EXPECT_EQ(inside(*mirror_).virtualHost()->displayID(), id);
    mirror_->toggleKeepAwake();
  }
}

TEST_F(KeepAwakeTest, WithoutPermissionAsksForItEachTimeAndParksNothing) {
  accessibility().setTrusted(false);
  windows().setAlertAnswer([this](const platform::Alert&) {
    const auto asked = static_cast<std::size_t>(accessibility().promptCount());
    EXPECT_EQ(asked, windows().alerts().size());
    EXPECT_EQ(desktop_.workspace().openedURLs().size(), asked);
    return platform::alertFirstButtonReturn;
  });
  for (const std::size_t time : {1U, 2U}) {
    mirror_->toggleKeepAwake();
    expectNotParked();
    ASSERT_EQ(windows().alerts().size(), time);
  }
  EXPECT_EQ(desktop_.workspace().openedURLs().back(),
            "x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility");
  const platform::Alert& alert = windows().alerts().back();
  EXPECT_EQ(alert.messageText, "Allow Accessibility for Vistrel");
  EXPECT_EQ(alert.informativeText,
            "“Keep Awake” parks the source window at a screen corner so it keeps rendering while "
            "you work elsewhere. Turn on Vistrel in System Settings ▸ Privacy & Security ▸ "
            "Accessibility, then try again.");
  EXPECT_THAT(alert.buttonTitles, ElementsAre("OK"));
  EXPECT_EQ(status(), "");
  EXPECT_THAT(desktop_.journal().calls(), IsEmpty());
  EXPECT_EQ(capture().contentRequests().size(), 1U);
}

TEST_F(KeepAwakeTest, WithoutPermissionHasTheSystemAskBeforeItShowsTheSettings) {
  accessibility().setTrusted(false);
  accessibility().setWhenPrompted(
      [this] { EXPECT_THAT(desktop_.workspace().openedURLs(), IsEmpty()); });
  mirror_->toggleKeepAwake();
  EXPECT_EQ(accessibility().promptCount(), 1);
  EXPECT_EQ(desktop_.workspace().openedURLs().size(), 1U);
}

TEST_F(KeepAwakeTest, ParksOnceThePermissionIsThere) {
  accessibility().setTrusted(false);
  mirror_->toggleKeepAwake();
  accessibility().setTrusted(true);
  mirror_->toggleKeepAwake();
  EXPECT_TRUE(inside(*mirror_).keepAwake());
  EXPECT_EQ(windows().alerts().size(), 1U);
}

TEST_F(KeepAwakeTest, ANeededPermissionIsNotAskedForToPutASourceBack) {
  mirror_->toggleKeepAwake();
  accessibility().setTrusted(false);
  mirror_->toggleKeepAwake();
  EXPECT_EQ(sourceOrigin(), (Point{10, 20}));
  EXPECT_THAT(windows().alerts(), IsEmpty());
}

TEST_F(KeepAwakeTest, SaysSoWhenTheWindowCannotBeReached) {
  accessibility().scriptWindowsOf(99, {AccessibilityError::apiDisabled, {}});
  deliverPicture();
  mirror_->toggleKeepAwake();
  EXPECT_EQ(status(), "Couldn't reach that window via Accessibility.");
  expectNotParked();
  EXPECT_TRUE(stream()->isRunning());
  EXPECT_EQ(capture().contentRequests().size(), 1U);
  EXPECT_THAT(desktop_.journal().calls(), IsEmpty());
  desktop_.advance(2.6);
  EXPECT_EQ(status(), "");
}

TEST_F(KeepAwakeTest, SaysSoWhenTheSourceHasNoProcess) {
  for (const std::int32_t pid : {-1, 0}) {
    makeMirror(openSource([pid](ShareableWindow& window) {
      window.owningApplication =
          std::make_shared<platform::SharedApplication>(platform::SharedApplication{"App", pid});
    }));
    mirror_->toggleKeepAwake();
    EXPECT_EQ(status(), "Couldn't reach that window via Accessibility.");
    expectNotParked();
  }
}

TEST_F(KeepAwakeTest, LeavesASourceOfUnknownPositionWhereItIsParked) {
  accessibility().scriptWindow(mirror_->windowID(),
                               {.position = {{AccessibilityError::failure, {}}}});
  mirror_->toggleKeepAwake();
  EXPECT_TRUE(inside(*mirror_).keepAwake());
  EXPECT_EQ(inside(*mirror_).savedOrigin(), std::nullopt);
  mirror_->toggleKeepAwake();
  EXPECT_EQ(sourceOrigin(), (Point{1448, 8}));
  expectNotParked();
}

TEST_F(KeepAwakeTest, CountsASourceThatRefusesToMoveAsParked) {
  accessibility().scriptWindow(mirror_->windowID(), {.refusesMoves = true});
  mirror_->toggleKeepAwake();
  EXPECT_TRUE(inside(*mirror_).keepAwake());
  EXPECT_EQ(sourceOrigin(), (Point{10, 20}));
  EXPECT_EQ(capture().contentRequests().size(), 2U);
}

TEST_F(KeepAwakeTest, CountsASourceForWhichNoValueCanBeMadeAsParked) {
  accessibility().setFailsPointValues(true);
  mirror_->toggleKeepAwake();
  EXPECT_TRUE(inside(*mirror_).keepAwake());
  mirror_->toggleKeepAwake();
  expectNotParked();
  EXPECT_EQ(sourceOrigin(), (Point{10, 20}));
}

TEST_F(KeepAwakeTest, TriesToPutASourceBackThatIsGone) {
  mirror_->toggleKeepAwake();
  capture().closeWindow(mirror_->windowID());
  mirror_->toggleKeepAwake();
  EXPECT_EQ(desktop_.journal().calls().back(), moveTo("10,20"));
  expectNotParked();
}

TEST_F(KeepAwakeTest, ClosingPutsTheSourceBackBeforeTheStreamStopsAndThePanelCloses) {
  mirror_->toggleKeepAwake();
  desktop_.turnMainQueue();
  bool isTold = false;
  accessibility().setWhenTold([&](WindowID) {
    isTold = true;
    EXPECT_EQ(inside(*mirror_).freshnessTimer(), nullptr);
    EXPECT_TRUE(stream()->isRunning());
    EXPECT_TRUE(mirror_->panel()->isVisible());
  });
  mirror_->close();
  EXPECT_TRUE(isTold);
  EXPECT_EQ(sourceOrigin(), (Point{10, 20}));
  EXPECT_EQ(stream()->steps().back(), StreamCall::Kind::stop);
  EXPECT_FALSE(mirror_->panel()->isVisible());
  EXPECT_TRUE(inside(*mirror_).keepAwake());
  EXPECT_EQ(inside(*mirror_).parkedWindow(), nullptr);
  desktop_.turnMainQueue();
  EXPECT_THAT(server().live(), IsEmpty());
}

TEST_F(KeepAwakeTest, ClosingMovesNoSourceThatIsNotParked) {
  mirror_->toggleKeepAwake();
  mirror_->toggleKeepAwake();
  desktop_.turnMainQueue();
  desktop_.journal().clear();
  mirror_->close();
  EXPECT_THAT(desktop_.journal().calls(),
              ElementsAre("Stream stopCapture", "Panel orderOut", "Panel close"));
}

TEST_F(KeepAwakeTest, ClosingTwiceMovesTheSourceOnce) {
  mirror_->toggleKeepAwake();
  mirror_->close();
  desktop_.journal().clear();
  mirror_->close();
  EXPECT_THAT(desktop_.journal().calls(), IsEmpty());
}

TEST_F(KeepAwakeTest, AMirrorThatIsDroppedTakesItsDisplayWithIt) {
  mirror_->toggleKeepAwake();
  EXPECT_EQ(displays().onlineDisplayCount(), 2U);
  mirror_.reset();
  desktop_.turnMainQueue();
  EXPECT_EQ(displays().onlineDisplayCount(), 1U);
}

TEST_F(KeepAwakeTest, TheAlertMayCloseTheMirrorThatItBelongsTo) {
  accessibility().setTrusted(false);
  windows().setAlertAnswer([this](const platform::Alert&) {
    mirror_->closeClicked();
    mirror_.reset();
    desktop_.turnMainQueue();
    return platform::alertFirstButtonReturn;
  });
  windows().moveMouse({mirror_->panel()->frame().midX(), mirror_->panel()->frame().midY()});
  const auto menu = windows().clickRight(*mirror_->panel());
  platform::performAction(menu->items().at(2));
  EXPECT_EQ(closed_.size(), 1U);
  EXPECT_EQ(windows().alerts().size(), 1U);
}

TEST_F(KeepAwakeTest, HidingAllPutsEverySourceBack) {
  const auto manager = WindowMirrorManager::make();
  std::vector<WindowRecord> sources;
  for (int i = 0; i < 3; ++i) {
    sources.push_back(openSource([i](ShareableWindow& window) {
      window.frame.origin = {100.5 + i, 200.0 + i};
    }));
    manager->mirror(sources.back());
  }
  desktop_.turnMainQueue();
  std::vector<std::shared_ptr<WindowMirrorHUDController>> mirrors;
  for (const auto& [id, mirror] : manager->mirrors()) mirrors.push_back(mirror);
  for (const auto& mirror : mirrors) mirror->toggleKeepAwake();
  desktop_.turnMainQueue();
  EXPECT_EQ(displays().onlineDisplayCount(), 4U);

  mirrors.front()->hideAllMenu();
  for (const auto& source : sources) {
    EXPECT_EQ(sourceOrigin(source->windowID), source->frame.origin);
  }
  EXPECT_THAT(manager->mirrors(), IsEmpty());
  desktop_.turnMainQueue();
  EXPECT_EQ(displays().onlineDisplayCount(), 1U);
}

/// Mirrors that are parked, restored and closed in any order, on a desktop whose hidden displays
/// come and go.
class KeepAwakeWalkTest : public KeepAwakeTest {
 protected:
  KeepAwakeWalkTest() {
    for (int i = 0; i < 4; ++i) {
      sources_.push_back(openSource([i](ShareableWindow& window) {
        window.frame.origin = {20.0 * i, 30.0 * i};
      }));
    }
  }

  void step() {
    const WindowRecord& source = sources_[random_() % sources_.size()];
    if (!manager_->mirrors().contains(source->windowID)) manager_->mirror(source);
    WindowMirrorHUDController& mirror = *manager_->mirrors().at(source->windowID);
    server().setHosts(random_() % 3 != 0);
    displays().setRefusesConfiguration(random_() % 5 == 0);
    switch (random_() % 16) {
      case 0:
        return manager_->closeAll();
      case 1:
        return mirror.closeClicked();
      case 2:
        return desktop_.turnMainQueue();
      case 3:
        return desktop_.virtualTime().turnOtherQueues();
      default:
        parked_ += inside(mirror).keepAwake() ? 0 : 1;
        return mirror.toggleKeepAwake();
    }
  }

  void check() {
    std::size_t hosts = 0;
    for (const WindowRecord& source : sources_) {
      const auto found = manager_->mirrors().find(source->windowID);
      const bool isParked =
          found != manager_->mirrors().end() && inside(*found->second).keepAwake();
      const Point now = sourceOrigin(source->windowID);
      EXPECT_EQ(now != source->frame.origin, isParked);
      if (!isParked) continue;
      const auto* host = inside(*found->second).virtualHost();
      hosts += host == nullptr ? 0 : 1;
      EXPECT_EQ(now, host == nullptr ? (Point{1400, 860}) : (Point{1448, 8}));
    }
    desktop_.turnMainQueue();
    EXPECT_EQ(server().live().size(), hosts);
    EXPECT_EQ(displays().onlineDisplayCount(), 1 + hosts);
  }

  const std::shared_ptr<WindowMirrorManager> manager_ = WindowMirrorManager::make();
  std::vector<WindowRecord> sources_;
  std::mt19937 random_{20};
  int parked_ = 0;
};

TEST_F(KeepAwakeWalkTest, LeavesEverySourceWhereItWasAndNoDisplayBehind) {
  while (parked_ < 200 && !HasFailure()) {
    step();
    if (random_() % 2 == 0) check();
  }
  manager_->closeAll();
  check();
}

}  // namespace
}  // namespace vistrel
