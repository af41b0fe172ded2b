#include "tests/macos/scenarios/MirrorScenario.h"

namespace vistrel {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

/// The picker lists the mail first.
const fake::SourceWindow mail = {.id = 78, .title = "Inbox", .application = "Mail"};

std::string frame(NSWindow* panel) { return fake::describe(panel.frame); }

class PanelGesture : public MirrorScenario {
 protected:
  /// As `drag`, of the panel's title bar, and lets go.
  void dragPanel(CGSize by, NSEventModifierFlags modifiers = 0) {
    fake::forgetMessages();
    drag(panel(), onTitleBar(panel()), by, modifiers);
    drop();
  }
  void dragGrip(CGSize by) {
    fake::forgetMessages();
    drag(panel(), onGrip(panel()), by);
    drop();
  }
  static void click(NSPoint place, NSInteger clicks) {
    fake::mouseDown(panel(), place, 0, clicks);
    fake::mouseUp(place, 0, clicks);
  }
  /// The pointer moves by that much before the second click ends.
  void doubleClickThatMoves(CGSize by) {
    const NSPoint place = onTitleBar(panel());
    click(place, 1);
    fake::mouseDown(panel(), place, 0, 2);
    desktop().mouse.x += by.width;
    desktop().mouse.y += by.height;
    fake::mouseDragged(place);
    fake::mouseUp(place, 0, 2);
  }
};

TEST_F(PanelGesture, ThePanelFollowsThePointer) {
  desktop().mouse = {300, 800};
  runWithMirror([&] {
    fake::forgetMessages();
    const NSPoint place = onPicture(panel());
    drag(panel(), place, {1, -1});
    EXPECT_EQ(frame(panel()), "{{33,646},{340,196}}");
    desktop().mouse = {600, 500};
    fake::mouseDragged(place);
    drop();
    desktop().mouse = {0, 0};
    fake::mouseDragged(place);
    EXPECT_EQ(frame(panel()), "{{332,347},{340,196}}");
    EXPECT_THAT(fake::messages(), ElementsAre("VLPanel#1 setFrameOrigin:{33,646}",
                                              "VLPanel#1 setFrameOrigin:{332,347}"));
  });
}

TEST_F(PanelGesture, EveryPartOfTheTitleBarDragsThePanel) {
  runWithMirror([&] {
    // The icon, the dot and the title.
    for (const CGFloat x : {16, 34, 200}) {
      fake::forgetMessages();
      drag(panel(), {x, panel().frame.size.height - 13}, {100, -100}, NSEventModifierFlagCommand);
      drop();
      EXPECT_TRUE(said({"setFrameOrigin:"})) << x;
    }
  });
}

TEST_F(PanelGesture, SnapsToTheVisibleAreaOfTheScreen) {
  runWithMirror([&] {
    dragPanel({-24, 20});  // to {8, 667}, whose upper edge is at 863
    EXPECT_TRUE(said({"VLPanel#1 setFrameOrigin:{0,679}"}));
    EXPECT_EQ(frame(panel()), "{{0,679},{340,196}}");
    dragPanel({12, -667});
    EXPECT_EQ(frame(panel()), "{{0,0},{340,196}}");
    dragPanel({12.5, 12.5});
    EXPECT_EQ(frame(panel()), "{{12.5,12.5},{340,196}}");
  });
}

TEST_F(PanelGesture, DoesNotSnapUnderCommand) {
  runWithMirror([&] {
    dragPanel({-24, 20}, NSEventModifierFlagCommand | NSEventModifierFlagOption);
    EXPECT_TRUE(said({"VLPanel#1 setFrameOrigin:{8,667}"}));
    EXPECT_EQ(frame(panel()), "{{8,667},{340,196}}");
    dragPanel({0, 0}, NSEventModifierFlagShift);
    EXPECT_EQ(frame(panel()), "{{0,679},{340,196}}");
  });
}

TEST_F(PanelGesture, SnapsToTheAreaOfTheScreenThatThePanelIsOn) {
  desktop().screens.push_back({{{1440, 0}, {1920, 1080}}, {{1500, 0}, {1860, 1055}}, 2});
  runWithMirror([&] {
    dragPanel({1600, 0});  // from the first screen, whose edges are far
    EXPECT_EQ(frame(panel()), "{{1632,647},{340,196}}");
    dragPanel({-124, 208});
    EXPECT_EQ(frame(panel()), "{{1500,859},{340,196}}");
  });
}

TEST_F(PanelGesture, SnapsToOtherPanels) {
  desktop().windows.push_back(mail);
  runWithMirror([&] {
    openMirror(1);
    EXPECT_EQ(frame(panel(1)), "{{60,619},{340,196}}");
    dragPanel({372, -20});  // to {404, 627}, 4 points from the other's right edge
    EXPECT_EQ(frame(panel(0)), "{{400,619},{340,196}}");
    EXPECT_TRUE(said({"VLPanel#1 setFrameOrigin:{400,619}"}));
    EXPECT_THAT(fake::messages(), Not(Contains(HasSubstr("VLPanel#2"))));
    closeMirror(1);
    dragPanel({-190, 300}, NSEventModifierFlagCommand);
    dragPanel({-100, -300});  // back to where the other was
    EXPECT_EQ(frame(panel(0)), "{{110,619},{340,196}}");
  });
}

TEST_F(PanelGesture, TheGripResizesWithTheUpperLeftCornerFixed) {
  runWithMirror([&] {
    dragGrip({83, -61});
    EXPECT_TRUE(said({"VLPanel#1 setFrame:{{32,586},{423,257}} display:1"}));
    EXPECT_EQ(frame(panel()), "{{32,586},{423,257}}");
    EXPECT_EQ(fake::describe(card().subviews.firstObject.frame), "{{0,26},{423,231}}");
    dragGrip({-83, 0});
    EXPECT_EQ(frame(panel()), "{{32,586},{340,257}}");
  });
}

TEST_F(PanelGesture, TheGripStopsAtTheSmallestSize) {
  runWithMirror([&] {
    dragGrip({-500, 500});
    EXPECT_EQ(frame(panel()), "{{32,723},{160,120}}");
  });
}

TEST_F(PanelGesture, TheGripSnapsNowhereAndTakesItsClicksForItself) {
  runWithMirror([&] {
    dragGrip({1060, -640});  // the edges at 1440 and 0 are within reach
    EXPECT_EQ(frame(panel()), "{{32,7},{1400,836}}");
    const NSPoint place = onGrip(panel());
    fake::forgetMessages();
    click(place, 1);
    click(place, 2);
    EXPECT_THAT(fake::messages(), Not(Contains(HasSubstr("animate:1"))));
  });
}

TEST_F(PanelGesture, TheGripDrawsThreeStrokes) {
  runWithMirror([] {
    EXPECT_TRUE(said({"NSBezierPath#1 moveToPoint:{13,2}", "NSBezierPath#1 lineToPoint:{14,3}",
                      "NSBezierPath#1 moveToPoint:{9,2}", "NSBezierPath#1 lineToPoint:{14,7}",
                      "NSBezierPath#1 moveToPoint:{5,2}", "NSBezierPath#1 lineToPoint:{14,11}",
                      "NSBezierPath#1 setLineWidth:1", "NSBezierPath#1 stroke"}));
  });
}

TEST_F(PanelGesture, TheGripShowsACrosshair) {
  runWithMirror([&] {
    NSView* const grip = fake::viewAt(panel(), onGrip(panel()));
    fake::forgetMessages();
    [grip resetCursorRects];
    EXPECT_THAT(fake::messages(),
                Contains(fake::describe(grip) + " addCursorRect:{{0,0},{16,16}} cursor:" +
                         fake::describe(NSCursor.crosshairCursor)));
  });
}

TEST_F(PanelGesture, TheGripStepsForThoseWhoCannotDrag) {
  runWithMirror([] {
    NSView* const grip = findLabelled(card(), "Resize");
    EXPECT_TRUE([grip isAccessibilitySelectorAllowed:@selector(accessibilityPerformIncrement)]);
    EXPECT_TRUE([grip accessibilityPerformIncrement]);
    EXPECT_EQ(frame(panel()), "{{32,607},{380,236}}");
    EXPECT_TRUE([grip accessibilityPerformDecrement]);
    EXPECT_EQ(frame(panel()), "{{32,647},{340,196}}");
    NSView* const picture = card().subviews.firstObject;
    EXPECT_FALSE([picture isAccessibilitySelectorAllowed:@selector(accessibilityPerformIncrement)]);
    EXPECT_FALSE([picture accessibilityPerformIncrement]);
  });
}

TEST_F(PanelGesture, AMirrorMayCloseUnderThePointer) {
  runWithMirror([&] {
    for (const bool isGrip : {false, true}) {
      if (isGrip) openMirror();
      drag(panel(), isGrip ? onGrip(panel()) : onPicture(panel()), {50, -50});
      closeMirror();
      fake::forgetMessages();
      fake::mouseDragged({0, 0});
      drop();
      EXPECT_THAT(fake::messages(), IsEmpty());
    }
  });
}

TEST_F(PanelGesture, ADoubleClickMayMoveThreePoints) {
  runWithMirror([&] {
    doubleClickThatMoves({2, -1});
    EXPECT_EQ(frame(panel()), "{{34,816},{340,26}}");
  });
}

TEST_F(PanelGesture, ADoubleClickThatMovesFourPointsIsADrag) {
  runWithMirror([&] {
    doubleClickThatMoves({2, -2});
    EXPECT_EQ(frame(panel()), "{{34,645},{340,196}}");
  });
}

TEST_F(PanelGesture, OneClickAndThreeDoNothing) {
  runWithMirror([&] {
    fake::forgetMessages();
    click(onTitleBar(panel()), 1);
    click(onPicture(panel()), 3);
    EXPECT_THAT(fake::messages(), Not(Contains(HasSubstr("setFrame"))));
  });
}

}  // namespace
}  // namespace vistrel
