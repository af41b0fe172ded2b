#include <gtest/gtest.h>
#include <optional>
#include <string>

#include "platform/linux/wayland/kwin/KWinStreams.h"
#include "platform/linux/wayland/stream/PipeWireSource.h"
#include "tests/linux/pictures/TestMirror.h"
#include "tests/support/FakeInput.h"
#include "tests/support/KWinScripts.h"
#include "tests/support/KWinSession.h"
#include "tests/support/NativeWindow.h"
#include "tests/support/Poll.h"

namespace vistrel::platform::linux_desktop {
namespace {

using testbed::eventually;
using testbed::Rect;

constexpr WindowID anyId = 0x80000001;
constexpr testbed::Quadrants otherColours{testbed::white, testbed::blue, testbed::red,
                                          testbed::green};

std::unique_ptr<CaptureSource> openWindowOfKWin(const CapturingMirror& mirror, WindowID window,
                                                const std::string& uuid) {
  auto request = KWinStreams::request(mirror.queue, uuid);
  return request ? PipeWireSource::open(mirror, window, *std::move(request)) : nullptr;
}

/// A native window of 400 × 300 and a mirror of it in a panel half as large, in a session of KWin.
class NativePicture : public ::testing::Test {
 protected:
  static constexpr Rect panelArea{40, 40, 200, 150};
  static constexpr testbed::Point place{600, 300};
  static constexpr testbed::Point elsewhere{1200, 1000};

  explicit NativePicture(const testbed::KWinSession::Options& options = {}) : session_(options) {
    kwin_.moveTo(title, place);
    hand_.moveTo(elsewhere);
  }

  void mirror() {
    const auto uuid = kwin_.run("tell(String(win('" + std::string(title) + "').internalId))");
    mirror_.start(anyId, [uuid](const CapturingMirror& mirror, WindowID window) {
      return openWindowOfKWin(mirror, window, uuid);
    });
  }
  bool eventuallyShows(const testbed::Quadrants& picture, int width = 400, int height = 300) {
    return eventually([&] { return mirror_.shows(picture, {0, 0, width, height}); });
  }

  static constexpr const char* title = "Mine";
  testbed::KWinSession session_;
  const bool isAdopted_ = (session_.adoptEnvironment(), true);
  testbed::KWinScripts kwin_{session_.busAddress()};
  const testbed::WaylandClient client_;
  testbed::FakeInput hand_{client_};
  std::optional<testbed::NativeWindow> window_{std::in_place, session_.environment(),
                                               testbed::NativeWindow::Options{.title = title}};
  const testbed::XConnection x_{session_.xName()};
  TestMirror mirror_{x_, panelArea, TestMirror::Panels::composited};
};

TEST_F(NativePicture, ArrivesInAPanelAndFollowsTheWindow) {
  mirror();
  EXPECT_TRUE(eventuallyShows(testbed::fourColours));
  EXPECT_TRUE(mirror_.wasGiven(testbed::fourColours));
  window_->show(otherColours);
  EXPECT_TRUE(eventuallyShows(otherColours));
}

TEST_F(NativePicture, IsBroughtOverWhereItHasChanged) {
  mirror();
  ASSERT_TRUE(eventuallyShows(testbed::fourColours));
  window_->paint({300, 200, 8, 8}, testbed::white);
  EXPECT_TRUE(eventually([&] {
    mirror_.turn();
    return similar(mirror_.colourAt(304.0 / 400, 204.0 / 300, {0, 0, 400, 300}), testbed::white, 8);
  }));
  EXPECT_TRUE(mirror_.shows(testbed::fourColours, {0, 0, 400, 300}));
}

TEST_F(NativePicture, IsOfTheNewSizeAfterAResize) {
  mirror();
  ASSERT_TRUE(eventuallyShows(testbed::fourColours));
  window_->resize(640, 200);
  EXPECT_TRUE(eventuallyShows(testbed::fourColours, 640, 200));
  window_->show(otherColours);
  EXPECT_TRUE(eventuallyShows(otherColours, 640, 200));
  window_->resize(100, 333);
  EXPECT_TRUE(eventuallyShows(otherColours, 100, 333));
}

TEST_F(NativePicture, GoesOnWhileTheWindowIsCoveredMinimisedOrOnAnotherDesktop) {
  mirror();
  ASSERT_TRUE(eventuallyShows(testbed::fourColours));
  const testbed::NativeWindow cover(session_.environment(),
                                    {.title = "Cover", .width = 800, .height = 600});
  kwin_.moveTo("Cover", {400, 200});
  window_->show(otherColours);
  EXPECT_TRUE(eventuallyShows(otherColours));
  kwin_.showDesktop(2);
  window_->show(testbed::fourColours);
  EXPECT_TRUE(eventuallyShows(testbed::fourColours));
  kwin_.showDesktop(1);
  window_->minimise();
  window_->show(otherColours);
  EXPECT_TRUE(eventuallyShows(otherColours));
}

TEST_F(NativePicture, StaysWhenTheWindowCloses) {
  mirror();
  ASSERT_TRUE(eventuallyShows(testbed::fourColours));
  window_->close();
  EXPECT_TRUE(eventually([&] { return mirror_.ends() == 1; }));
  EXPECT_TRUE(mirror_.shows(testbed::fourColours, {0, 0, 400, 300}));
}

TEST_F(NativePicture, IsNoneOfAWindowThatIsNotThere) {
  mirror_.start(anyId, [](const CapturingMirror& mirror, WindowID window) {
    return openWindowOfKWin(mirror, window, "{00000000-0000-0000-0000-000000000000}");
  });
  ASSERT_TRUE(eventually([&] { return mirror_.answered() == 1; }));
  EXPECT_EQ(mirror_.startFailure(), "The window is no longer there.");
}

TEST_F(NativePicture, IsThereAgainAfterARefresh) {
  mirror();
  ASSERT_TRUE(eventuallyShows(testbed::fourColours));
  mirror_.stop();
  mirror_.settle();
  const int before = mirror_.samples();
  mirror();
  EXPECT_TRUE(eventually([&] { return mirror_.samples() > before; }));
  window_->show(otherColours);
  EXPECT_TRUE(eventuallyShows(otherColours));
}

TEST_F(NativePicture, StaysWhatItWasWhereAFrameIsRejected) {
  mirror();
  ASSERT_TRUE(eventuallyShows(testbed::fourColours));
  mirror_.setAccepting(false);
  window_->show(otherColours);
  ASSERT_TRUE(eventually([&] { return mirror_.wasGiven(otherColours); }));
  // A panel that grows draws from finer levels, which come from the source.
  mirror_.resizePanel(500, 400);
  EXPECT_TRUE(eventuallyShows(testbed::fourColours));
  mirror_.setAccepting(true);
  window_->paint({0, 0, 1, 1}, testbed::black);
  EXPECT_TRUE(eventuallyShows(otherColours));
}

TEST_F(NativePicture, HasThePointerWhereItIsOverTheWindow) {
  constexpr testbed::Quadrants white{testbed::white, testbed::white, testbed::white,
                                     testbed::white};
  window_->show(white);
  mirror();
  mirror_.resizePanel(400, 300);
  ASSERT_TRUE(eventuallyShows(white));
  const auto hasPointerAt = [&](int x, int y) {
    mirror_.turn();
    const auto shown = mirror_.panelPicture();
    return shown.at(x + 1, y + 1) == testbed::black && shown.at(x + 14, y + 14) == testbed::black &&
           shown.at(x - 1, y + 1) == testbed::white && shown.at(x + 17, y + 1) == testbed::white;
  };
  // KWin 5.27 tells each picture of the pointer once, which may get lost; the next one is told when
  // the pointer comes back.
  const auto comesTo = [&](int x, int y) {
    return eventually([&] {
      hand_.moveTo(elsewhere);
      hand_.moveTo({place.x + x + 1, place.y + y});
      hand_.moveTo({place.x + x, place.y + y});
      return hasPointerAt(x, y);
    });
  };
  EXPECT_TRUE(comesTo(200, 150));
  EXPECT_TRUE(comesTo(30, 250));
  hand_.moveTo(elsewhere);
  EXPECT_TRUE(eventually([&] { return !hasPointerAt(30, 250); }));
  EXPECT_TRUE(eventuallyShows(white));
}

/// The same on the second of two outputs that show things larger.
class NativePictureAtScale : public NativePicture, public ::testing::WithParamInterface<double> {
 protected:
  static constexpr testbed::Point placeOnSecond{1900, 300};

  NativePictureAtScale() : NativePicture({.scale = GetParam(), .outputs = 2}) {
    kwin_.moveTo(title, placeOnSecond);
  }
};

INSTANTIATE_TEST_SUITE_P(Any, NativePictureAtScale, ::testing::Values(1.5, 2));

TEST_P(NativePictureAtScale, HasThePointerWhereItIsOverTheWindow) {
  mirror();
  mirror_.resizePanel(400, 300);
  EXPECT_TRUE(eventuallyShows(testbed::fourColours));
  EXPECT_TRUE(mirror_.wasGiven(testbed::fourColours));
  EXPECT_TRUE(eventually([&] {
    hand_.moveTo(elsewhere);
    hand_.moveTo({placeOnSecond.x + 251, placeOnSecond.y + 100});
    hand_.moveTo({placeOnSecond.x + 250, placeOnSecond.y + 100});
    mirror_.turn();
    const auto shown = mirror_.panelPicture();
    return shown.at(252, 102) == testbed::black && shown.at(264, 114) == testbed::black &&
           shown.at(248, 102) != testbed::black && shown.at(268, 102) != testbed::black;
  }));
}

TEST_F(NativePicture, ComesTwiceASecondAtMostWhileNobodySeesItAndAtOnceWhenSeenAgain) {
  mirror();
  ASSERT_TRUE(eventuallyShows(testbed::fourColours));
  mirror_.rollUp();
  mirror_.settle();
  const auto before = mirror_.frames().size();
  int changes = 0;
  ASSERT_TRUE(eventually([&] {
    window_->show(++changes % 2 == 0 ? testbed::fourColours : otherColours);
    return mirror_.frames().size() >= before + 4;
  }));
  const auto frames = mirror_.frames();
  // The first one may have been on its way. They are half a second apart on average.
  constexpr int pauses = 2;
  EXPECT_GE(frames.at(before + 1 + pauses) - frames.at(before + 1), pauses * 0.4);
  EXPECT_GT(changes, 8);
  window_->show(otherColours);
  mirror_.resizePanel(panelArea.width, panelArea.height);
  EXPECT_TRUE(eventuallyShows(otherColours));
}

TEST_F(NativePicture, HasNoFrameOfAStillWindowWhoseMirrorIsUnrolled) {
  mirror();
  ASSERT_TRUE(eventuallyShows(testbed::fourColours));
  mirror_.rollUp();
  window_->show(otherColours);
  ASSERT_TRUE(eventually([&] { return mirror_.wasGiven(otherColours); }));
  const int before = mirror_.samples();
  mirror_.resizePanel(panelArea.width, panelArea.height);
  ASSERT_TRUE(eventuallyShows(otherColours));
  // What comes now comes of a change.
  window_->paint({0, 0, 400, 300}, testbed::white);
  ASSERT_TRUE(eventuallyShows({testbed::white, testbed::white, testbed::white, testbed::white}));
  EXPECT_EQ(mirror_.samples(), before + 1);
}

TEST_F(NativePicture, GoesOnByItselfWhenPipeWireIsBack) {
  mirror();
  ASSERT_TRUE(eventuallyShows(testbed::fourColours));
  session_.stopPipeWire();
  window_->show(otherColours);
  EXPECT_TRUE(mirror_.shows(testbed::fourColours, {0, 0, 400, 300}));
  session_.startPipeWire();
  EXPECT_TRUE(eventuallyShows(otherColours));
  EXPECT_EQ(mirror_.ends(), 0);
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
