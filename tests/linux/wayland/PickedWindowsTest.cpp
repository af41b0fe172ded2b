#include <algorithm>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <string>

#include "platform/linux/wayland/stream/PipeWireSource.h"
#include "tests/linux/pictures/TestMirror.h"
#include "tests/linux/wayland/PickingPerson.h"
#include "tests/support/MutterHand.h"
#include "tests/support/MutterSession.h"
#include "tests/support/NativeWindow.h"
#include "tests/support/Poll.h"
#include "tests/support/TestPortal.h"
#include "tests/support/TestWindow.h"
#include "tests/support/XWindows.h"

namespace vistrel::platform::linux_desktop {
namespace {

using testbed::eventually;
using testbed::TestPortal;

constexpr testbed::Rect panelArea{0, 0, 200, 150};
constexpr testbed::Quadrants otherColours{testbed::white, testbed::blue, testbed::red,
                                          testbed::green};

/// A native window of 400 × 300 in the middle of the screen, which has the keyboard, in a session
/// of mutter, whose windows a person picks in the portal's dialog.
class PickedWindow : public ::testing::Test {
 protected:
  explicit PickedWindow(double longestIdle = 60) : person_(longestIdle) {}

  /// The person picks the window, which works.
  void pickWindow() {
    ASSERT_EQ(pick(), "");
    ASSERT_TRUE(window_);
  }
  /// What the person is told of it, once it is over.
  std::string pick() {
    if (!eventually([&] { return source_->isActive(); })) return "nothing has the keyboard";
    const std::string status = person_.pickFocused();
    window_ = person_.window();
    return status;
  }
  void mirror() {
    mirror_.start(window_->windowID, [windows = person_.windows()](const CapturingMirror& mirror,
                                                                   WindowID window) {
      return PipeWireSource::open(mirror, window, windows->request(mirror.queue, window));
    });
  }
  bool eventuallyShows(const testbed::Quadrants& picture) {
    return eventually([&] { return mirror_.shows(picture, {0, 0, 400, 300}); });
  }
  bool isListed(ListedWindows listed) const {
    const auto records = person_.windows()->records(listed);
    return std::find(records.begin(), records.end(), window_) != records.end();
  }
  bool eventuallyHasSessions(int count) {
    return eventually([&] { return portal_.openSessions() == count; });
  }

  testbed::MutterSession session_;
  const bool isAdopted_ = (session_.adoptEnvironment(), true);
  TestPortal portal_{session_};
  const testbed::XConnection x_{session_.xName()};
  TestMirror mirror_{x_, panelArea, TestMirror::Panels::composited};
  // After the panel, so that it has the keyboard.
  std::optional<testbed::NativeWindow> source_{std::in_place, session_.environment(),
                                               testbed::NativeWindow::Options{.title = "Mine"}};
  PickingPerson person_;
  WindowRecord window_;
};

class QuicklyForgottenWindow : public PickedWindow {
 protected:
  QuicklyForgottenWindow() : PickedWindow(0.3) {}
};

TEST_F(PickedWindow, IsListedByANumberAndItsSize) {
  ASSERT_NO_FATAL_FAILURE(pickWindow());
  EXPECT_EQ(window_->title, "Picked window 1");
  EXPECT_EQ(window_->owningApplication, nullptr);
  EXPECT_EQ(window_->frame, rect(0, 0, 400, 300));
  EXPECT_TRUE(window_->isOnScreen);
  EXPECT_TRUE(isListed(ListedWindows::onScreen));
  const auto asked = portal_.lastRequest();
  EXPECT_EQ(asked.types, PortalOffer::windows);
  EXPECT_EQ(asked.cursorMode, PortalOffer::cursorMetadata);
  EXPECT_FALSE(asked.hasToken);
}

TEST_F(PickedWindow, IsMirroredLive) {
  ASSERT_NO_FATAL_FAILURE(pickWindow());
  mirror();
  EXPECT_TRUE(eventuallyShows(testbed::fourColours));
  source_->show(otherColours);
  EXPECT_TRUE(eventuallyShows(otherColours));
  EXPECT_EQ(portal_.timesAsked(), 1);
}

TEST_F(PickedWindow, IsMirroredAtEachChangeThatComesAlone) {
  ASSERT_NO_FATAL_FAILURE(pickWindow());
  mirror();
  ASSERT_TRUE(eventuallyShows(testbed::fourColours));
  for (const auto color : {testbed::red, testbed::green, testbed::blue, testbed::yellow,
                           testbed::white, testbed::red, testbed::green, testbed::blue}) {
    const auto picture = testbed::Quadrants::uniform(color);
    source_->show(picture);
    ASSERT_TRUE(eventuallyShows(picture));
  }
}

TEST_F(PickedWindow, IsOfXWithItsFrameAndWithoutTheShadowAroundThat) {
  ASSERT_TRUE(eventually([&] { return source_->isActive(); }));
  const testbed::TestWindow ofX(session_.xName(), {});
  const auto frame = testbed::frameExtentsOf(x_, ofX.id());
  ASSERT_TRUE(frame);
  ASSERT_TRUE(eventually([&] { return !source_->isActive(); }));
  const Size expected{400. + frame->left + frame->right, 300. + frame->top + frame->bottom};
  // It grows into its place at first.
  EXPECT_TRUE(eventually(
      [&] { return person_.pickFocused().empty() && person_.window()->frame.size == expected; }));
}

TEST_F(PickedWindow, IsOfTheNewSizeAfterAResize) {
  ASSERT_NO_FATAL_FAILURE(pickWindow());
  mirror();
  ASSERT_TRUE(eventuallyShows(testbed::fourColours));
  source_->resize(640, 200);
  EXPECT_TRUE(eventually([&] { return mirror_.shows(testbed::fourColours, {0, 0, 640, 200}); }));
}

TEST_F(PickedWindow, HasThePointerWhereItIsOverTheWindow) {
  testbed::MutterHand hand(session_);
  const auto white = testbed::Quadrants::uniform(testbed::white);
  source_->show(white);
  // So that it is known where it is.
  source_->maximise(true);
  ASSERT_NO_FATAL_FAILURE(pickWindow());
  mirror();
  mirror_.resizePanel(320, 256);
  const auto isWhite = [&] { return mirror_.shows(white, {0, 0, 1280, 1024}); };
  ASSERT_TRUE(eventually(isWhite));
  // It is 16 × 16 large, and shown at a quarter of its size.
  const auto hasPointerAt = [&](testbed::Point point) {
    mirror_.turn();
    const auto shown = mirror_.panelPicture();
    const int x = point.x / 4;
    const int y = point.y / 4;
    return shown.at(x + 1, y + 1) == testbed::black && shown.at(x + 2, y + 2) == testbed::black &&
           shown.at(x - 2, y + 2) == testbed::white && shown.at(x + 6, y + 2) == testbed::white;
  };
  constexpr testbed::Point overPanel{10, 10};
  testbed::Point last{320, 320};
  for (const testbed::Point point : {testbed::Point{640, 512}, {1120, 80}, {80, 960}}) {
    EXPECT_TRUE(eventually([&] {
      // mutter 43 tells the pointer's picture once, which may get lost, until it has another.
      hand.moveTo(overPanel);
      hand.moveTo(point);
      return hasPointerAt(point);
    })) << point.x
        << ", " << point.y;
    EXPECT_FALSE(hasPointerAt(last));
    last = point;
  }
}

TEST_F(PickedWindow, IsNoneWhereThePersonCancels) {
  portal_.answer(TestPortal::Answer::cancel);
  EXPECT_EQ(pick(), "");
  EXPECT_EQ(window_, nullptr);
  EXPECT_TRUE(eventuallyHasSessions(0));
}

TEST_F(PickedWindow, IsNoneWhereTheDesktopRefuses) {
  portal_.answer(TestPortal::Answer::refuse);
  EXPECT_EQ(pick(), "The desktop has refused to share the window.");
  EXPECT_EQ(window_, nullptr);
  EXPECT_TRUE(eventuallyHasSessions(0));
}

TEST_F(PickedWindow, KeepsItsSessionWhileItIsCapturedAnew) {
  ASSERT_NO_FATAL_FAILURE(pickWindow());
  mirror();
  ASSERT_TRUE(eventuallyShows(testbed::fourColours));
  mirror_.stop();
  source_->show(otherColours);
  mirror();
  EXPECT_TRUE(eventuallyShows(otherColours));
  EXPECT_EQ(portal_.timesAsked(), 1);
  EXPECT_EQ(portal_.openSessions(), 1);
}

TEST_F(PickedWindow, IsFoundAgainWithoutADialogWhenItsSessionHasEnded) {
  ASSERT_NO_FATAL_FAILURE(pickWindow());
  mirror();
  ASSERT_TRUE(eventuallyShows(testbed::fourColours));
  portal_.closeSessions();
  ASSERT_TRUE(eventually([&] { return mirror_.ends() == 1; }));
  EXPECT_FALSE(isListed(ListedWindows::onScreen));
  EXPECT_TRUE(isListed(ListedWindows::all));
  mirror_.stop();
  source_->show(otherColours);
  mirror();
  EXPECT_TRUE(eventuallyShows(otherColours));
  EXPECT_EQ(portal_.timesAsked(), 1);
  EXPECT_TRUE(portal_.lastRequest().hasToken);
  EXPECT_TRUE(isListed(ListedWindows::onScreen));
}

TEST_F(PickedWindow, IsPickedOnceMoreWhereThePortalDoesNotFindItAgain) {
  ASSERT_NO_FATAL_FAILURE(pickWindow());
  portal_.forgetTokens();
  portal_.closeSessions();
  ASSERT_TRUE(eventually([&] { return !isListed(ListedWindows::onScreen); }));
  mirror();
  EXPECT_TRUE(eventuallyShows(testbed::fourColours));
  EXPECT_EQ(portal_.timesAsked(), 2);
}

TEST_F(PickedWindow, KeepsItsPictureAndTroublesNobodyWhenTheWindowCloses) {
  ASSERT_NO_FATAL_FAILURE(pickWindow());
  mirror();
  ASSERT_TRUE(eventuallyShows(testbed::fourColours));
  source_.reset();
  EXPECT_TRUE(eventually([&] { return mirror_.ends() == 1; }));
  EXPECT_TRUE(mirror_.shows(testbed::fourColours, {0, 0, 400, 300}));
  EXPECT_EQ(portal_.timesAsked(), 1);
}

TEST_F(PickedWindow, IsMirroredAgainByWishAfterPipeWireWasRestarted) {
  ASSERT_NO_FATAL_FAILURE(pickWindow());
  mirror();
  ASSERT_TRUE(eventuallyShows(testbed::fourColours));
  session_.stopPipeWire();
  source_->show(otherColours);
  EXPECT_TRUE(mirror_.shows(testbed::fourColours, {0, 0, 400, 300}));
  session_.startPipeWire();
  ASSERT_TRUE(eventually([&] { return !isListed(ListedWindows::onScreen); }));
  mirror_.stop();
  mirror();
  EXPECT_TRUE(eventuallyShows(otherColours));
  EXPECT_EQ(portal_.timesAsked(), 1);
}

TEST_F(QuicklyForgottenWindow, IsSharedNoMoreWhereNoMirrorOpens) {
  ASSERT_NO_FATAL_FAILURE(pickWindow());
  EXPECT_TRUE(eventuallyHasSessions(0));
  EXPECT_TRUE(eventually([&] { return !isListed(ListedWindows::onScreen); }));
}

TEST_F(QuicklyForgottenWindow, IsSharedAsLongAsItsMirrorRunsAndNotMuchLonger) {
  ASSERT_NO_FATAL_FAILURE(pickWindow());
  mirror();
  ASSERT_TRUE(eventuallyShows(testbed::fourColours));
  const int before = mirror_.samples();
  ASSERT_TRUE(eventually([&] {
    source_->show(otherColours);
    source_->show(testbed::fourColours);
    return mirror_.samples() > before + 20;
  }));
  EXPECT_EQ(portal_.openSessions(), 1);
  mirror_.stop();
  EXPECT_TRUE(eventuallyHasSessions(0));
}

TEST_F(PickedWindow, IsToldToBeImpossibleWhereOnlyScreensAreOffered) {
  portal_.offerWindows(false);
  person_.askPortal();
  EXPECT_TRUE(person_.eventuallyOffers(PickingOffer::noWindows));
}

TEST_F(PickedWindow, IsToldToBeImpossibleWhileThePortalIsAway) {
  person_.askPortal();
  ASSERT_TRUE(person_.eventuallyOffers(PickingOffer::windows));
  portal_.leave();
  EXPECT_TRUE(person_.eventuallyOffers(PickingOffer::noPortal));
  portal_.comeBack();
  EXPECT_TRUE(person_.eventuallyOffers(PickingOffer::windows));
}

TEST_F(PickedWindow, IsToldToBeImpossibleWhileThePortalHangs) {
  portal_.hang(true);
  person_.askPortal();
  EXPECT_TRUE(person_.eventuallyOffers(PickingOffer::noAnswer));
  portal_.hang(false);
  EXPECT_TRUE(person_.eventuallyOffers(PickingOffer::windows));
}

TEST_F(PickedWindow, IsNoneWhereThePortalEndsWhileItsDialogIsOpen) {
  portal_.answer(TestPortal::Answer::none);
  person_.openDialog("x11:1");
  ASSERT_TRUE(eventually([&] { return portal_.openDialogs() == 1; }));
  EXPECT_EQ(portal_.lastRequest().parentWindow, "x11:1");
  portal_.leave();
  EXPECT_TRUE(eventually(
      [&] { return person_.status() == "No window was shared: xdg-desktop-portal has failed."; }));
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
