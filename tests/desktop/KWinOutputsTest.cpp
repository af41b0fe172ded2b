#include <array>
#include <chrono>

#include "tests/desktop/KWinDesktopTest.h"
#include "tests/support/NativeDock.h"

namespace vistrel::testbed {
namespace {

/// A mirror of a native window on the second of two outputs that show things larger. Its panel
/// opens on the first one.
class KWinOutputs : public OneNativeSource, public ::testing::WithParamInterface<double> {
 protected:
  static constexpr Rect sourceArea{1500, 500, 800, 400};
  static constexpr int desktopWidth = 2 * screenWidth;

  KWinOutputs()
      : OneNativeSource({.scale = GetParam(), .outputs = 2, .granted = {VISTREL_PROGRAM}}) {
    kwin_.moveTo("Source", {sourceArea.x, sourceArea.y});
  }

  /// Whether the panel's picture has the colours of its quarters right up to where they meet.
  bool isSharp(const PanelOnScreen& panel) const {
    const Picture shown = screen_->read(panel.contents());
    const int x = shown.width() / 2;
    const int y = shown.height() / 2;
    constexpr int blurred = 2;
    const auto isAt = [&](int left, int top, Rgb colour) {
      return similar(shown.at(left, top), colour, 6);
    };
    return isAt(x - blurred - 1, y - blurred - 1, fourColours.topLeft) &&
           isAt(x + blurred, y - blurred - 1, fourColours.topRight) &&
           isAt(x - blurred - 1, y + blurred, fourColours.bottomLeft) &&
           isAt(x + blurred, y + blurred, fourColours.bottomRight);
  }
  /// Whether the source's pointer is shown where it points to that place of the source: a black
  /// square, whose first corner is there.
  bool hasPointerAt(const PanelOnScreen& panel, Point place) const {
    const Picture shown = screen_->read(panel.contents());
    const auto isDark = [&](int x, int y) {
      const Rgb colour = shown.at((place.x + x) * shown.width() / sourceArea.width,
                                  (place.y + y) * shown.height() / sourceArea.height);
      return similar(colour, black, 30);
    };
    return isDark(8, 8) && !isDark(-5, 8) && !isDark(8, -5) && !isDark(23, 8) && !isDark(8, 23);
  }
  /// Holds the panel at its picture, and drags it there until it has jumped to `snapped`: it may be
  /// a step behind the pointer.
  ::testing::AssertionResult snaps(const PanelOnScreen& panel, Point proposed, Point snapped) {
    constexpr std::chrono::seconds onItsWay{2};
    const bool isThere = eventually([&] {
      const Rect area = panel.area();
      const Point from = panel.contents().centre();
      handOnX_.drag(from, {from.x + proposed.x - area.x, from.y + proposed.y - area.y});
      return eventually(
          [&] {
            return panel.area() == Rect{snapped.x, snapped.y, area.width, area.height};
          },
          onItsWay);
    });
    if (isThere) {
      return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure() << panel.area();
  }
  /// Whether each change of the source that comes alone is seen in the panel.
  bool comesToFollow(const PanelOnScreen& panel) {
    return std::ranges::all_of(std::array{otherColours, fourColours}, [&](const Quadrants& next) {
      source_->show(next);
      return eventually([&] { return panel.shows(next); });
    });
  }
};

INSTANTIATE_TEST_SUITE_P(Scales, KWinOutputs, ::testing::Values(1.5, 2), [](const auto& scale) {
  return std::string(scale.param == 2 ? "Two" : "OneAndAHalf");
});

TEST_P(KWinOutputs, ShowAPanelSharplyOnEitherWithThePointerWhereItIsOverTheSource) {
  const TestWindow dock(desktop_.xName(),
                        {.title = "Dock",
                         .area = {screenWidth, screenHeight - 40, screenWidth, 40},
                         .decorated = false,
                         .struts = {0, 0, 0, 40, 0, 0, 0, 0, 0, 0, screenWidth, desktopWidth - 1}});
  const PanelOnScreen panel = mirrorSource();
  EXPECT_TRUE(eventually([&] { return isSharp(panel); }));

  const Rect start = panel.area();
  const Point corner{desktopWidth - start.width, screenHeight - 40 - start.height};
  ASSERT_TRUE(snaps(panel, {corner.x - 7, corner.y - 9}, corner));
  EXPECT_TRUE(eventually([&] { return isSharp(panel); }));
  ASSERT_TRUE(snaps(panel, {screenWidth + 8, 300}, {screenWidth, 300}));
  EXPECT_TRUE(comesToFollow(panel));

  constexpr Point place{500, 300};
  // KWin 5.27 tells each picture of the pointer once, which may get lost.
  EXPECT_TRUE(eventually([&] {
    hand_.moveTo(panel.titleBar());
    hand_.moveTo({sourceArea.x + place.x + 1, sourceArea.y + place.y});
    hand_.moveTo({sourceArea.x + place.x, sourceArea.y + place.y});
    return hasPointerAt(panel, place);
  }));
}

TEST_P(KWinOutputs, HaveNativeDocksBesideWhichPanelsSnap) {
  constexpr int depth = 40;
  constexpr int edge = screenHeight - depth;
  const PanelOnScreen panel = mirrorSource();
  const int height = panel.area().height;
  const NativeDock dock(desktop_.environment(), {screenWidth, edge, screenWidth, depth});
  EXPECT_TRUE(snaps(panel, {1700, edge - height - 7}, {1700, edge - height}));
  EXPECT_TRUE(snaps(panel, {300, screenHeight - height - 7}, {300, screenHeight - height}))
      << "the dock is on the other output";

  // As deep, so that the area that X is told of stays what it is.
  NativeDock other(desktop_.environment(), {0, edge, screenWidth, depth});
  EXPECT_TRUE(snaps(panel, {340, edge - height - 7}, {340, edge - height}));
  other.close();
  EXPECT_TRUE(snaps(panel, {300, screenHeight - height - 7}, {300, screenHeight - height}));
  EXPECT_TRUE(snaps(panel, {1740, edge - height - 7}, {1740, edge - height}));
}

TEST_P(KWinOutputs, HaveANativeSourceThatIsKeptAwakeInTheCornerOfTheFirst) {
  kwin_.run("win('Source').frameGeometry = {x: 1500 + 2 / 3, y: 500.5, width: 800, height: 400}");
  const auto frame = [&] { return kwin_.run("tell(win('Source').frameGeometry)"); };
  const std::string home = frame();
  const PanelOnScreen panel = mirrorSource();
  choose(openMenu(panel), "Keep Source Awake (Park Off-Screen)");
  const Rect parked{screenWidth - 40, screenHeight - 40, sourceArea.width, sourceArea.height};
  EXPECT_TRUE(eventually([&] { return kwin_.frameOf("Source") == parked; }))
      << kwin_.frameOf("Source");
  EXPECT_TRUE(comesToFollow(panel));
  choose(openMenu(panel), "Stop Keeping Source Awake (Restore Window)");
  EXPECT_TRUE(eventually([&] { return kwin_.frameOf("Source").x > parked.x; }));
  EXPECT_TRUE(comesToFollow(panel));
  EXPECT_EQ(frame(), home);
}

}  // namespace
}  // namespace vistrel::testbed
