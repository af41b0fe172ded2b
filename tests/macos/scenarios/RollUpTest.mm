#include "tests/macos/scenarios/MirrorScenario.h"

namespace vistrel {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

class RollUp : public MirrorScenario {
 protected:
  static constexpr const char* whole = "{{32,647},{340,196}}";
  static constexpr const char* rolledUp = "{{32,817},{340,26}}";

  static void doubleClickPanel() {
    fake::forgetMessages();
    const NSPoint place = onTitleBar(panel());
    for (const NSInteger clicks : {1, 2}) {
      fake::mouseDown(panel(), place, 0, clicks);
      fake::mouseUp(place, 0, clicks);
    }
  }
  /// In the event loop in which the panel rolls.
  static void whileItRolls(dispatch_block_t event) {
    fake::runLater(dispatch_get_main_queue(), 0.1, event);
    doubleClickPanel();
  }
  static std::string frame() { return fake::describe(panel().frame); }
  static NSView* content() { return card().subviews.firstObject; }
};

TEST_F(RollUp, LeavesTheTitleBarAlone) {
  runWithMirror([] {
    doubleClickPanel();
    EXPECT_TRUE(said({"VLPanel#1 setContentMinSize:{160,26}",
                      "VLPanel#1 setFrame:{{32,817},{340,26}} display:1 animate:1"}));
    EXPECT_EQ(frame(), rolledUp);
    EXPECT_TRUE(content().isHidden);
    EXPECT_TRUE(findLabelled(card(), "Resize").isHidden);
    EXPECT_THAT(shownTexts(card()), SizeIs(1));
    EXPECT_EQ(fake::describe(panel().contentMinSize), "{160,26}");

    doubleClickPanel();
    EXPECT_TRUE(said({"VLPanel#1 setContentMinSize:{160,120}",
                      "VLPanel#1 setFrame:{{32,647},{340,196}} display:1 animate:1"}));
    EXPECT_EQ(frame(), whole);
    EXPECT_FALSE(content().isHidden);
    EXPECT_FALSE(findLabelled(card(), "Resize").isHidden);
    EXPECT_EQ(fake::describe(content().frame), "{{0,26},{340,170}}");
  });
}

TEST_F(RollUp, ComesDownToItsFormerHeightWhereItIsByThen) {
  runWithMirror([&] {
    doubleClickPanel();
    drag(panel(), onTitleBar(panel()), {200, -300}, NSEventModifierFlagCommand);
    drop();
    EXPECT_EQ(frame(), "{{232,517},{340,26}}");
    doubleClickPanel();
    EXPECT_EQ(frame(), "{{232,347},{340,196}}");
  });
}

TEST_F(RollUp, HidesAStatusAndTheNextFrameShowsInThePanelThatComesDown) {
  desktop().startError = "refused";
  runWithMirror([&] {
    EXPECT_THAT(shownTexts(card()), SizeIs(2));
    doubleClickPanel();
    EXPECT_THAT(shownTexts(card()), SizeIs(1));
    desktop().startError.reset();
    command(recapture);
    fake::deliver(stream(), {});
    EXPECT_TRUE(picture() != nil);
    doubleClickPanel();
    EXPECT_THAT(shownTexts(card()), SizeIs(1));
  });
}

TEST_F(RollUp, ShowsTheFramesThatComeMeanwhile) {
  runWithMirror([] {
    whileItRolls(^{
      EXPECT_EQ(frame(), "{{32,732},{340,111}}");
      fake::enqueue(stream(), {});
    });
    EXPECT_TRUE(picture() != nil);
    EXPECT_EQ(dot("Live"), live);
    EXPECT_EQ(frame(), rolledUp);
  });
}

TEST_F(RollUp, IsLaidOutForItsLastFrameFromTheStart) {
  runWithMirror([] {
    doubleClickPanel();
    whileItRolls(^{
      EXPECT_EQ(frame(), "{{32,732},{340,111}}");
      EXPECT_EQ(fake::describe(content().frame), "{{0,26},{340,170}}");
    });
  });
}

TEST_F(RollUp, TakesTheFrameThatItWasToldForTrue) {
  runWithMirror([&] {
    doubleClickPanel();
    // Where it was half-way would show in the next drag, which starts from where the core has it.
    drag(panel(), onTitleBar(panel()), {1, 0}, NSEventModifierFlagCommand);
    drop();
    EXPECT_EQ(frame(), "{{33,817},{340,26}}");
  });
}

TEST_F(RollUp, ClosesWhileItRolls) {
  runWithMirror([] {
    fake::deliver(stream(), {});
    closeLater(0.1);
    doubleClickPanel();
    EXPECT_TRUE(said({"VLPanel#1 setFrame:{{32,817},{340,26}} display:1 animate:1",
                      "NSTimer#1 invalidate", "SCStream#1 stopCaptureWithCompletionHandler:a block",
                      "VLPanel#1 orderOut:nil", "VLPanel#1 close"}));
    EXPECT_THAT(panels(), IsEmpty());
    EXPECT_THAT(fake::streams(), IsEmpty());
  });
}

TEST_F(RollUp, ClosesWhileItRollsDownToBeScaled) {
  runWithMirror([] {
    doubleClickPanel();
    fake::forgetMessages();
    closeLater(0.1);
    scale("50% of source");
    EXPECT_THAT(panels(), IsEmpty());
    EXPECT_TRUE(said({"VLPanel#1 setFrame:{{32,647},{340,196}} display:1 animate:1",
                      "VLPanel#1 orderOut:nil", "VLPanel#1 close"}));
  });
}

}  // namespace
}  // namespace vistrel
