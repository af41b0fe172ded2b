#include <utility>

#include "tests/macos/fakes/Displays.h"
#include "tests/macos/scenarios/MirrorScenario.h"

// Classes as another version of the system might have them. Their selectors are those that the
// program sends.

@interface VLNoObject : CGVirtualDisplayDescriptor
@end

@implementation VLNoObject
- (instancetype)init {
  return nil;
}
@end

@interface VLNoMode : CGVirtualDisplayMode
@end

@implementation VLNoMode
- (instancetype)initWithWidth:(unsigned int)__unused width
                       height:(unsigned int)__unused height
                  refreshRate:(double)__unused refreshRate {
  return nil;
}
@end

@interface VLNoDisplay : CGVirtualDisplay
@end

@implementation VLNoDisplay
- (instancetype)initWithDescriptor:(CGVirtualDisplayDescriptor*)__unused descriptor {
  return nil;
}
@end

@interface VLRefusingDisplay : CGVirtualDisplay
@end

@implementation VLRefusingDisplay
- (BOOL)applySettings:(CGVirtualDisplaySettings*)__unused settings {
  return NO;
}
@end

@interface VLSilentDisplay : NSObject
- (instancetype)initWithDescriptor:(CGVirtualDisplayDescriptor*)descriptor;
- (void)applySettings:(CGVirtualDisplaySettings*)settings;
@end

@implementation VLSilentDisplay
- (instancetype)initWithDescriptor:(CGVirtualDisplayDescriptor*)__unused descriptor {
  return [super init];
}
- (void)applySettings:(CGVirtualDisplaySettings*)__unused settings {
}
@end

@interface VLNamedDisplay : NSObject
- (instancetype)initWithDescriptor:(CGVirtualDisplayDescriptor*)descriptor;
- (bool)applySettings:(CGVirtualDisplaySettings*)settings;
- (NSString*)displayID;
@end

@implementation VLNamedDisplay
- (instancetype)initWithDescriptor:(CGVirtualDisplayDescriptor*)__unused descriptor {
  return [super init];
}
- (bool)applySettings:(CGVirtualDisplaySettings*)__unused settings {
  return true;
}
- (NSString*)displayID {
  return [NSString stringWithUTF8String:"101"];
}
@end

@interface VLNumberlessDisplay : CGVirtualDisplay
@end

@implementation VLNumberlessDisplay
- (unsigned int)displayID {
  return 0;
}
@end

namespace vistrel {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

constexpr const char* park = "Keep Source Awake (Park Off-Screen)";
constexpr const char* restore = "Stop Keeping Source Awake (Restore Window)";
constexpr const char* unreachable = "Couldn't reach that window via Accessibility.";
constexpr const char* moves = "AXUIElementSetAttributeValue";

std::string movedTo(const std::string& place, CGWindowID window = 77) {
  return std::string(moves) + ' ' + std::to_string(window) + " AXPosition " + place;
}

/// The source keeps its place at {10, 20} on a screen of 1440 × 900 points unless it is moved.
class Parking : public MirrorScenario {
 protected:
  static void choose(const std::string& title, std::size_t index = 0) {
    fake::forgetMessages();
    command(title, index);
  }

  std::string sourceOrigin() { return fake::describe(desktop().windows.at(0).frame.origin); }
  std::map<CGDirectDisplayID, CGRect>& displays() { return desktop().virtualDisplays.displays; }

  /// Parks the source and puts it back.
  void expectTheCorner(const std::string& corner) {
    choose(park);
    EXPECT_EQ(sourceOrigin(), corner);
    EXPECT_THAT(displays(), IsEmpty());
    EXPECT_TRUE(said({"AXPosition " + corner, "stopCaptureWithCompletionHandler",
                      "getShareableContentExcludingDesktopWindows"}));
    choose(restore);
    EXPECT_EQ(sourceOrigin(), "{10,20}");
  }
};

TEST_F(Parking, MakesAHiddenDisplayForTheSource) {
  runWithMirror([&] {
    choose(park);
    EXPECT_TRUE(
        said({"dispatch_get_global_queue 33 0", "CGVirtualDisplayDescriptor#1 setQueue:VLQueue#",
              "CGVirtualDisplayDescriptor#1 setName:\"Vistrel (hidden)\"",
              "CGVirtualDisplayDescriptor#1 setMaxPixelsWide:2000",
              "CGVirtualDisplayDescriptor#1 setMaxPixelsHigh:1000",
              "CGVirtualDisplayDescriptor#1 setSizeInMillimeters:{3937.01,1968.5}",
              "CGVirtualDisplayDescriptor#1 setProductID:4660",
              "CGVirtualDisplayDescriptor#1 setVendorID:13398",
              "CGVirtualDisplayDescriptor#1 setSerialNum:1",
              "CGVirtualDisplayDescriptor#1 setTerminationHandler:a block",
              "CGVirtualDisplay#1 initWithDescriptor:CGVirtualDisplayDescriptor#1",
              "CGVirtualDisplaySettings#1 setHiDPI:1",
              "CGVirtualDisplayMode#1 initWithWidth:2000 height:1000 refreshRate:60",
              "CGVirtualDisplaySettings#1 setModes:NSMutableArray#",
              "CGVirtualDisplay#1 applySettings:CGVirtualDisplaySettings#1"}));
    EXPECT_THAT(fake::messages(), Not(Contains(HasSubstr(": CGVirtualDisplay"))));
    ASSERT_THAT(displays(), SizeIs(1));
    EXPECT_EQ(fake::describe(displays().begin()->second), "{{1440,0},{1000,500}}");
  });
}

TEST_F(Parking, MovesTheSourceThereAndStartsCaptureAnew) {
  runWithMirror([&] {
    choose(park);
    EXPECT_TRUE(said({"applySettings:", "CGBeginDisplayConfiguration",
                      "CGConfigureDisplayOrigin 101 {1440,0}", "CGCompleteDisplayConfiguration 1",
                      movedTo("{1448,8}"), "SCStream#1 stopCaptureWithCompletionHandler",
                      "SCShareableContent getShareableContentExcludingDesktopWindows:0 "
                      "onScreenWindowsOnly:0",
                      "service: SCStream#2 initWithFilter"}));
    fake::deliver(stream(), {});
    EXPECT_TRUE(picture() != nil);

    choose(restore);
    EXPECT_TRUE(said({movedTo("{10,20}"), "CGVirtualDisplay#1 goes"}));
    EXPECT_THAT(fake::messages(), Not(Contains(HasSubstr("topCapture"))));
    EXPECT_THAT(fake::messages(), Not(Contains(HasSubstr("getShareableContent"))));
    EXPECT_TRUE(stream().isCapturing);
    EXPECT_THAT(displays(), IsEmpty());
  });
}

TEST_F(Parking, MakesADisplayOfTheLeastSizeForASmallSource) {
  desktop().windows.at(0).frame.size = {300, 200};
  runWithMirror([&] {
    choose(park);
    EXPECT_TRUE(said({"setMaxPixelsWide:1280", "setMaxPixelsHigh:960"}));
  });
}

TEST_F(Parking, MakesANewDisplayEachTimeRightOfTheMainOneAsItIs) {
  runWithMirror([&] {
    choose(park);
    choose(restore);
    desktop().screens.at(0).frame.size = {1512, 982};
    choose(park);
    EXPECT_TRUE(said({"CGConfigureDisplayOrigin 102 {1512,0}", movedTo("{1520,8}")}));
    EXPECT_THAT(displays(), SizeIs(1));
  });
}

TEST_F(Parking, UsesTheMainScreensCornerWithoutTheClasses) {
  desktop().screens.at(0).frame = {{-700, 300}, {1512, 982}};
  runWithMirror([&] {
    for (const char* name : {"CGVirtualDisplayDescriptor", "CGVirtualDisplaySettings",
                             "CGVirtualDisplayMode", "CGVirtualDisplay"}) {
      SCOPED_TRACE(name);
      desktop().virtualDisplays.classes = {{name, ""}};
      expectTheCorner("{1472,942}");
      EXPECT_THAT(fake::messages(), Not(Contains(StartsWith("CGVirtualDisplay"))));
    }
  });
}

TEST_F(Parking, UsesAFixedPlaceWithoutTheClassesAndWithoutAScreen) {
  desktop().virtualDisplays.classes = {{"CGVirtualDisplay", ""}};
  runWithMirror([&] {
    const auto screens = std::exchange(desktop().screens, {});
    expectTheCorner("{1400,860}");
    desktop().screens = screens;
  });
}

TEST_F(Parking, UsesTheCornerWhenTheClassesAreOdd) {
  runWithMirror([&] {
    for (const auto& [name, odd] :
         std::map<std::string, std::string>{{"VLNoObject", "CGVirtualDisplayDescriptor"},
                                            {"VLNoMode", "CGVirtualDisplayMode"},
                                            {"VLNoDisplay", "CGVirtualDisplay"},
                                            {"VLRefusingDisplay", "CGVirtualDisplay"},
                                            {"VLSilentDisplay", "CGVirtualDisplay"},
                                            {"VLNamedDisplay", "CGVirtualDisplay"},
                                            {"VLNumberlessDisplay", "CGVirtualDisplay"}}) {
      SCOPED_TRACE(name);
      desktop().virtualDisplays.classes = {{odd, name}};
      expectTheCorner("{1400,860}");
    }
  });
}

TEST_F(Parking, UsesTheCornerWhenTheDisplayDoesNotComeToLieRightOfTheMainOne) {
  desktop().takesDisplayConfigurations = false;
  desktop().virtualDisplays.origin = {1438.5, 0};
  runWithMirror([&] {
    expectTheCorner("{1400,860}");
    desktop().virtualDisplays.origin = {1439, 0};
    choose(park);
    EXPECT_TRUE(said({"CGBeginDisplayConfiguration", movedTo("{1447,8}")}));
    EXPECT_THAT(fake::messages(), Not(Contains(HasSubstr("CGConfigureDisplayOrigin"))));
  });
}

TEST_F(Parking, UsesTheCornerWhenTheDisplayIsNotOnline) {
  desktop().virtualDisplays.secondsUntilOnline = std::nullopt;
  runWithMirror([&] { expectTheCorner("{1400,860}"); });
}

TEST_F(Parking, AsksForThePermissionEachTimeUntilItIsGranted) {
  desktop().isAccessibilityAllowed = false;
  runWithMirror([&] {
    for (int i = 0; i < 2; ++i) {
      desktop().alertAnswers = {NSAlertFirstButtonReturn};
      choose(park);
      EXPECT_TRUE(
          said({"AXIsProcessTrustedWithOptions prompt:1",
                "open x-apple.systempreferences:com.apple.preference.security"
                "?Privacy_Accessibility",
                "setMessageText:\"Allow Accessibility for Vistrel\"",
                "setInformativeText:\"“Keep Awake” parks the source window at a screen corner so "
                "it keeps rendering while you work elsewhere. Turn on Vistrel in System Settings ▸ "
                "Privacy & Security ▸ Accessibility, then try again.\"",
                "addButtonWithTitle:\"OK\"", "runModal"}));
      EXPECT_THAT(fake::messages(), Not(Contains(HasSubstr(moves))));
      EXPECT_THAT(fake::messages(), Not(Contains(HasSubstr("topCapture"))));
    }
    desktop().isAccessibilityAllowed = true;
    choose(park);
    EXPECT_THAT(fake::messages(), Not(Contains(HasSubstr("AXIsProcessTrustedWithOptions"))));
    EXPECT_EQ(sourceOrigin(), "{1448,8}");
  });
}

TEST_F(Parking, SaysThatTheProgramDoesNotShowTheWindowToAccessibility) {
  desktop().windows.at(0).isAmongItsWindows = false;
  desktop().windows.push_back({.id = 78, .frame = {{0, 0}, {10, 10}}});
  runWithMirror([&] {
    fake::deliver(stream(), {});
    choose(park);
    EXPECT_THAT(shownTexts(card()), Contains(unreachable));
    EXPECT_THAT(fake::messages(), Not(Contains(HasSubstr(moves))));
    EXPECT_THAT(displays(), IsEmpty());
    fake::advance(3);
    EXPECT_THAT(shownTexts(card()), Not(Contains(unreachable)));
  });
}

TEST_F(Parking, SaysThatTheSystemDoesNotTellTheNumbersOfWindows) {
  desktop().tellsWindowNumbers = false;
  runWithMirror([&] {
    choose(park);
    EXPECT_THAT(shownTexts(card()), Contains(unreachable));
    EXPECT_EQ(sourceOrigin(), "{10,20}");
  });
}

TEST_F(Parking, FindsTheWindowAmongOthersOfItsProgram) {
  desktop().windows.insert(desktop().windows.begin(),
                           {.id = 76, .title = "Zoo", .application = "Notes"});
  runWithMirror([&] {
    ASSERT_EQ(desktop().windows.at(1).id, 77U);
    choose(park);
    EXPECT_EQ(fake::describe(desktop().windows.at(1).frame.origin), "{1448,8}");
    EXPECT_EQ(sourceOrigin(), "{10,20}");
  });
}

TEST_F(Parking, LeavesASourceWhosePlaceItCouldNotRead) {
  desktop().windows.at(0).tellsItsPosition = false;
  runWithMirror([&] {
    choose(park);
    EXPECT_EQ(sourceOrigin(), "{1448,8}");
    choose(restore);
    EXPECT_EQ(sourceOrigin(), "{1448,8}");
    EXPECT_THAT(displays(), IsEmpty());
  });
}

TEST_F(Parking, TakesASourceForParkedThatDoesNotMove) {
  desktop().windows.at(0).moves = false;
  runWithMirror([&] {
    choose(park);
    EXPECT_TRUE(said({movedTo("{1448,8}"), "stopCapture", "getShareableContent"}));
    EXPECT_EQ(sourceOrigin(), "{10,20}");
    choose(restore);
    EXPECT_TRUE(said({movedTo("{10,20}"), "CGVirtualDisplay#1 goes"}));
  });
}

TEST_F(Parking, RestoresTheSourceBeforeTheMirrorCloses) {
  runWithMirror([&] {
    choose(park);
    fake::forgetMessages();
    closeMirror();
    EXPECT_TRUE(said({movedTo("{10,20}"), "CGVirtualDisplay#1 goes",
                      "SCStream#2 stopCaptureWithCompletionHandler", "VLPanel#1 orderOut:nil",
                      "VLPanel#1 close"}));
    EXPECT_THAT(displays(), IsEmpty());
  });
}

TEST_F(Parking, RestoresEverySourceWhenAllMirrorsAreHidden) {
  desktop().windows = {
      {.id = 77, .title = "Plan"},
      {.id = 78, .title = "Quarter", .frame = {{30, 40}, {700, 500}}, .processID = 98}};
  runWithMirror([&] {
    openMirror(1);
    choose(park, 0);
    choose(park, 1);
    EXPECT_THAT(displays(), SizeIs(2));
    fake::forgetMessages();
    @autoreleasepool {
      NSMenu* const bar = NSApplication.sharedApplication.mainMenu;
      fake::choose(line(line(bar, "Mirror").submenu, "Hide All Mirrors"));
    }
    EXPECT_THAT(fake::messages(), Contains(movedTo("{10,20}", 77)));
    EXPECT_THAT(fake::messages(), Contains(movedTo("{30,40}", 78)));
    EXPECT_THAT(panels(), IsEmpty());
    EXPECT_THAT(displays(), IsEmpty());
  });
}

TEST_F(Parking, LeavesTheSourceWhereItIsWhenTheProgramQuits) {
  runWithMirror([&] {
    choose(park);
    fake::forgetMessages();
    @autoreleasepool {
      NSMenu* const bar = NSApplication.sharedApplication.mainMenu;
      fake::choose(line(line(bar, "").submenu, "Quit Vistrel"));
    }
  });
  EXPECT_TRUE(hasTerminated());
  EXPECT_THAT(fake::messages(), Not(Contains(HasSubstr(moves))));
  EXPECT_THAT(fake::messages(), Not(Contains(HasSubstr("stopCapture"))));
}

TEST_F(Parking, PutsTheSourceBackAlsoWhenItsDisplayHasGone) {
  runWithMirror([&] {
    choose(park);
    fake::deliver(stream(), {});
    fake::endVirtualDisplays();
    desktop().windows.at(0).frame.origin = {400, 300};
    fake::stopWithError(stream(), "The display is gone");
    fake::advance(3);
    EXPECT_EQ(dot("Not updating"), stale);
    choose(restore);
    EXPECT_EQ(sourceOrigin(), "{10,20}");
    EXPECT_TRUE(said({movedTo("{10,20}"), "CGVirtualDisplay#1 goes"}));
  });
}

}  // namespace
}  // namespace vistrel
