#include "tests/desktop/DesktopTest.h"

namespace vistrel::testbed {
namespace {

constexpr Quadrants otherColours{yellow, blue, red, green};

class MirrorPicture : public DesktopTest {};

TEST_F(MirrorPicture, ShowsAllOfTheSource) {
  const auto source = openSource();
  const PanelOnScreen panel = mirrorOnlySource();
  ASSERT_TRUE(eventually([&] { return panel.shows(fourColours); }));
  const Rect contents = panel.contents();
  constexpr double near = 0.02;
  constexpr double far = 0.98;
  constexpr int tolerance = 6;
  EXPECT_TRUE(similar(screen_.pixel(contents.at(near, near)), red, tolerance));
  EXPECT_TRUE(similar(screen_.pixel(contents.at(far, near)), green, tolerance));
  EXPECT_TRUE(similar(screen_.pixel(contents.at(0.49, 0.49)), red, tolerance));
  EXPECT_TRUE(similar(screen_.pixel(contents.at(0.51, 0.51)), yellow, tolerance));
  EXPECT_TRUE(similar(screen_.pixel(contents.at(0.06, far)), blue, tolerance));
  EXPECT_TRUE(similar(screen_.pixel(contents.at(0.9, far)), yellow, tolerance));
}

TEST_F(MirrorPicture, ShowsTheFrameThatTheManagerDraws) {
  const auto source = openSource({.area = {240, 480, 1000, 500}});
  const PanelOnScreen panel = mirrorOnlySource();
  const auto extents = frameExtentsOf(connection_, source->id());
  ASSERT_TRUE(extents.has_value());
  ASSERT_GT(extents->top, 0);
  const Rect framed{0, 0, 1000 + extents->left + extents->right,
                    500 + extents->top + extents->bottom};
  EXPECT_TRUE(
      eventually([&] { return panel.area() == PanelOnScreen::computedArea(framed, firstPanel); }));
  EXPECT_TRUE(eventually([&] { return panel.shows(fourColours); }));
  // The frame's title bar lies above the source's own red corner.
  EXPECT_FALSE(similar(screen_.pixel(panel.contents().at(0.1, 0.01)), red, 6));
}

TEST_F(MirrorPicture, FollowsTheSourceWhenItChanges) {
  const auto source = openSource();
  const PanelOnScreen panel = mirrorOnlySource();
  EXPECT_TRUE(eventually([&] { return panel.shows(fourColours); }));
  source->show(otherColours);
  EXPECT_TRUE(eventually([&] { return panel.shows(otherColours); }));
  source->paint({0, 0, 500, 250}, white);
  EXPECT_TRUE(eventually([&] {
    return panel.shows(
        {white, otherColours.topRight, otherColours.bottomLeft, otherColours.bottomRight});
  }));
}

TEST_F(MirrorPicture, FollowsTheSourceWhileItIsCovered) {
  const auto source = openSource();
  const PanelOnScreen panel = mirrorOnlySource();
  const auto cover = openSource({.title = "Cover", .area = {0, 420, 1280, 600}});
  cover->raiseAbove(*source);
  source->show(otherColours);
  EXPECT_TRUE(eventually([&] { return panel.shows(otherColours); }));
}

TEST_F(MirrorPicture, IsWholeWhenTheSourceWasCoveredFromTheStart) {
  const auto source = openSource();
  const auto cover = openSource({.title = "Cover",
                                 .application = "Zebra",
                                 .area = {0, 420, 1280, 600},
                                 .picture = Quadrants::uniform(white)});
  cover->raiseAbove(*source);
  startVistrel();
  const PanelOnScreen panel = mirrorRow(0, 2, 1);
  source->show(otherColours);
  EXPECT_TRUE(eventually([&] { return panel.shows(otherColours); }));
}

TEST_F(MirrorPicture, FollowsTheSourceWhileMostOfItIsOffScreen) {
  const auto source = openSource();
  const PanelOnScreen panel = mirrorOnlySource();
  source->moveTo({1080, 800});
  source->show(otherColours);
  EXPECT_TRUE(eventually([&] { return panel.shows(otherColours); }));
}

TEST_F(MirrorPicture, IsLetterBoxedWhenTheSourceChangesItsShape) {
  const auto source = openSource();
  const PanelOnScreen panel = mirrorOnlySource();
  ASSERT_TRUE(eventually([&] { return panel.shows(fourColours); }));
  // 500 × 500 in contents of 340 × 170: a square of 170 in the middle, black at both sides.
  source->resize(500, 500);
  EXPECT_TRUE(eventually([&] {
    const Rect contents = panel.contents();
    return similar(screen_.pixel(contents.at(0.1, 0.5)), black, 6) &&
           similar(screen_.pixel(contents.at(0.9, 0.5)), black, 6) &&
           similar(screen_.pixel(contents.at(0.4, 0.25)), red, 6) &&
           similar(screen_.pixel(contents.at(0.6, 0.75)), yellow, 6);
  }));
}

TEST_F(MirrorPicture, TheDotIsGreenWhileTheSourceChangesAndAmberWhenItRests) {
  const auto source = openSource();
  const PanelOnScreen panel = mirrorOnlySource();
  EXPECT_TRUE(eventually([&] { return panel.dot() == Dot::stale; }));
  bool flip = false;
  EXPECT_TRUE(eventually([&] {
    flip = !flip;
    source->show(flip ? otherColours : fourColours);
    return panel.dot() == Dot::live;
  }));
  EXPECT_TRUE(eventually([&] { return panel.dot() == Dot::stale; }));
}

TEST_F(MirrorPicture, AnAcceptedPictureStaysOverABlackFrameAResizeAndAnExpose) {
  const auto source = openSource();
  const PanelOnScreen panel = mirrorOnlySource();
  ASSERT_TRUE(eventually([&] { return panel.shows(fourColours); }));
  source->show(Quadrants::uniform(black));
  // Amber a while after the change: the black frame has come and was not shown.
  ASSERT_TRUE(eventually([&] { return panel.dot() == Dot::stale; }));
  EXPECT_TRUE(panel.shows(fourColours));

  const Point grip = panel.grip();
  input_.drag(grip, {grip.x + 100, grip.y + 50});
  ASSERT_TRUE(eventually([&] { return panel.area().width == 440; }));
  EXPECT_TRUE(eventually([&] { return panel.shows(fourColours); }));
  {
    const TestWindow cover(display_.name(),
                           {.area = panel.area(), .picture = {}, .managed = false});
    EXPECT_TRUE(eventually([&] { return panel.shows(Quadrants::uniform(black)); }));
  }
  EXPECT_TRUE(eventually([&] { return panel.shows(fourColours); }));

  source->show(otherColours);
  EXPECT_TRUE(eventually([&] { return panel.shows(otherColours); }));
}

TEST_F(MirrorPicture, ABlackFirstFrameIsShown) {
  const auto source =
      openSource({.area = sourceArea, .picture = Quadrants::uniform(black), .decorated = false});
  const PanelOnScreen panel = mirrorOnlySource();
  EXPECT_TRUE(eventually([&] { return panel.shows(Quadrants::uniform(black)); }));
  source->show(fourColours);
  EXPECT_TRUE(eventually([&] { return panel.shows(fourColours); }));
}

}  // namespace
}  // namespace vistrel::testbed
