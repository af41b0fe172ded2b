#include <cmath>
#include <gtest/gtest.h>

#include "parking/VLVirtualDisplay.h"
#include "parking/VirtualDisplayHost.h"
#include "tests/core/CoreTest.h"

namespace vistrel {
namespace {

using platform::DisplayID;
using platform::VirtualDisplayDescriptor;
using platform::VirtualDisplaySettings;
using platform::simulated::VirtualDisplayScript;

constexpr const char* classNames[] = {"CGVirtualDisplayDescriptor", "CGVirtualDisplaySettings",
                                      "CGVirtualDisplayMode", "CGVirtualDisplay"};

class VirtualDisplayTest : public CoreTest {
 protected:
  platform::simulated::SimulatedDisplays& displays() { return desktop_.displays(); }
  platform::simulated::SimulatedVirtualDisplays& classes() { return desktop_.virtualDisplays(); }
  platform::simulated::SimulatedVirtualDisplayServer& server() { return classes().server(); }
};

TEST_F(VirtualDisplayTest, IsMadeStepByStep) {
  const auto display = VLVirtualDisplay::displayWithWidth(1280, 960, "Some name");
  ASSERT_NE(display, nullptr);
  EXPECT_EQ(display->displayID(), 2U);
  EXPECT_THAT(desktop_.journal().calls(),
              ElementsAre("CGVirtualDisplayDescriptor init",                     //
                          "CGVirtualDisplayDescriptor setQueue: queue 33,0",     //
                          "CGVirtualDisplayDescriptor setName: Some name",       //
                          "CGVirtualDisplayDescriptor setMaxPixelsWide: 1280",   //
                          "CGVirtualDisplayDescriptor setMaxPixelsHigh: 960",    //
                          testing::StartsWith("CGVirtualDisplayDescriptor "      //
                                              "setSizeInMillimeters: 2519.68"),  //
                          "CGVirtualDisplayDescriptor setProductID: 4660",       //
                          "CGVirtualDisplayDescriptor setVendorID: 13398",       //
                          "CGVirtualDisplayDescriptor setSerialNum: 1",          //
                          "CGVirtualDisplayDescriptor setTerminationHandler: block",
                          "CGVirtualDisplay initWithDescriptor: object",  //
                          "CGVirtualDisplaySettings init",                //
                          "CGVirtualDisplaySettings setHiDPI: YES",       //
                          "CGVirtualDisplayMode initWithWidth:height:refreshRate: 1280 960 60",
                          "CGVirtualDisplaySettings setModes: 1 objects",  //
                          "CGVirtualDisplay applySettings: object",        //
                          "CGVirtualDisplay displayID"));
}

TEST_F(VirtualDisplayTest, IsWhatItWasDescribedAs) {
  const auto display = VLVirtualDisplay::displayWithWidth(1920, 1080, "Some name");
  EXPECT_THAT(server().descriptors(),
              ElementsAre(VirtualDisplayDescriptor{.name = "Some name",
                                                   .maxPixelsWide = 1920,
                                                   .maxPixelsHigh = 1080,
                                                   .sizeInMillimeters = {960 / 2.54 * 10,  //
                                                                         540 / 2.54 * 10},
                                                   .productID = 0x1234,
                                                   .vendorID = 0x3456,
                                                   .serialNum = 1}));
  EXPECT_THAT(server().settings(),
              ElementsAre(VirtualDisplaySettings{.hiDPI = true, .modes = {{1920, 1080, 60}}}));
}

TEST_F(VirtualDisplayTest, OfAnOddSizeIsMeasuredByWholePoints) {
  const auto display = VLVirtualDisplay::displayWithWidth(5, 7, "");
  const Size size = server().descriptors().at(0).sizeInMillimeters;
  EXPECT_EQ(size, (Size{2 / 2.54 * 10, 3 / 2.54 * 10}));
  EXPECT_NEAR(size.width, 7.87, 0.005);
}

TEST_F(VirtualDisplayTest, GoesWithItsLastReferenceAtTheNextTurnOfTheMainLoop) {
  auto display = VLVirtualDisplay::displayWithWidth(1280, 960, "");
  EXPECT_EQ(displays().onlineDisplayCount(), 2U);
  display.reset();
  EXPECT_EQ(displays().onlineDisplayCount(), 2U);
  desktop_.turnMainQueue();
  EXPECT_EQ(displays().onlineDisplayCount(), 1U);
}

TEST_F(VirtualDisplayTest, IsNotMadeWhenAnyOfTheClassesIsMissing) {
  for (const char* name : classNames) {
    classes().setMissing({name});
    EXPECT_EQ(VLVirtualDisplay::displayWithWidth(1280, 960, ""), nullptr) << name;
  }
  EXPECT_THAT(desktop_.journal().calls(), IsEmpty());
}

TEST_F(VirtualDisplayTest, IsNotMadeWhenItsDescriptorIsRefused) {
  server().setScript({.refusesDescriptors = true});
  EXPECT_EQ(VLVirtualDisplay::displayWithWidth(1280, 960, ""), nullptr);
  EXPECT_THAT(desktop_.journal().calls().back(), "CGVirtualDisplay initWithDescriptor: object");
}

TEST_F(VirtualDisplayTest, IsDroppedWhenItsSettingsAreRejected) {
  server().setScript({.rejectsSettings = true});
  VLVirtualDisplay display;
  EXPECT_FALSE(display.createWithWidth(1280, 960, ""));
  EXPECT_EQ(display.displayID(), 0U);
  EXPECT_EQ(server().live().size(), 1U);
  desktop_.turnMainQueue();
  EXPECT_THAT(server().live(), IsEmpty());
}

TEST_F(VirtualDisplayTest, WithoutAnIDIsHeldButNotLive) {
  server().setScript({.givesNoID = true});
  {
    VLVirtualDisplay display;
    EXPECT_FALSE(display.createWithWidth(1280, 960, ""));
    EXPECT_EQ(display.displayID(), 0U);
    desktop_.turnMainQueue();
    EXPECT_EQ(server().live().size(), 1U);
  }
  desktop_.turnMainQueue();
  EXPECT_THAT(server().live(), IsEmpty());
  EXPECT_EQ(VLVirtualDisplay::displayWithWidth(1280, 960, ""), nullptr);
}

TEST_F(VirtualDisplayTest, DiagnosticsListEachClass) {
  EXPECT_EQ(VLVirtualDisplay::diagnostics(),
            R"(=== CGVirtualDisplayDescriptor (found)
  prop queue : T@"NSObject<OS_dispatch_queue>",&,N
  prop name : T@"NSString",C,N
  prop maxPixelsWide : TI,N
  prop maxPixelsHigh : TI,N
  prop sizeInMillimeters : T{CGSize=dd},N
  prop productID : TI,N
  prop vendorID : TI,N
  prop serialNum : TI,N
  prop terminationHandler : T@?,C,N
  sel  queue
  sel  setQueue:
  sel  name
  sel  setName:
  sel  maxPixelsWide
  sel  setMaxPixelsWide:
  sel  maxPixelsHigh
  sel  setMaxPixelsHigh:
  sel  sizeInMillimeters
  sel  setSizeInMillimeters:
  sel  productID
  sel  setProductID:
  sel  vendorID
  sel  setVendorID:
  sel  serialNum
  sel  setSerialNum:
  sel  terminationHandler
  sel  setTerminationHandler:
=== CGVirtualDisplaySettings (found)
  prop hiDPI : TB,N
  prop modes : T@"NSArray",C,N
  sel  hiDPI
  sel  setHiDPI:
  sel  modes
  sel  setModes:
=== CGVirtualDisplayMode (found)
  prop width : TI,R,N
  prop height : TI,R,N
  prop refreshRate : Td,R,N
  sel  initWithWidth:height:refreshRate:
  sel  width
  sel  height
  sel  refreshRate
=== CGVirtualDisplay (found)
  prop displayID : TI,R,N
  sel  initWithDescriptor:
  sel  applySettings:
  sel  displayID
)");
}

TEST_F(VirtualDisplayTest, DiagnosticsOfASystemWithoutTheClassesAreFourLines) {
  server().setHosts(false);
  EXPECT_EQ(VLVirtualDisplay::diagnostics(),
            "=== CGVirtualDisplayDescriptor (MISSING)\n"
            "=== CGVirtualDisplaySettings (MISSING)\n"
            "=== CGVirtualDisplayMode (MISSING)\n"
            "=== CGVirtualDisplay (MISSING)\n");
}

TEST_F(VirtualDisplayTest, DiagnosticsTellWhichClassIsMissing) {
  classes().setMissing({"CGVirtualDisplayDescriptor", "CGVirtualDisplaySettings"});
  EXPECT_THAT(VLVirtualDisplay::diagnostics(),
              testing::StartsWith("=== CGVirtualDisplayDescriptor (MISSING)\n"
                                  "=== CGVirtualDisplaySettings (MISSING)\n"
                                  "=== CGVirtualDisplayMode (found)\n  prop width"));
}

class VirtualDisplayHostTest : public VirtualDisplayTest {
 protected:
  /// The pixels of the display that a window of that size gets.
  Size pixelsFor(Size window) {
    const auto host = VirtualDisplayHost::make(window);
    const auto& descriptor = server().descriptors().back();
    const auto& mode = server().settings().back().modes.at(0);
    EXPECT_EQ(mode.width, descriptor.maxPixelsWide);
    EXPECT_EQ(mode.height, descriptor.maxPixelsHigh);
    return {static_cast<double>(mode.width), static_cast<double>(mode.height)};
  }
};

TEST_F(VirtualDisplayHostTest, HasTwoPixelsForEachPointOfTheWindowButNeverFew) {
  EXPECT_EQ(pixelsFor({1000, 700}), (Size{2000, 1400}));
  EXPECT_EQ(pixelsFor({300, 200}), (Size{1280, 960}));
  EXPECT_EQ(pixelsFor({300, 700}), (Size{1280, 1400}));
  EXPECT_EQ(pixelsFor({1000, 200}), (Size{2000, 960}));
  EXPECT_EQ(pixelsFor({1000.9, 700.9}), (Size{2000, 1400}));
  EXPECT_EQ(pixelsFor({-1e9, -0.5}), (Size{1280, 960}));
  EXPECT_EQ(pixelsFor({1073741823, 500}), (Size{2147483646, 1000}));
}

TEST_F(VirtualDisplayHostTest, GivesItsDisplayItsName) {
  const auto host = VirtualDisplayHost::make({1000, 700});
  EXPECT_EQ(server().descriptors().at(0).name, "Vistrel (hidden)");
}

TEST_F(VirtualDisplayHostTest, LiesAtTheRightEdgeOfTheMainDisplay) {
  displays().setMainBounds(rect(0, 0, 1512, 982));
  const auto host = VirtualDisplayHost::make({1000, 700});
  ASSERT_NE(host, nullptr);
  EXPECT_EQ(host->displayID(), 2U);
  EXPECT_EQ(host->bounds(), rect(1512, 0, 1000, 700));
  EXPECT_EQ(displays().displayBounds(2), rect(1512, 0, 1000, 700));
  const auto calls = desktop_.journal().calls();
  ASSERT_GE(calls.size(), 3U);
  EXPECT_THAT(std::vector(calls.end() - 3, calls.end()),
              ElementsAre("beginDisplayConfiguration", "configureOrigin 2: 1512,0",
                          "completeDisplayConfiguration 1"));
}

TEST_F(VirtualDisplayHostTest, OfAMainDisplayWithAFractionalEdgeLiesATruncatedStepLeft) {
  displays().setMainBounds(rect(0.25, 0, 1511.5, 982));
  const auto host = VirtualDisplayHost::make({1000, 700});
  ASSERT_NE(host, nullptr);
  EXPECT_EQ(host->bounds().minX(), 1511);
}

TEST_F(VirtualDisplayHostTest, IsAcceptedUpToOnePointLeftOfTheEdge) {
  displays().setMainBounds(rect(0, 0, 1512, 982));
  for (const double x : {1511.0, 1512.0, 1600.0, 9000.0}) {
    displays().setPlacement([x](Point) { return Point{x, -300}; });
    const auto host = VirtualDisplayHost::make({1000, 700});
    ASSERT_NE(host, nullptr) << x;
    EXPECT_EQ(host->bounds(), rect(x, -300, 1000, 700));
  }
}

TEST_F(VirtualDisplayHostTest, IsRefusedFurtherLeftAndItsDisplayRemoved) {
  displays().setMainBounds(rect(0, 0, 1512, 982));
  for (const double x : {1510.5, 0.0, -1000.0}) {
    displays().setPlacement([x](Point) { return Point{x, 0}; });
    EXPECT_EQ(VirtualDisplayHost::make({1000, 700}), nullptr) << x;
    desktop_.turnMainQueue();
    EXPECT_THAT(server().live(), IsEmpty());
    EXPECT_EQ(displays().onlineDisplayCount(), 1U);
  }
}

TEST_F(VirtualDisplayHostTest, IsRefusedWhileItsDisplayHasNoBounds) {
  server().setScript({.onlineAfter = std::nullopt});
  EXPECT_EQ(VirtualDisplayHost::make({1000, 700}), nullptr);
  desktop_.turnMainQueue();
  EXPECT_THAT(server().live(), IsEmpty());
}

TEST_F(VirtualDisplayHostTest, IsRefusedWithoutBoundsAlsoWhereNoneLieRightOfTheMainDisplay) {
  server().setScript({.onlineAfter = std::nullopt});
  displays().setMainBounds(rect(-1440, 0, 1440, 900));
  EXPECT_EQ(VirtualDisplayHost::make({1000, 700}), nullptr);
}

TEST_F(VirtualDisplayHostTest, ThatCannotBePlacedIsTakenWhereItHappensToBe) {
  displays().setRefusesConfiguration(true);
  EXPECT_EQ(VirtualDisplayHost::make({1000, 700}), nullptr);
  server().setScript({.origin = {1440, 77}});
  const auto host = VirtualDisplayHost::make({1000, 700});
  ASSERT_NE(host, nullptr);
  EXPECT_EQ(host->bounds(), rect(1440, 77, 1000, 700));
  EXPECT_EQ(desktop_.journal().calls().back(), "beginDisplayConfiguration");
}

TEST_F(VirtualDisplayHostTest, IsNotMadeWithoutADisplay) {
  for (const VirtualDisplayScript& script :
       {VirtualDisplayScript{.refusesDescriptors = true},
        VirtualDisplayScript{.rejectsSettings = true}, VirtualDisplayScript{.givesNoID = true}}) {
    server().setScript(script);
    EXPECT_EQ(VirtualDisplayHost::make({1000, 700}), nullptr);
    desktop_.turnMainQueue();
    EXPECT_THAT(server().live(), IsEmpty());
  }
  EXPECT_THAT(desktop_.journal().calls(),
              testing::Not(testing::Contains("beginDisplayConfiguration")));
}

TEST_F(VirtualDisplayHostTest, HasADisplayOfItsOwn) {
  auto first = VirtualDisplayHost::make({1000, 700});
  const auto second = VirtualDisplayHost::make({1000, 700});
  EXPECT_NE(first->displayID(), second->displayID());
  EXPECT_EQ(displays().onlineDisplayCount(), 3U);
  first.reset();
  desktop_.turnMainQueue();
  EXPECT_THAT(server().live(), ElementsAre(second->displayID()));
}

using VirtualDisplayHostDeathTest = VirtualDisplayHostTest;

TEST_F(VirtualDisplayHostDeathTest, EndsTheProgramOnASizeThatFitsNoDisplay) {
  const double nan = std::nan("");
  for (const Size size :
       {Size{nan, 700}, Size{1000, nan}, Size{HUGE_VAL, 700}, Size{1000, -HUGE_VAL},
        Size{1e300, 700}, Size{1000, 0x1p62}, Size{1073741824, 700}, Size{1000, 1073741824}}) {
    EXPECT_EXIT(VirtualDisplayHost::make(size), testing::KilledBySignal(SIGABRT), "^$");
  }
}

TEST_F(VirtualDisplayHostDeathTest, EndsTheProgramOnAMainEdgeThatIsNoInteger) {
  for (const double edge : {std::nan(""), HUGE_VAL, 2147483648.0, -2147483649.0}) {
    displays().setMainBounds(rect(edge, 0, 0, 900));
    EXPECT_EXIT(VirtualDisplayHost::make({1000, 700}), testing::KilledBySignal(SIGABRT), "^$");
  }
}

}  // namespace
}  // namespace vistrel
