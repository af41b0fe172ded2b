#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include "platform/linux/x11/panel/CoveredPanels.h"
#include "tests/linux/pictures/TestMirror.h"
#include "tests/support/Poll.h"
#include "tests/support/PrivateDisplay.h"
#include "tests/support/TestWindow.h"

namespace vistrel::platform::linux_desktop {
namespace {

using testbed::eventually;

constexpr testbed::Rect panelArea{20, 30, 100, 80};
constexpr testbed::Rect sourceArea{300, 100, 200, 160};
constexpr testbed::Quadrants otherColours{testbed::white, testbed::blue, testbed::red,
                                          testbed::green};

/// A mirror whose panel a person comes not to see, on a server without a compositing manager.
class UnseenPicture : public ::testing::Test {
 protected:
  UnseenPicture() : UnseenPicture(std::vector<std::string>{}) {}
  explicit UnseenPicture(std::vector<std::string> serverArguments)
      : display_({.windowManager = testbed::WindowManager::none,
                  .serverArguments = std::move(serverArguments)}) {}
  void SetUp() override {
    mirror_.start(source_.id());
    ASSERT_TRUE(eventuallyShows(testbed::fourColours));
  }

  bool eventuallyShows(const testbed::Quadrants& picture) {
    return eventually([&] { return mirror_.shows(picture, sourceArea); });
  }
  /// Has the source change all the time until there were some more frames; how far apart these
  /// were on average, in seconds.
  double averagePause() {
    constexpr std::size_t pauses = 6;
    mirror_.settle();
    const auto first = mirror_.frames().size();
    bool isOther = false;
    EXPECT_TRUE(eventually([&] {
      source_.show((isOther ^= true) ? otherColours : testbed::fourColours);
      return mirror_.frames().size() > first + pauses;
    }));
    const auto frames = mirror_.frames();
    return (frames.at(first + pauses) - frames.at(first)) / static_cast<double>(pauses);
  }
  /// As a person's `xset s activate` and `xset s reset`.
  void forceScreenSaver(xcb_screen_saver_t mode) {
    xcb_force_screen_saver(connection_.get(), static_cast<std::uint8_t>(mode));
    connection_.sync();
  }
  /// The picture that the source has last is there when the panel is, without another change.
  void leaveChangeForLater() { source_.show(otherColours); }

  /// That of two frames a second is half a second; of thirty, a thirtieth.
  static constexpr double seldom = 0.3;

  const testbed::PrivateDisplay display_;
  const bool isAdopted_ = (display_.adoptEnvironment(), true);
  const testbed::XConnection connection_{display_.name()};
  testbed::TestWindow source_{display_.name(), {.area = sourceArea, .managed = false}};
  TestMirror mirror_{connection_, panelArea};
};

TEST_F(UnseenPicture, ComesSeldomWhileItsPanelIsRolledUpAndAtOnceAfterwards) {
  mirror_.rollUp();
  EXPECT_GT(averagePause(), seldom);
  leaveChangeForLater();
  mirror_.resizePanel(panelArea.width, panelArea.height);
  EXPECT_TRUE(eventuallyShows(otherColours));
}

TEST_F(UnseenPicture, ComesSeldomWhileItsPanelIsHiddenAndAtOnceAfterwards) {
  xcb_unmap_window(connection_.get(), mirror_.panel());
  connection_.sync();
  EXPECT_GT(averagePause(), seldom);
  leaveChangeForLater();
  xcb_map_window(connection_.get(), mirror_.panel());
  EXPECT_TRUE(eventuallyShows(otherColours));
}

TEST_F(UnseenPicture, ComesSeldomWhileOtherWindowsCoverItsPanelAndAtOnceAfterwards) {
  testbed::TestWindow left(display_.name(), {.area = {0, 0, 70, 200}, .managed = false});
  testbed::TestWindow right(display_.name(), {.area = {70, 0, 100, 200}, .managed = false});
  const double covered = averagePause();
  EXPECT_GT(covered, seldom);
  right.unmap();
  EXPECT_LT(2 * averagePause(), covered);
  source_.show(otherColours);
  EXPECT_TRUE(eventuallyShows(otherColours));
}

TEST_F(UnseenPicture, ComesSeldomWhileOtherPanelsAreSaidToCoverItsPanelAndAtOnceAfterwards) {
  const auto mark = connection_.atom(coveredMark);
  connection_.setNumbers(mirror_.panel(), coveredMark, XCB_ATOM_CARDINAL, {1});
  connection_.sync();
  EXPECT_GT(averagePause(), seldom);
  mirror_.throwOut();
  const double covered = averagePause();
  EXPECT_GT(covered, seldom) << "over another connection";
  leaveChangeForLater();
  xcb_delete_property(connection_.get(), mirror_.panel(), mark);
  EXPECT_TRUE(eventuallyShows(otherColours));
  EXPECT_LT(2 * averagePause(), covered);
}

TEST_F(UnseenPicture, ComesSeldomWhileTheDisplaySleepsAndAtOnceAfterwards) {
  forceScreenSaver(XCB_SCREEN_SAVER_ACTIVE);
  const double asleep = averagePause();
  EXPECT_GT(asleep, seldom);
  forceScreenSaver(XCB_SCREEN_SAVER_RESET);
  EXPECT_LT(2 * averagePause(), asleep);
  source_.show(otherColours);
  EXPECT_TRUE(eventuallyShows(otherColours));
}

TEST_F(UnseenPicture, ComesSeldomOverAConnectionThatFindsTheDisplayAsleep) {
  forceScreenSaver(XCB_SCREEN_SAVER_ACTIVE);
  mirror_.throwOut();
  const double asleep = averagePause();
  EXPECT_GT(asleep, seldom);
  forceScreenSaver(XCB_SCREEN_SAVER_RESET);
  EXPECT_LT(2 * averagePause(), asleep);
}

TEST_F(UnseenPicture, GoesOnUnderAScreenSaverThatMayNotHideTheScreen) {
  forceScreenSaver(XCB_SCREEN_SAVER_ACTIVE);
  const double asleep = averagePause();
  forceScreenSaver(XCB_SCREEN_SAVER_RESET);
  xcb_set_screen_saver(connection_.get(), -1, -1, XCB_BLANKING_NOT_PREFERRED,
                       XCB_EXPOSURES_NOT_ALLOWED);
  forceScreenSaver(XCB_SCREEN_SAVER_ACTIVE);
  EXPECT_LT(2 * averagePause(), asleep);
  source_.show(otherColours);
  EXPECT_TRUE(eventuallyShows(otherColours));
}

/// The same on a server that tells nobody of its screen saver.
class PictureWithoutScreenSaverNews : public UnseenPicture {
 protected:
  PictureWithoutScreenSaverNews() : UnseenPicture({"-extension", "MIT-SCREEN-SAVER"}) {}
};

TEST_F(PictureWithoutScreenSaverNews, GoesOnWhileTheSaverIsActive) {
  forceScreenSaver(XCB_SCREEN_SAVER_ACTIVE);
  const double asleep = averagePause();
  mirror_.rollUp();
  EXPECT_GT(averagePause(), 2 * asleep);
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
