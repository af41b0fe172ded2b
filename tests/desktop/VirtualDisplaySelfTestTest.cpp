#include <gtest/gtest.h>

#include "tests/desktop/RunningVistrel.h"
#include "tests/support/MonitorReport.h"

namespace vistrel::testbed {
namespace {

class VirtualDisplaySelfTest : public ::testing::Test {
 protected:
  explicit VirtualDisplaySelfTest(DisplayServer server = DisplayServer::growable)
      : display_({.windowManager = WindowManager::none,
                  .server = server,
                  .variables = {"VISTREL_TRACE=all"}}) {}

  std::unique_ptr<ChildProcess> start() const {
    return std::make_unique<ChildProcess>(
        RunningVistrel::command({"--vdtest"}, display_.environment()));
  }

  const PrivateDisplay display_;
};

TEST_F(VirtualDisplaySelfTest, MakesADisplayAndLeavesNoTrace) {
  const std::string before = monitorReport(display_);
  const auto program = start();
  const auto ending = program->waitForEnd();
  ASSERT_TRUE(ending.has_value());
  EXPECT_EQ(ending->exitStatus, 0);
  const std::string report = program->standardError();
  EXPECT_TRUE(report.starts_with("vdtest: created=true displayID=")) << report;
  EXPECT_TRUE(report.ends_with(" online 1->2 screens=1 mainMaxX=1280 bounds=1280,0 960x540\n"))
      << report;
  EXPECT_EQ(monitorReport(display_), before);
}

TEST_F(VirtualDisplaySelfTest, EndsAsEverWithoutStandardError) {
  // The connection to the display server would get its number.
  ChildProcess program(RunningVistrel::withStandardError(
      RunningVistrel::command({"--vdtest"}, display_.environment()), "-"));
  const auto ending = program.waitForEnd();
  ASSERT_TRUE(ending.has_value());
  EXPECT_EQ(ending->exitStatus, 0);
}

class VirtualDisplaySelfTestOnAFixedScreen : public VirtualDisplaySelfTest {
 protected:
  VirtualDisplaySelfTestOnAFixedScreen() : VirtualDisplaySelfTest(DisplayServer::fixed) {}
};

TEST_F(VirtualDisplaySelfTestOnAFixedScreen, ReportsThatNothingWasMade) {
  const auto program = start();
  const auto ending = program->waitForEnd();
  ASSERT_TRUE(ending.has_value());
  EXPECT_EQ(ending->exitStatus, 1);
  EXPECT_EQ(program->standardError(),
            "vdtest: created=false displayID=0 online 1->1 screens=1 mainMaxX=1280 "
            "bounds=0,0 0x0\n");
}

}  // namespace
}  // namespace vistrel::testbed
