#include "tests/macos/scenarios/MirrorScenario.h"

namespace vistrel {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

/// The picker lists the mail first.
const fake::SourceWindow mail = {
    .id = 78, .title = "Inbox", .application = "Mail", .processID = 100};

constexpr const char* rollUp = "Roll Up (Title Only)";
constexpr const char* keepAwake = "Keep Source Awake (Park Off-Screen)";
constexpr const char* bringToFront = "Bring Source Window to Front";

class PanelMenu : public MirrorScenario {
 protected:
  static NSMenu* menu(std::size_t index = 0) {
    return fake::contextMenu(panel(index), onPicture(panel(index)));
  }
  static std::string frame() { return fake::describe(panel().frame); }
};

TEST_F(PanelMenu, OffersTheCommandsOfOneMirror) {
  runWithMirror([] {
    fake::forgetMessages();
    NSMenu* const shown = menu();
    EXPECT_THAT(titles(shown), ElementsAre(rollUp, recapture, keepAwake, bringToFront, "Scale", "-",
                                           "Hide This Mirror"));
    EXPECT_THAT(titles(line(shown, "Scale").submenu),
                ElementsAre("25% of source", "50% of source", "75% of source", "100% of source"));
    for (NSMenuItem* each in shown.itemArray) {
      if (each.isSeparator) continue;
      EXPECT_TRUE(fake::isEnabled(each)) << utf8(each.title);
      EXPECT_EQ(utf8(each.keyEquivalent), "");
      EXPECT_EQ(each.state, NSControlStateValueOff);
    }
    EXPECT_EQ(line(line(shown, "Scale").submenu, "75% of source").tag, 75);
  });
}

TEST_F(PanelMenu, OpensOverEveryPartOfThePanel) {
  runWithMirror([] {
    const CGSize size = panel().frame.size;
    const CGFloat bar = size.height - 13;
    for (const NSPoint place :
         {NSPoint{16, bar}, NSPoint{34, bar}, NSPoint{200, bar}, NSPoint{size.width - 15, bar},
          onPicture(panel()), onGrip(panel())}) {
      EXPECT_THAT(titles(fake::contextMenu(panel(), place)), Contains(rollUp)) << place.x;
    }
  });
}

TEST_F(PanelMenu, IsMadeAnewEachTime) {
  desktop().windows.push_back(mail);
  runWithMirror([] {
    NSMenu* const first = menu();
    EXPECT_THAT(titles(first), Not(Contains("Hide All Window Mirrors")));
    openMirror(1);
    EXPECT_NE(menu(), first);
    EXPECT_THAT(titles(menu()), SizeIs(8));
    EXPECT_THAT(titles(menu(1)), Contains("Hide All Window Mirrors"));
    closeMirror(0);
    EXPECT_THAT(titles(menu()), Not(Contains("Hide All Window Mirrors")));
  });
}

TEST_F(PanelMenu, RollsThePanelUpAndDown) {
  runWithMirror([] {
    command(rollUp);
    EXPECT_EQ(frame(), "{{32,817},{340,26}}");
    EXPECT_THAT(titles(fake::contextMenu(panel(), {200, 13})), Not(Contains(rollUp)));
    command("Roll Down (Show Mirror)");
    EXPECT_EQ(frame(), "{{32,647},{340,196}}");
    EXPECT_THAT(titles(menu()), Contains(rollUp));
  });
}

TEST_F(PanelMenu, CapturesAnew) {
  runWithMirror([&] {
    fake::deliver(stream(), {});
    desktop().windows.front().frame.size = {800, 600};
    fake::forgetMessages();
    command(recapture);
    EXPECT_TRUE(said({"SCStream#1 stopCaptureWithCompletionHandler:a block",
                      "SCShareableContent getShareableContentExcludingDesktopWindows:0 "
                      "onScreenWindowsOnly:0 completionHandler:a block",
                      "service: SCStreamConfiguration#2 setWidth:1600",
                      "service: SCStreamConfiguration#2 setHeight:1200",
                      "service: SCStream#2 initWithFilter:SCContentFilter#2",
                      "service: SCStream#2 addStreamOutput:VLStreamAdaptor#2 type:0 "
                      "sampleHandlerQueue:VLQueue#",
                      "service: SCStream#2 startCaptureWithCompletionHandler:a block"}));
    EXPECT_THAT(fake::streams(), SizeIs(1));
    EXPECT_TRUE(picture() != nil);
    const id former = picture();
    fake::deliver(stream(), {});
    EXPECT_TRUE(picture() != former);
  });
}

TEST_F(PanelMenu, LeavesOneStreamHoweverOftenItCapturesAnew) {
  runWithMirror([&] {
    desktop().serviceSeconds = 1;
    command(recapture);
    command(recapture);  // before the first has been answered
    fake::forgetMessages();
    fake::advance(3);
    EXPECT_TRUE(
        said({"SCStream#2 startCapture", "SCStream#2 stopCapture", "SCStream#3 startCapture"}));
    ASSERT_THAT(fake::streams(), SizeIs(1));
    fake::deliver(stream(), {});
    EXPECT_TRUE(picture() != nil);
  });
}

TEST_F(PanelMenu, BringsTheSourceToTheFront) {
  runWithMirror([] {
    fake::forgetMessages();
    command(bringToFront);
    EXPECT_TRUE(said({"NSRunningApplication runningApplicationWithProcessIdentifier:99",
                      "NSRunningApplication#1 activateWithOptions:1"}));
  });
}

TEST_F(PanelMenu, LeavesASourceThatHasQuitAlone) {
  runWithMirror([&] {
    desktop().windows.clear();
    fake::forgetMessages();
    command(bringToFront);
    EXPECT_TRUE(said({"runningApplicationWithProcessIdentifier:99"}));
    EXPECT_THAT(fake::messages(), Not(Contains(HasSubstr("activate"))));
  });
}

TEST_F(PanelMenu, ScalesThePanelToItsSource) {
  runWithMirror([] {
    const struct {
      const char* title;
      const char* frame;
    } presets[] = {{"25% of source", "{{32,692},{250,151}}"},
                   {"50% of source", "{{32,567},{500,276}}"},
                   {"75% of source", "{{32,442},{750,401}}"},
                   {"100% of source", "{{32,317},{1000,526}}"}};
    for (const auto& preset : presets) {
      fake::forgetMessages();
      scale(preset.title);
      EXPECT_TRUE(
          said({std::string("VLPanel#1 setFrame:") + preset.frame + " display:1 animate:1"}));
      EXPECT_EQ(frame(), preset.frame);
    }
    EXPECT_EQ(fake::describe(card().subviews.firstObject.frame), "{{0,26},{1000,500}}");
  });
}

TEST_F(PanelMenu, ScalesNoPanelBelowTheSmallestWidth) {
  desktop().windows.front().frame.size = {400, 300};
  runWithMirror([] {
    EXPECT_EQ(frame(), "{{32,652},{220,191}}");
    scale("25% of source");
    EXPECT_EQ(frame(), "{{32,697},{160,146}}");
  });
}

TEST_F(PanelMenu, RollsAPanelDownBeforeItScales) {
  runWithMirror([] {
    command(rollUp);
    fake::forgetMessages();
    scale("50% of source");
    EXPECT_TRUE(said({"VLPanel#1 setContentMinSize:{160,120}",
                      "VLPanel#1 setFrame:{{32,647},{340,196}} display:1 animate:1",
                      "VLPanel#1 setFrame:{{32,567},{500,276}} display:1 animate:1"}));
    EXPECT_FALSE(card().subviews.firstObject.isHidden);
  });
}

TEST_F(PanelMenu, HidesOneMirror) {
  desktop().windows.push_back(mail);
  runWithMirror([] {
    openMirror(1);
    fake::forgetMessages();
    command("Hide This Mirror", 0);
    EXPECT_TRUE(said({"NSTimer#1 invalidate", "SCStream#1 stopCaptureWithCompletionHandler:a block",
                      "VLPanel#1 orderOut:nil", "VLPanel#1 close"}));
    EXPECT_THAT(fake::messages(), Not(Contains(HasSubstr("VLPanel#2"))));
    EXPECT_THAT(panels(), SizeIs(1));
    EXPECT_THAT(fake::streams(), SizeIs(1));
  });
}

TEST_F(PanelMenu, HidesAllMirrors) {
  desktop().windows.push_back(mail);
  runWithMirror([] {
    openMirror(1);
    fake::forgetMessages();
    command("Hide All Window Mirrors", 1);
    EXPECT_TRUE(said({"invalidate", "stopCapture", "orderOut:nil", "close", "invalidate",
                      "stopCapture", "orderOut:nil", "close"}));
    EXPECT_THAT(panels(), IsEmpty());
    EXPECT_THAT(fake::streams(), IsEmpty());
  });
}

TEST_F(PanelMenu, DoesNothingForAMirrorThatHasGone) {
  runWithMirror([] {
    @autoreleasepool {
      NSMenu* const open = menu();
      closeMirror();
      fake::forgetMessages();
      for (const char* title : {rollUp, recapture, keepAwake, bringToFront, "Hide This Mirror"}) {
        fake::choose(line(open, title));
      }
      fake::choose(line(line(open, "Scale").submenu, "50% of source"));
      EXPECT_THAT(fake::messages(), IsEmpty());
    }
  });
}

}  // namespace
}  // namespace vistrel
