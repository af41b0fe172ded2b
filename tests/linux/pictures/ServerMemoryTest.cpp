#include <gtest/gtest.h>
#include <xcb/composite.h>

#include "tests/linux/pictures/TestMirror.h"
#include "tests/support/LittleMemory.h"
#include "tests/support/Poll.h"
#include "tests/support/PrivateDisplay.h"
#include "tests/support/ScreenReader.h"
#include "tests/support/TestWindow.h"

namespace vistrel::platform::linux_desktop {
namespace {

using testbed::eventually;

class ServerMemory : public ::testing::Test {
 protected:
  static constexpr testbed::Rect sourceArea{0, 0, 1400, 1100};
  /// Too few for a picture.
  static constexpr std::size_t bytesLeft = 500'000;

  ServerMemory() { display_.adoptEnvironment(); }

  bool showsSource(TestMirror& mirror, const testbed::Quadrants& picture, testbed::Rect source) {
    return eventually([&] {
      mirror.turn();
      return mirror.shows(picture, source);
    });
  }

  const testbed::PrivateDisplay display_{{.windowManager = testbed::WindowManager::none}};
  const testbed::XConnection connection_{display_.name()};
};

TEST_F(ServerMemory, ThatCannotBeHadFailsAStartWhichWorksLater) {
  testbed::TestWindow source(display_.name(), {.area = sourceArea, .managed = false});
  // As under a compositor. For X.Org's server 21.1.7, which crashes where it has no memory for
  // that.
  xcb_composite_redirect_window(connection_.get(), source.id(), XCB_COMPOSITE_REDIRECT_AUTOMATIC);
  connection_.sync();
  TestMirror mirror(connection_, {20, 30, 100, 80});
  {
    const testbed::LittleMemory little(display_.serverPid(), bytesLeft);
    mirror.start(source.id());
    ASSERT_TRUE(eventually([&] { return mirror.answered() == mirror.asked(); }));
    EXPECT_EQ(mirror.startFailure(),
              "The display server has no memory for a picture of the window.");
  }
  mirror.start(source.id());
  EXPECT_TRUE(showsSource(mirror, testbed::fourColours, sourceArea));
}

TEST_F(ServerMemory, ThatIsMissingLaterKeepsTheLastPictureUntilItIsThere) {
  constexpr testbed::Rect newArea{0, 0, 1200, 1000};
  testbed::TestWindow source(display_.name(), {.area = sourceArea, .managed = false});
  TestMirror mirror(connection_, {20, 30, 140, 110});
  mirror.start(source.id());
  ASSERT_TRUE(showsSource(mirror, testbed::fourColours, sourceArea));
  mirror.setAccepting(false);
  source.resize(newArea.width, newArea.height);
  const auto other = testbed::Quadrants::uniform(testbed::blue);
  source.show(other);
  ASSERT_TRUE(eventually([&] { return mirror.wasGiven(other); }));
  mirror.settle();
  {
    const testbed::LittleMemory little(display_.serverPid(), bytesLeft);
    mirror.setAccepting(true);
    const int samples = mirror.samples();
    source.paint({0, 0, 10, 10}, testbed::blue);
    ASSERT_TRUE(eventually([&] { return mirror.samples() > samples + 1; })) << "it tries again";
    mirror.turn();
    EXPECT_TRUE(mirror.shows(testbed::fourColours, sourceArea));
  }
  EXPECT_TRUE(showsSource(mirror, other, newArea));
}

TEST_F(ServerMemory, ThatIsMissingForALargerPanelLeavesItAsItIsUntilItIsThere) {
  constexpr testbed::Rect formerArea{20, 30, 140, 110};
  testbed::TestWindow source(display_.name(), {.area = sourceArea, .managed = false});
  TestMirror mirror(connection_, formerArea);
  mirror.start(source.id());
  ASSERT_TRUE(showsSource(mirror, testbed::fourColours, sourceArea));
  {
    const testbed::LittleMemory little(display_.serverPid(), bytesLeft);
    mirror.resizePanel(1200, 900);
    source.paint(sourceArea, testbed::blue);
    EXPECT_TRUE(eventually([&] {
      mirror.turn();
      const auto shot = testbed::ScreenReader(connection_).read(formerArea);
      return testbed::similar(shot.at(70, 55), testbed::blue, 8);
    })) << "the mirror goes on at its former size";
  }
  EXPECT_TRUE(showsSource(mirror, testbed::Quadrants::uniform(testbed::blue), sourceArea));
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
