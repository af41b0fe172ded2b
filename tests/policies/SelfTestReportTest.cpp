#include <cmath>
#include <gtest/gtest.h>

#include "app/SelfTestReport.h"

namespace vistrel {
namespace {

using platform::rect;

const SelfTestFindings findings{.created = true,
                                .displayID = 4294967295,
                                .onlineBefore = 1,
                                .onlineAfter = 2,
                                .screens = 3,
                                .mainMaxX = 1512,
                                .bounds = rect(1512, 0, 960, 540)};

TEST(SelfTestReport, IsOneLine) {
  EXPECT_EQ(selfTestReport(findings),
            "vdtest: created=true displayID=4294967295 online 1->2 screens=3 mainMaxX=1512 "
            "bounds=1512,0 960x540\n");
}

TEST(SelfTestReport, SaysThatNothingWasMade) {
  EXPECT_EQ(selfTestReport({}),
            "vdtest: created=false displayID=0 online 0->0 screens=0 mainMaxX=0 bounds=0,0 0x0\n");
}

TEST(SelfTestReport, CutsRealNumbersTowardZero) {
  auto fractional = findings;
  fractional.mainMaxX = 1919.9;
  fractional.bounds = rect(-0.5, -1080.7, 960.9, 0x1p62);
  EXPECT_EQ(selfTestReport(fractional),
            "vdtest: created=true displayID=4294967295 online 1->2 screens=3 mainMaxX=1919 "
            "bounds=0,-1080 960x4611686018427387904\n");
}

TEST(SelfTestReportDeathTest, EndsTheProgramSilentlyOnWhatIsNoInteger) {
  for (const double bad : {std::nan(""), HUGE_VAL, -HUGE_VAL, 0x1p63}) {
    for (const SelfTestFindings& broken :
         {SelfTestFindings{.mainMaxX = bad}, SelfTestFindings{.bounds = rect(bad, 0, 1, 1)},
          SelfTestFindings{.bounds = rect(0, bad, 1, 1)},
          SelfTestFindings{.bounds = rect(0, 0, bad, 1)},
          SelfTestFindings{.bounds = rect(0, 0, 1, bad)}}) {
      EXPECT_EXIT(selfTestReport(broken), testing::KilledBySignal(SIGABRT), "^$");
    }
  }
}

}  // namespace
}  // namespace vistrel
