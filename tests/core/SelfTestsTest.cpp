#include <cmath>
#include <gtest/gtest.h>

#include "app/SelfTests.h"
#include "parking/VLVirtualDisplay.h"
#include "tests/core/CoreTest.h"

namespace vistrel {
namespace {

using testing::Optional;

TEST(SelfTestOptions, AreFoundAnywhereAndDiagnosticsComeFirst) {
  EXPECT_THAT(selfTestAskedFor({"vistrel", "--vddiag"}), Optional(SelfTest::diagnostics));
  EXPECT_THAT(selfTestAskedFor({"vistrel", "file", "--vdtest", "-x"}),
              Optional(SelfTest::virtualDisplay));
  EXPECT_THAT(selfTestAskedFor({"vistrel", "--vdtest", "--vddiag"}),
              Optional(SelfTest::diagnostics));
  EXPECT_THAT(selfTestAskedFor({"vistrel", "--vddiag", "--vdtest"}),
              Optional(SelfTest::diagnostics));
  EXPECT_THAT(selfTestAskedFor({"--vdtest"}), Optional(SelfTest::virtualDisplay));
}

TEST(SelfTestOptions, AreNotGuessed) {
  EXPECT_EQ(selfTestAskedFor({}), std::nullopt);
  EXPECT_EQ(selfTestAskedFor({"vistrel", "--vdtest=1", "-vddiag", "--vddia", "--vddiag ",
                              "--VDTEST", "vdtest", ""}),
            std::nullopt);
}

class SelfTestsTest : public CoreTest {
 protected:
  int runTest(SelfTest test) {
    desktop_.standardError().setWhenWritten(whenWritten_);
    return run(test);
  }
  platform::simulated::SimulatedApplication& application() { return desktop_.application(); }
  platform::simulated::SimulatedDisplays& displays() { return desktop_.displays(); }
  platform::simulated::SimulatedVirtualDisplayServer& server() {
    return desktop_.virtualDisplays().server();
  }

  const std::vector<std::string>& written_ = desktop_.standardError().texts();
  std::function<void()> whenWritten_;
};

TEST_F(SelfTestsTest, DiagnosticsWriteTheListingWithoutAnApplication) {
  const std::string listing = VLVirtualDisplay::diagnostics();
  EXPECT_EQ(runTest(SelfTest::diagnostics), 0);
  EXPECT_THAT(written_, ElementsAre(listing));
  EXPECT_EQ(application().activationPolicy(), std::nullopt);
  EXPECT_EQ(application().finishLaunchingCount(), 0);
}

TEST_F(SelfTestsTest, DiagnosticsSucceedWithoutTheClassesToo) {
  server().setHosts(false);
  EXPECT_EQ(runTest(SelfTest::diagnostics), 0);
  EXPECT_THAT(written_, ElementsAre("=== CGVirtualDisplayDescriptor (MISSING)\n"
                                    "=== CGVirtualDisplaySettings (MISSING)\n"
                                    "=== CGVirtualDisplayMode (MISSING)\n"
                                    "=== CGVirtualDisplay (MISSING)\n"));
}

TEST_F(SelfTestsTest, ReportsTheDisplayThatItMade) {
  EXPECT_EQ(runTest(SelfTest::virtualDisplay), 0);
  EXPECT_THAT(written_, ElementsAre("vdtest: created=true displayID=2 online 1->2 screens=1 "
                                    "mainMaxX=1440 bounds=-5000,0 960x540\n"));
  EXPECT_EQ(server().descriptors().at(0).name, "Vistrel Self-Test");
  EXPECT_EQ(server().descriptors().at(0).maxPixelsWide, 1920U);
  EXPECT_EQ(server().descriptors().at(0).maxPixelsHigh, 1080U);
}

TEST_F(SelfTestsTest, IsARegularProgramWithoutDelegateMenuOrWindow) {
  runTest(SelfTest::virtualDisplay);
  EXPECT_EQ(application().activationPolicy(), platform::ActivationPolicy::regular);
  EXPECT_EQ(application().finishLaunchingCount(), 1);
  EXPECT_EQ(application().mainMenu(), nullptr);
  EXPECT_THAT(windows().windowsFrontToBack(), IsEmpty());
  EXPECT_THAT(desktop_.journal().calls(),
              testing::Not(testing::Contains("beginDisplayConfiguration")));
}

TEST_F(SelfTestsTest, WaitsForEventsInSlicesUntilItsPatienceEnds) {
  const double start = platform::now().secondsSinceReference;
  runTest(SelfTest::virtualDisplay);
  const auto& waits = application().waits();
  ASSERT_GE(waits.size(), 50U);
  EXPECT_LE(waits.size(), 51U);  // fifty slices of 0.05 s need not add up to 2.5 s
  for (std::size_t i = 0; i < waits.size(); ++i) {
    EXPECT_NEAR(waits[i].secondsSinceReference, start + 0.05 * static_cast<double>(i + 1), 1e-4);
  }
  EXPECT_NEAR(platform::now().secondsSinceReference, start + 2.5, 0.051);
}

TEST_F(SelfTestsTest, WaitsForADisplayToComeOnline) {
  server().setScript({.onlineAfter = 2.4});
  EXPECT_EQ(runTest(SelfTest::virtualDisplay), 0);
  EXPECT_THAT(written_, ElementsAre(testing::HasSubstr("online 1->2")));
}

TEST_F(SelfTestsTest, FailsWithADisplayThatDoesNotComeOnlineInTime) {
  server().setScript({.onlineAfter = 2.7});
  EXPECT_EQ(runTest(SelfTest::virtualDisplay), 1);
  EXPECT_THAT(written_, ElementsAre("vdtest: created=true displayID=2 online 1->1 screens=1 "
                                    "mainMaxX=1440 bounds=0,0 0x0\n"));
}

TEST_F(SelfTestsTest, FailsWithADisplayWithoutBoundsAlsoWhenAnotherHasComeOnline) {
  server().setScript({.onlineAfter = std::nullopt});
  platform::mainAsyncAfter(0.5, [this] { displays().setBounds(77, rect(0, 900, 100, 100)); });
  EXPECT_EQ(runTest(SelfTest::virtualDisplay), 1);
  EXPECT_THAT(written_, ElementsAre("vdtest: created=true displayID=2 online 1->2 screens=1 "
                                    "mainMaxX=1440 bounds=0,0 0x0\n"));
}

TEST_F(SelfTestsTest, FailsAfterTheSameWaitWithoutADisplay) {
  server().setHosts(false);
  EXPECT_EQ(runTest(SelfTest::virtualDisplay), 1);
  EXPECT_GE(application().waits().size(), 50U);
  EXPECT_THAT(written_, ElementsAre("vdtest: created=false displayID=0 online 1->1 screens=1 "
                                    "mainMaxX=1440 bounds=0,0 0x0\n"));
}

TEST_F(SelfTestsTest, DoesNotAskForTheBoundsOfNoDisplay) {
  server().setHosts(false);
  displays().setBounds(0, rect(1, 2, 3, 4));
  EXPECT_EQ(runTest(SelfTest::virtualDisplay), 1);
  EXPECT_THAT(written_, ElementsAre(testing::HasSubstr("bounds=0,0 0x0")));
}

TEST_F(SelfTestsTest, LetsTheDisplayGoBeforeItCounts) {
  // A display that was let go is taken down on the main queue.
  displays().setWhenCounted([this] { desktop_.turnMainQueue(); });
  EXPECT_EQ(runTest(SelfTest::virtualDisplay), 1);
  EXPECT_THAT(written_, ElementsAre("vdtest: created=true displayID=2 online 1->1 screens=1 "
                                    "mainMaxX=1440 bounds=-5000,0 960x540\n"));
}

TEST_F(SelfTestsTest, CountsAgainAfterItsReport) {
  whenWritten_ = [this] {
    EXPECT_EQ(displays().onlineDisplayCount(), 2U);
    desktop_.turnMainQueue();  // on which the display, let go before, is taken down
    EXPECT_EQ(displays().onlineDisplayCount(), 1U);
  };
  EXPECT_EQ(runTest(SelfTest::virtualDisplay), 1);
  EXPECT_THAT(written_, ElementsAre(testing::HasSubstr("online 1->2")));
}

TEST_F(SelfTestsTest, FailsWhenAnotherDisplayLeftMeanwhile) {
  displays().setBounds(77, rect(0, 900, 100, 100));
  server().setScript({.onlineAfter = 1});
  platform::mainAsyncAfter(0.5, [this] { displays().remove(77); });
  EXPECT_EQ(runTest(SelfTest::virtualDisplay), 1);
  EXPECT_THAT(written_, ElementsAre(testing::HasSubstr("online 2->2")));
}

TEST_F(SelfTestsTest, CutsTheMainEdgeTowardZero) {
  displays().setMainBounds(rect(0, 0, 1919.9, 1080));
  EXPECT_EQ(runTest(SelfTest::virtualDisplay), 0);
  EXPECT_THAT(written_, ElementsAre(testing::HasSubstr("mainMaxX=1919 ")));
}

using SelfTestsDeathTest = SelfTestsTest;

TEST_F(SelfTestsDeathTest, EndsTheProgramBeforeItWritesWhatIsNoInteger) {
  whenWritten_ = [] { std::fputs("written", stderr); };
  for (const double edge : {std::nan(""), HUGE_VAL, 0x1p63}) {
    displays().setMainBounds(rect(0, 0, edge, 900));
    EXPECT_EXIT(runTest(SelfTest::virtualDisplay), testing::KilledBySignal(SIGABRT), "^$");
  }
}

}  // namespace
}  // namespace vistrel
