#include <algorithm>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <string>

#include "platform/linux/wayland/portal/PortalWindows.h"
#include "platform/linux/wayland/stream/PipeWireSource.h"
#include "tests/linux/pictures/TestMirror.h"
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

/// A native window of 400 × 300, which has the keyboard, in a session of mutter, whose windows a
/// person picks in the portal's dialog.
class PickedWindow : public ::testing::Test {
 protected:
  explicit PickedWindow(double longestIdle = 60)
      : windows_(
            std::make_shared<PortalWindows>(std::make_shared<SharedScreenLayout>(), longestIdle)) {}

  void askPortal() {
    windows_->askPortal([told = told_](PickingOffer offer) { told->offer.store(offer); });
  }
  bool eventuallyOffers(PickingOffer offer) {
    return eventually([&] { return told_->offer.load() == offer; });
  }
  /// The person picks the window, which works.
  void pickWindow() {
    ASSERT_EQ(pick(), "");
    ASSERT_TRUE(window_);
  }
  /// What the person is told of it, once it is over.
  std::string pick() {
    if (!eventually([&] { return source_->isActive(); })) return "nothing has the keyboard";
    return pickFocused();
  }
  std::string pickFocused() {
    askPortal();
    if (!eventuallyOffers(PickingOffer::windows)) return "nothing is offered";
    windows_->pick("", [told = told_](WindowRecord window, const std::string& status) {
      told->window.store(std::move(window));
      told->status.store(status);
    });
    if (!eventually([&] { return told_->status.load().has_value(); })) return "nothing";
    window_ = told_->window.load();
    const auto status = told_->status.load();
    told_->status.store(std::nullopt);
    return *status;
  }
  void mirror() {
    mirror_.start(
        window_->windowID, [windows = windows_](const CapturingMirror& mirror, WindowID window) {
          return PipeWireSource::open(mirror, window, windows->request(mirror.queue, window));
        });
  }
  bool eventuallyShows(const testbed::Quadrants& picture) {
    return eventually([&] { return mirror_.shows(picture, {0, 0, 400, 300}); });
  }
  bool isListed(ListedWindows listed) const {
    const auto records = windows_->records(listed);
    return std::find(records.begin(), records.end(), window_) != records.end();
  }
  bool eventuallyHasSessions(int count) {
    return eventually([&] { return portal_.openSessions() == count; });
  }

  struct Told {
    Guarded<PickingOffer> offer;
    Guarded<WindowRecord> window;
    Guarded<std::optional<std::string>> status;
  };

  testbed::MutterSession session_;
  const bool isAdopted_ = (session_.adoptEnvironment(), true);
  TestPortal portal_{session_};
  const testbed::XConnection x_{session_.xName()};
  TestMirror mirror_{x_, panelArea, TestMirror::Panels::composited};
  // After the panel, so that it has the keyboard.
  std::optional<testbed::NativeWindow> source_{std::in_place, session_.environment(),
                                               testbed::NativeWindow::Options{.title = "Mine"}};
  std::shared_ptr<PortalWindows> windows_;
  std::shared_ptr<Told> told_ = std::make_shared<Told>();
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
  EXPECT_TRUE(eventually([&] { return pickFocused().empty() && window_->frame.size == expected; }))
      << window_->frame.size.width << " × " << window_->frame.size.height;
}

TEST_F(PickedWindow, IsOfTheNewSizeAfterAResize) {
  ASSERT_NO_FATAL_FAILURE(pickWindow());
  mirror();
  ASSERT_TRUE(eventuallyShows(testbed::fourColours));
  source_->resize(640, 200);
  EXPECT_TRUE(eventually([&] { return mirror_.shows(testbed::fourColours, {0, 0, 640, 200}); }));
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
  askPortal();
  EXPECT_TRUE(eventuallyOffers(PickingOffer::noWindows));
}

TEST_F(PickedWindow, IsToldToBeImpossibleWhileThePortalIsAway) {
  askPortal();
  ASSERT_TRUE(eventuallyOffers(PickingOffer::windows));
  portal_.leave();
  EXPECT_TRUE(eventuallyOffers(PickingOffer::noPortal));
  portal_.comeBack();
  EXPECT_TRUE(eventuallyOffers(PickingOffer::windows));
}

TEST_F(PickedWindow, IsToldToBeImpossibleWhileThePortalHangs) {
  portal_.hang(true);
  askPortal();
  EXPECT_TRUE(eventuallyOffers(PickingOffer::noAnswer));
  portal_.hang(false);
  EXPECT_TRUE(eventuallyOffers(PickingOffer::windows));
}

TEST_F(PickedWindow, IsNoneWhereThePortalEndsWhileItsDialogIsOpen) {
  portal_.answer(TestPortal::Answer::none);
  windows_->pick("x11:1", [told = told_](const WindowRecord& window, const std::string& status) {
    told->window.store(window);
    told->status.store(status);
  });
  ASSERT_TRUE(eventually([&] { return portal_.openDialogs() == 1; }));
  EXPECT_EQ(portal_.lastRequest().parentWindow, "x11:1");
  portal_.leave();
  EXPECT_TRUE(eventually([&] {
    return told_->status.load() == "No window was shared: xdg-desktop-portal has failed.";
  }));
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
