#include "tests/desktop/KWinDesktopTest.h"

namespace vistrel::testbed {
namespace {

using KWinMirror = OneNativeSource;

TEST_F(KWinMirror, IsLiveWhileItsSourceIsCoveredMinimisedOrOnAnotherDesktopAndStaysWhenItCloses) {
  const PanelOnScreen panel = mirrorSource();
  const auto cover = openNative(
      {.title = "Cover", .width = 1000, .height = 500, .picture = Quadrants::uniform(white)},
      {0, 500});
  EXPECT_TRUE(isLive(panel));
  cover->close();

  source_->minimise();
  EXPECT_TRUE(isLive(panel)) << "minimised";
  kwin_.raise("Source");

  kwin_.run("win('Source').desktop = 2;");
  EXPECT_TRUE(isLive(panel)) << "on another desktop";
  kwin_.run("win('Source').desktop = 1;");

  source_->show(fourColours);
  EXPECT_TRUE(comesToShow(panel, fourColours));
  source_->close();
  EXPECT_TRUE(eventually([&] { return panel.dot() == Dot::stale; }));
  EXPECT_TRUE(panel.shows(fourColours));
}

TEST_F(KWinMirror, IsLetterBoxedWhenItsSourceChangesItsShape) {
  const PanelOnScreen panel = mirrorSource();
  source_->resize(300, 300);
  // A square of 136 in the middle of 272 × 136, black at both sides.
  const auto showsSquareOf = [&](const Quadrants& picture) {
    const Picture shown = screen_->read(panel.contents());
    const auto isAt = [&](double x, double y, Rgb colour) {
      return similar(shown.at(Rect{0, 0, shown.width(), shown.height()}.at(x, y)), colour, 6);
    };
    return isAt(0.1, 0.5, black) && isAt(0.9, 0.5, black) && isAt(0.3, 0.1, picture.topLeft) &&
           isAt(0.7, 0.1, picture.topRight) && isAt(0.4, 0.9, picture.bottomLeft) &&
           isAt(0.6, 0.75, picture.bottomRight);
  };
  EXPECT_TRUE(eventually([&] { return showsSquareOf(fourColours); }));
  source_->show(otherColours);
  EXPECT_TRUE(eventually([&] { return showsSquareOf(otherColours); }));
}

}  // namespace
}  // namespace vistrel::testbed
