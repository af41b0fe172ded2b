#include <gtest/gtest.h>

#include "mirror/MirrorCardView.h"
#include "mirror/MirrorContentView.h"
#include "mirror/MirrorPanel.h"
#include "mirror/MirrorResizeGrip.h"
#include "platform/Menu.h"
#include "platform/simulated/RecordingGraphicsContext.h"
#include "tests/core/CoreTest.h"

namespace vistrel {
namespace {

using platform::AccessibilityAction;
using platform::Event;
using platform::simulated::RecordingGraphicsContext;

constexpr Rect panelFrame{{100, 200}, {300, 200}};

class PanelViewsTest : public CoreTest {
 protected:
  PanelViewsTest() {
    panel_->setContentView(card_);
    card_->addSubview(grip_);
    grip_->setFrame(rect(284, 184, 16, 16));
    card_->onDoubleClick = [this] { ++doubleClicks_; };
  }

  void pressAt(Point location, int clickCount = 1) {
    windows().moveMouse(location);
    windows().pressMouse(*panel_, clickCount);
  }
  void dragTo(Point location, std::uint64_t modifiers = platform::modifierNone) {
    windows().dragMouse(*panel_, location, modifiers);
  }
  void release(int clickCount = 1) { windows().releaseMouse(*panel_, clickCount); }

  std::shared_ptr<MirrorCardView> card_ = std::make_shared<MirrorCardView>();
  std::shared_ptr<MirrorResizeGrip> grip_ = std::make_shared<MirrorResizeGrip>();
  std::shared_ptr<MirrorPanel> panel_ = platform::makeOwnedByMain<MirrorPanel>(
      panelFrame, platform::styleNonactivatingPanel, platform::BackingStore::buffered, false);
  int doubleClicks_ = 0;
};

using CardTest = PanelViewsTest;

TEST_F(CardTest, CountsFromItsTopLeft) { EXPECT_TRUE(card_->isFlipped()); }

TEST_F(CardTest, DragsThePanelWithThePointer) {
  pressAt({150, 300});
  dragTo({170, 290});
  EXPECT_EQ(panel_->frame(), rect(120, 190, 300, 200));
  dragTo({150, 300});
  EXPECT_EQ(panel_->frame(), panelFrame);
}

TEST_F(CardTest, DragsThePanelAlsoBelowTheThreshold) {
  pressAt({150, 300});
  dragTo({151, 300});
  EXPECT_EQ(panel_->frame().origin, (Point{101, 200}));
}

TEST_F(CardTest, TakesADoubleClickThatMovesByThreePoints) {
  pressAt({150, 300}, 2);
  dragTo({152, 301});
  release(2);
  EXPECT_EQ(doubleClicks_, 1);
}

TEST_F(CardTest, TakesAGestureOfFourPointsAsADrag) {
  pressAt({150, 300}, 2);
  dragTo({152, 302});
  release(2);
  EXPECT_EQ(doubleClicks_, 0);
  EXPECT_EQ(panel_->frame().origin, (Point{102, 202}));
}

TEST_F(CardTest, CountsTheThresholdOverBothAxesAndDirections) {
  pressAt({150, 300}, 2);
  dragTo({148, 298});
  release(2);
  EXPECT_EQ(doubleClicks_, 0);
}

TEST_F(CardTest, RemembersADragThatCameBack) {
  pressAt({150, 300}, 2);
  dragTo({250, 300});
  dragTo({150, 300});
  release(2);
  EXPECT_EQ(doubleClicks_, 0);
}

TEST_F(CardTest, ForgetsADragAtTheNextPress) {
  pressAt({150, 300});
  dragTo({250, 300});
  release();
  pressAt({250, 300}, 2);
  release(2);
  EXPECT_EQ(doubleClicks_, 1);
}

TEST_F(CardTest, TakesNoOtherClickAsADoubleClick) {
  for (const int clicks : {0, 1, 3, 4}) {
    pressAt({150, 300}, clicks);
    release(clicks);
  }
  EXPECT_EQ(doubleClicks_, 0);
}

TEST_F(CardTest, SnapsTheProposedOriginAndKeepsTheSize) {
  Rect proposed;
  card_->snap = [&proposed](const Rect& frame) {
    proposed = frame;
    return rect(7, 9, 1, 1);
  };
  pressAt({150, 300});
  dragTo({160, 310});
  EXPECT_EQ(proposed, rect(110, 210, 300, 200));
  EXPECT_EQ(panel_->frame(), rect(7, 9, 300, 200));
}

TEST_F(CardTest, ProposesFromWhereTheDragBeganAndNotFromWhereItSnapped) {
  std::vector<Point> proposed;
  card_->snap = [&proposed](const Rect& frame) {
    proposed.push_back(frame.origin);
    return rect(0, 0, 0, 0);
  };
  pressAt({150, 300});
  dragTo({160, 310});
  dragTo({161, 311});
  EXPECT_THAT(proposed, ElementsAre(Point{110, 210}, Point{111, 211}));
}

TEST_F(CardTest, DoesNotSnapWithCommandHeld) {
  card_->snap = [](const Rect&) { return rect(7, 9, 1, 1); };
  pressAt({150, 300});
  dragTo({160, 310}, platform::modifierCommand | platform::modifierShift);
  EXPECT_EQ(panel_->frame().origin, (Point{110, 210}));
  dragTo({160, 310}, platform::modifierShift);
  EXPECT_EQ(panel_->frame().origin, (Point{7, 9}));
}

TEST_F(CardTest, TellsOfEachLayoutPass) {
  int layouts = 0;
  card_->onLayout = [&layouts] { ++layouts; };
  card_->setNeedsLayout();
  desktop_.turnMainQueue();
  EXPECT_EQ(layouts, 1);
}

TEST_F(CardTest, HasTheMenuThatItIsGiven) {
  EXPECT_EQ(card_->menuForEvent(Event{}), nullptr);
  const auto menu = std::make_shared<platform::Menu>("");
  card_->menuProvider = [menu] { return menu; };
  EXPECT_EQ(card_->menuForEvent(Event{}), menu);
  card_->menuProvider = [] { return nullptr; };
  EXPECT_EQ(card_->menuForEvent(Event{}), nullptr);
}

TEST_F(CardTest, StaysQuietWithoutCallbacks) {
  card_->onDoubleClick = nullptr;
  pressAt({150, 300}, 2);
  release(2);
  card_->layout();
}

TEST_F(CardTest, DragsNothingOutsideAWindow) {
  MirrorCardView loose;
  loose.mouseDown(Event{});
  loose.mouseDragged(Event{});
  loose.mouseUp(Event{});
}

using GripTest = PanelViewsTest;

TEST_F(GripTest, ResizesUnderTheTopLeftCorner) {
  pressAt({390, 205});
  dragTo({430, 185});
  EXPECT_EQ(panel_->frame(), rect(100, 180, 340, 220));
  EXPECT_EQ(panel_->contentView()->frame().size, (Size{340, 220}));
}

TEST_F(GripTest, MakesThePanelNoSmallerThanItsMinimum) {
  EXPECT_EQ(grip_->minSize(), (Size{160, 120}));
  pressAt({390, 205});
  dragTo({-110, 705});
  EXPECT_EQ(panel_->frame(), rect(100, 280, 160, 120));
}

TEST_F(GripTest, KeepsNeitherTheAspectNorTheScreen) {
  pressAt({390, 205});
  dragTo({9390, 205});
  EXPECT_EQ(panel_->frame(), rect(100, 200, 9300, 200));
}

TEST_F(GripTest, NeverSnapsAndIsNoDoubleClick) {
  card_->snap = [](const Rect&) { return Rect{}; };
  pressAt({390, 205}, 2);
  dragTo({395, 200});
  release(2);
  EXPECT_EQ(panel_->frame(), rect(100, 195, 305, 205));
  EXPECT_EQ(doubleClicks_, 0);
}

TEST_F(GripTest, KeepsADoubleClickToItself) {
  for (const int clicks : {1, 2}) {
    pressAt({390, 205}, clicks);
    release(clicks);
  }
  EXPECT_EQ(doubleClicks_, 0);
}

TEST_F(GripTest, DisplaysEachStep) {
  pressAt({390, 205});
  dragTo({395, 200});
  const auto& calls = windows().historyOf(*panel_)->calls;
  const auto frameChange = std::find_if(calls.rbegin(), calls.rend(), [](const PeerCall& call) {
    return call.kind == PeerCall::Kind::frameDidChange;
  });
  ASSERT_NE(frameChange, calls.rend());
  EXPECT_TRUE(frameChange->display);
  EXPECT_FALSE(frameChange->animate);
}

TEST_F(GripTest, HasACrosshairAllOverItself) {
  grip_->setFrame(rect(284, 184, 16, 16));
  EXPECT_EQ(panel_->cursorAt({285, 1}), platform::Cursor::crosshair);
  EXPECT_EQ(panel_->cursorAt({299, 15}), platform::Cursor::crosshair);
  EXPECT_EQ(panel_->cursorAt({283, 1}), platform::Cursor::arrow);
}

TEST_F(GripTest, ResizesNothingOutsideAWindow) {
  MirrorResizeGrip loose;
  loose.mouseDown(Event{});
  loose.mouseDragged(Event{});
}

TEST_F(GripTest, StepsLargerAndSmallerForAScreenReader) {
  EXPECT_THAT(grip_->accessibilityActions(),
              ElementsAre(AccessibilityAction::increment, AccessibilityAction::decrement));
  grip_->accessibilityPerform(AccessibilityAction::increment);
  EXPECT_EQ(panel_->frame(), rect(100, 160, 340, 240));
  grip_->accessibilityPerform(AccessibilityAction::decrement);
  EXPECT_EQ(panel_->frame(), panelFrame);
}

TEST_F(GripTest, StepsNoSmallerThanItsMinimum) {
  for (int step = 0; step < 10; ++step) {
    grip_->accessibilityPerform(AccessibilityAction::decrement);
  }
  EXPECT_EQ(panel_->frame(), rect(100, 280, 160, 120));
}

TEST_F(GripTest, StepsNothingOutsideAWindow) {
  MirrorResizeGrip().accessibilityPerform(AccessibilityAction::increment);
}

using Segments = std::vector<std::pair<Point, Point>>;

Segments strokesOf(double side) {
  MirrorResizeGrip grip(rect(0, 0, side, side));
  RecordingGraphicsContext context;
  grip.draw(context);
  Segments segments;
  for (const auto& command : context.commands()) {
    EXPECT_EQ(command.color, Color::white(0.35));
    EXPECT_EQ(command.lineWidth, 1);
    for (const auto& segment : command.path.segments) segments.push_back(segment);
  }
  return segments;
}

TEST_F(GripTest, DrawsThreeDiagonalStrokesInItsCorner) {
  const Segments expected = {{{13, 2}, {14, 3}}, {{9, 2}, {14, 7}}, {{5, 2}, {14, 11}}};
  EXPECT_EQ(strokesOf(16), expected);
}

TEST_F(GripTest, DrawsAsManyStrokesAsFit) {
  EXPECT_EQ(strokesOf(14).size(), 3U);
  EXPECT_EQ(strokesOf(13).size(), 3U);
  EXPECT_EQ(strokesOf(12).size(), 2U);
  EXPECT_EQ(strokesOf(5).size(), 1U);
  EXPECT_EQ(strokesOf(4).size(), 0U);
}

class ContentViewTest : public PanelViewsTest {
 protected:
  ContentViewTest() { content_->setWantsLayer(true); }
  std::shared_ptr<MirrorContentView> content_ = std::make_shared<MirrorContentView>();
};

TEST_F(ContentViewTest, LetterboxesItsPictureOverBlack) {
  const platform::Layer& layer = *content_->layer();
  EXPECT_EQ(layer.contentsGravity(), platform::ContentsGravity::resizeAspect);
  EXPECT_EQ(layer.backgroundColor(), Color::black());
  EXPECT_EQ(layer.magnificationFilter(), platform::ContentsFilter::trilinear);
  EXPECT_EQ(layer.minificationFilter(), platform::ContentsFilter::trilinear);
}

TEST_F(ContentViewTest, TakesTheScaleOfItsWindow) {
  windows().setScreens(
      {{.frame = rect(0, 0, 1000, 1000), .visibleFrame = {}},
       {.frame = rect(1000, 0, 1000, 1000), .visibleFrame = {}, .backingScaleFactor = 3}});
  card_->addSubview(content_);
  EXPECT_EQ(content_->layer()->contentsScale(), 1);
  panel_->setFrameOrigin({1100, 100});
  EXPECT_EQ(content_->layer()->contentsScale(), 3);
  windows().moveWindow(*panel_, panelFrame);
  EXPECT_EQ(content_->layer()->contentsScale(), 1);
}

TEST_F(ContentViewTest, TakesADoubleScaleWithoutAWindow) {
  content_->viewDidChangeBackingProperties();
  EXPECT_EQ(content_->layer()->contentsScale(), 2);
}

TEST_F(ContentViewTest, NeedsNoLayer) {
  MirrorContentView plain;
  plain.viewDidChangeBackingProperties();
  EXPECT_EQ(plain.layer(), nullptr);
}

class MirrorGesturesTest : public MirrorTest {
 protected:
  MirrorGesturesTest() { showMirror(); }
};

TEST_F(MirrorGesturesTest, DoubleClickRollsUpAndDown) {
  const Rect frame = mirror_->panel()->frame();
  for (const bool rolledUp : {true, false}) {
    windows().moveMouse({frame.midX(), frame.maxY() - 10});
    windows().pressMouse(*mirror_->panel(), 2);
    windows().releaseMouse(*mirror_->panel(), 2);
    EXPECT_EQ(inside(*mirror_).rolledUp(), rolledUp);
    desktop_.turnMainQueue();
  }
  EXPECT_EQ(mirror_->panel()->frame(), frame);
}

TEST_F(MirrorGesturesTest, TripleClickRollsUpOnce) {
  const Rect frame = mirror_->panel()->frame();
  windows().moveMouse({frame.midX(), frame.maxY() - 10});
  for (const int clicks : {1, 2, 3}) {
    windows().pressMouse(*mirror_->panel(), clicks);
    windows().releaseMouse(*mirror_->panel(), clicks);
  }
  EXPECT_TRUE(inside(*mirror_).rolledUp());
}

TEST_F(MirrorGesturesTest, PictureAndTitleDragThePanelAlike) {
  const Rect frame = mirror_->panel()->frame();
  windows().moveMouse({frame.midX(), frame.midY()});
  windows().pressMouse(*mirror_->panel());
  windows().dragMouse(*mirror_->panel(), {frame.midX() + 50, frame.midY()});
  windows().releaseMouse(*mirror_->panel());
  EXPECT_EQ(mirror_->panel()->frame().minX(), frame.minX() + 50);
}

}  // namespace
}  // namespace vistrel
