#include <algorithm>

#include "tests/macos/scenarios/Scenario.h"

namespace vistrel {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class SelfTests : public Scenario {
 protected:
  static std::vector<std::string> written() {
    std::vector<std::string> texts = fake::messages();
    std::erase_if(texts, [](const std::string& each) { return each.find("write ") != 0; });
    return texts;
  }
  static long count(const std::string& part) {
    return std::count_if(
        fake::messages().begin(), fake::messages().end(),
        [&](const std::string& each) { return each.find(part) != std::string::npos; });
  }
  static std::string report(const std::string& found) {
    return "write \"vdtest: " + found + "\n\"";
  }
};

TEST_F(SelfTests, DiagnosticsListTheClassesWithoutAnApplication) {
  EXPECT_EQ(runWith({"--vddiag"}), 0);
  EXPECT_THAT(
      fake::messages(),
      ElementsAre(AllOf(
          StartsWith("write \"=== CGVirtualDisplayDescriptor (found)\n"),
          HasSubstr("  prop queue : T@\"NSObject<OS_dispatch_queue>\",&,N"),
          HasSubstr("  prop name : T@\"NSString\",C,N"), HasSubstr("  prop maxPixelsWide : TI,N"),
          HasSubstr("  prop sizeInMillimeters : T{CGSize=dd},N"),
          HasSubstr("  prop terminationHandler : T@?,C,N"),
          HasSubstr("\n  sel  setMaxPixelsWide:\n"),
          HasSubstr("\n=== CGVirtualDisplaySettings (found)\n"), HasSubstr("\n  sel  setHiDPI:\n"),
          HasSubstr("\n=== CGVirtualDisplayMode (found)\n"),
          HasSubstr("\n  prop refreshRate : Td,R,N"),
          HasSubstr("\n  sel  initWithWidth:height:refreshRate:\n"),
          HasSubstr("\n=== CGVirtualDisplay (found)\n"), HasSubstr("\n  prop displayID : TI,R,N"),
          HasSubstr("\n  sel  applySettings:\n"))));
}

TEST_F(SelfTests, DiagnosticsNeedNeitherTheClassesNorADesktop) {
  desktop().hasWindowServer = false;
  auto& classes = desktop().virtualDisplays.classes;
  for (const char* name : {"CGVirtualDisplayDescriptor", "CGVirtualDisplaySettings",
                           "CGVirtualDisplayMode", "CGVirtualDisplay"}) {
    classes[name] = "";
  }
  EXPECT_EQ(runWith({"--vddiag"}), 0);
  EXPECT_THAT(fake::messages(), ElementsAre("write \"=== CGVirtualDisplayDescriptor (MISSING)\n"
                                            "=== CGVirtualDisplaySettings (MISSING)\n"
                                            "=== CGVirtualDisplayMode (MISSING)\n"
                                            "=== CGVirtualDisplay (MISSING)\n\""));
}

TEST_F(SelfTests, DiagnosticsComeFirst) {
  EXPECT_EQ(runWith({"--vdtest", "file", "--vddiag"}), 0);
  EXPECT_THAT(fake::messages(), ElementsAre(StartsWith("write \"=== ")));
}

TEST_F(SelfTests, MakesADisplayAndReportsIt) {
  EXPECT_EQ(runWith({"--vdtest"}), 0);
  const std::string wait =
      "NSApplication#1 nextEventMatchingMask:18446744073709551615 untilDate:NSDate#";
  EXPECT_TRUE(
      said({"NSApplication#1 setActivationPolicy:0", "NSApplication#1 finishLaunching",
            "CGVirtualDisplayDescriptor#1 setName:\"Vistrel Self-Test\"",
            "CGVirtualDisplayDescriptor#1 setMaxPixelsWide:1920",
            "CGVirtualDisplayDescriptor#1 setMaxPixelsHigh:1080",
            "CGVirtualDisplayDescriptor#1 setSizeInMillimeters:{3779.53,2125.98}",
            "CGVirtualDisplay#1 applySettings:", wait, "inMode:\"NSDefaultRunLoopMode\" dequeue:1",
            "CGVirtualDisplay#1 goes", "write \"vdtest: "}));
  EXPECT_THAT(written(), ElementsAre(report("created=true displayID=101 online 1->2 screens=2 "
                                            "mainMaxX=1440 bounds=-5000,0 960x540")));
  EXPECT_GE(count(wait), 50);
  EXPECT_LE(count(wait), 51);
  for (const char* part : {"setDelegate:", "setMainMenu:", "NSWindow", "NSApplication#1 run",
                           "CGBeginDisplayConfiguration", "sendEvent:"}) {
    EXPECT_EQ(count(part), 0) << part;
  }
}

TEST_F(SelfTests, HandsOnTheEventsThatComeMeanwhile) {
  desktop().waitingEvents = 2;
  EXPECT_EQ(runWith({"--vdtest"}), 0);
  EXPECT_EQ(count("NSApplication#1 sendEvent:NSEvent#"), 2);
}

TEST_F(SelfTests, WaitsForADisplayToComeOnline) {
  desktop().virtualDisplays.secondsUntilOnline = 2.4;
  EXPECT_EQ(runWith({"--vdtest"}), 0);
  EXPECT_THAT(written(), ElementsAre(HasSubstr("online 1->2")));
}

TEST_F(SelfTests, FailsWithADisplayThatDoesNotComeOnline) {
  desktop().virtualDisplays.secondsUntilOnline = std::nullopt;
  EXPECT_EQ(runWith({"--vdtest"}), 1);
  EXPECT_THAT(written(), ElementsAre(report("created=true displayID=101 online 1->1 screens=1 "
                                            "mainMaxX=1440 bounds=0,0 0x0")));
}

TEST_F(SelfTests, FailsAfterTheSameWaitWithoutTheClasses) {
  desktop().virtualDisplays.classes = {{"CGVirtualDisplayMode", ""}};
  desktop().screens = {{{{0, 0}, {1919.9, 1080}}, {{0, 0}, {1919.9, 1080}}, 1},
                       {{{1919.9, 0}, {800, 600}}, {{1919.9, 0}, {800, 600}}, 1}};
  EXPECT_EQ(runWith({"--vdtest"}), 1);
  EXPECT_THAT(written(), ElementsAre(report("created=false displayID=0 online 2->2 screens=2 "
                                            "mainMaxX=1919 bounds=0,0 0x0")));
  EXPECT_GE(count("nextEventMatchingMask:"), 50);
}

TEST_F(SelfTests, AreNotGuessed) {
  desktop().hasWindowServer = false;
  testing::internal::CaptureStderr();
  EXPECT_EQ(runWith({"--vdtest=1", "-vddiag", "--VDTEST"}), 1);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "vistrel: no desktop: this session has no window server\n");
  EXPECT_THAT(fake::messages(), Not(Contains(HasSubstr("NSApplication"))));
}

}  // namespace
}  // namespace vistrel
