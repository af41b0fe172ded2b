#include "tests/desktop/KWinDesktopTest.h"

namespace vistrel::testbed {
namespace {

using KWinPanel = OneNativeSource;

TEST_F(KWinPanel, IsMovedSnappedResizedAndRolledUpOverAWindowThatCoversTheScreen) {
  const PanelOnScreen panel = mirrorSource();
  const auto film = openNative({.title = "Film", .picture = Quadrants::uniform(white)}, {600, 100});
  film->maximise(true);
  ASSERT_TRUE(eventually([&] {
    return screen_->pixel({screenWidth - 10, screenHeight - 10}) == white;
  }));
  ASSERT_TRUE(comesToShow(panel, fourColours));

  // Each press lies far from the one before, so that no two are a double-click.
  const Rect start = panel.area();
  const Point card = panel.contents().centre();
  handOnX_.drag(card, {card.x + 301, card.y + 117});
  ASSERT_TRUE(becomes(panel, {start.x + 301, start.y + 117, start.width, start.height}));
  const Point title = panel.titleBar();
  constexpr int snapDistance = 12;
  handOnX_.drag(title, {title.x - panel.area().x + snapDistance, title.y});
  ASSERT_TRUE(becomes(panel, {0, start.y + 117, start.width, start.height}));

  const Point grip = panel.grip();
  handOnX_.drag(grip, {grip.x + 83, grip.y + 61});
  const Rect grown{0, start.y + 117, start.width + 83, start.height + 61};
  ASSERT_TRUE(becomes(panel, grown));
  handOnX_.clickAt(panel.titleBar(), 2);
  ASSERT_TRUE(becomes(panel, {0, grown.y, grown.width, PanelOnScreen::titleBarHeight}));
  EXPECT_EQ(film->pressedButtons(), 0);
}

TEST_F(KWinPanel, LiesAboveAnActiveNativeWindowThatFillsTheScreen) {
  const PanelOnScreen panel = mirrorSource();
  const auto film = openNative({.title = "Film", .picture = Quadrants::uniform(white)}, {600, 100});
  const auto fillsScreen = [&](bool does) {
    film->fillScreen(does);
    return eventually([&] {
      return (screen_->pixel({screenWidth - 10, screenHeight - 10}) == white) == does;
    });
  };
  for (int turn = 0; turn < 2; ++turn) {
    ASSERT_TRUE(fillsScreen(true));
    EXPECT_EQ(active(), "Film");
    EXPECT_TRUE(comesToShow(panel, fourColours));
    const Rect area = panel.area();
    const Point card = panel.contents().centre();
    handOnX_.drag(card, {card.x + 301, card.y + 117});
    EXPECT_TRUE(becomes(panel, {area.x + 301, area.y + 117, area.width, area.height}));
    EXPECT_EQ(film->pressedButtons(), 0);
    EXPECT_EQ(active(), "Film");

    ASSERT_TRUE(fillsScreen(false));
    kwin_.raise("Source");
    EXPECT_TRUE(comesToShow(panel, fourColours));
    kwin_.raise("Film");
  }
}

}  // namespace
}  // namespace vistrel::testbed
