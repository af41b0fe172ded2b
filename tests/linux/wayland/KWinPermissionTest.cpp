#include <filesystem>
#include <string>
#include <vector>

#include "tests/linux/wayland/KWinTest.h"
#include "tests/support/ChildProcess.h"

namespace vistrel::platform::linux_desktop {
namespace {

using testbed::TestWindow;
using ::testing::EndsWith;
using ::testing::IsEmpty;

const std::string ownProgram = std::filesystem::read_symlink("/proc/self/exe");

class KWinPermissionTest : public KWinTest {
 protected:
  KWinPermissionTest() : KWinTest({.grantsTest = false}) {}

  void runGrant(const std::string& argument) {
    testbed::ChildProcess grant(
        {.arguments = {VISTREL_KWIN_GRANT, argument}, .environment = desktop_.environment()});
    const auto ending = grant.waitForEnd();
    ASSERT_TRUE(ending && ending->exitStatus == 0) << grant.standardError();
    EXPECT_THAT(grant.standardOutput(),
                ::testing::HasSubstr((desktop_.home() / "data/applications").string()));
  }
};

TEST_F(KWinPermissionTest, IsGrantedAndTakenBackByTheCommandThatIsTold) {
  const NativeWindow native(desktop_.environment(), {.title = "Native"});
  const TestWindow ofX(desktop_.xName(), {.title = "Of X"});
  EXPECT_TRUE(eventually([&] { return titles() == std::vector<std::string>{"Of X"}; }));
  EXPECT_THAT(session_->facts().grantCommand, EndsWith("vistrel-kwin-grant " + ownProgram));

  runGrant(ownProgram);
  EXPECT_TRUE(eventually([&] { return titles().size() == 2; }));
  EXPECT_THAT(session_->facts().grantCommand, IsEmpty());

  runGrant("--revoke");
  EXPECT_TRUE(eventually([&] { return !session_->facts().grantCommand.empty(); }));
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
