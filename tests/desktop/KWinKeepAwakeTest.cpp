#include <csignal>

#include "tests/desktop/KWinDesktopTest.h"

namespace vistrel::testbed {
namespace {

class KWinKeepAwake : public OneNativeSource {
 protected:
  static constexpr const char* keepAwake = "Keep Source Awake (Park Off-Screen)";
  static constexpr const char* stopKeepingAwake = "Stop Keeping Source Awake (Restore Window)";

  bool isInCorner() {
    const Rect frame = kwin_.frameOf("Source");
    return frame.x >= screenWidth - std::max(40, frame.width / 10) &&
           frame.y >= screenHeight - std::max(40, frame.height / 10);
  }
  ::testing::AssertionResult isAt(Rect frame) {
    if (eventually([&] { return kwin_.frameOf("Source") == frame; })) {
      return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure() << kwin_.frameOf("Source");
  }
  void expectKeysAtSource() {
    const int before = source_->typedKeys();
    EXPECT_TRUE(eventually([&] {
      hand_.type(keyA);
      return source_->typedKeys() > before;
    }));
  }
  /// Parks the source and takes it back.
  void keepAwakeForAWhile(const PanelOnScreen& panel) {
    const Rect home = kwin_.frameOf("Source");
    const Rect place = panel.area();
    choose(openMenu(panel), keepAwake);
    ASSERT_TRUE(eventually([&] { return isInCorner(); })) << kwin_.frameOf("Source");
    EXPECT_TRUE(isLive(panel));
    EXPECT_EQ(panel.area(), place);
    choose(openMenu(panel), stopKeepingAwake);
    EXPECT_TRUE(isAt(home));
    EXPECT_TRUE(isLive(panel));
  }
};

TEST_F(KWinKeepAwake, ANativeSourceIsOutOfTheWayAndLiveAndComesBackExactly) {
  const PanelOnScreen panel = mirrorSource();
  keepAwakeForAWhile(panel);
}

TEST_F(KWinKeepAwake, AMaximisedNativeSourceIsLiveWhileItIsAwayAndMaximisedAfterwards) {
  const PanelOnScreen panel = mirrorSource();
  const Rect before = kwin_.frameOf("Source");
  source_->maximise(true);
  ASSERT_TRUE(isAt({0, 0, screenWidth, screenHeight}));
  EXPECT_TRUE(isLive(panel));
  keepAwakeForAWhile(panel);
  source_->maximise(false);
  EXPECT_TRUE(isAt(before));
}

TEST_F(KWinKeepAwake, ANativeSourceComesBackExactlyWhenTheProgramIsKilled) {
  // Asked for before the program moves windows.
  const Rect home = kwin_.frameOf("Source");
  const PanelOnScreen panel = mirrorSource();
  choose(openMenu(panel), keepAwake);
  ASSERT_TRUE(eventually([&] { return isInCorner(); })) << kwin_.frameOf("Source");
  vistrel_->process().sendSignal(SIGKILL);
  ASSERT_TRUE(vistrel_->process().waitForEnd().has_value());
  vistrel_.reset();
  EXPECT_TRUE(isAt(home));
}

TEST_F(KWinKeepAwake, ANativeSourceIsBroughtToTheFront) {
  const PanelOnScreen panel = mirrorSource();
  const auto cover = openNative({.title = "Cover", .width = 1000, .height = 500}, {0, 500});
  kwin_.raise("Cover");
  choose(openMenu(panel), "Bring Source Window to Front");
  expectKeysAtSource();
  EXPECT_EQ(kwin_.run("tell(win('Source').stackingOrder > win('Cover').stackingOrder)"), "true");

  kwin_.showDesktop(2);
  choose(openMenu(panel), "Bring Source Window to Front");
  expectKeysAtSource();
  EXPECT_EQ(kwin_.run("tell(workspace.currentDesktop)"), "1");
}

}  // namespace
}  // namespace vistrel::testbed
