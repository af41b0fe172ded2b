#include <cerrno>
#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/FakeInput.h"
#include "tests/support/KWinScripts.h"
#include "tests/support/KWinSession.h"
#include "tests/support/NativeWindow.h"
#include "tests/support/OrdinaryUser.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/TestWindow.h"

namespace vistrel::testbed {
namespace {

TEST(OrdinaryUser, StartsProgramsThatAreClosedToOthers) {
  const TemporaryDirectory closed;
  const auto program = closed.path() / "program";
  std::filesystem::copy_file("/usr/bin/true", program);
  std::filesystem::permissions(program, std::filesystem::perms::owner_all);
  EXPECT_EXIT(
      {
        const OrdinaryUser user;
        ::execl(program.c_str(), program.c_str(), nullptr);
        ::_exit(1);
      },
      ::testing::ExitedWithCode(0), "");
}

TEST(KWinSession, LeavesNothingRunning) {
  std::filesystem::path home;
  {
    const KWinSession session;
    home = session.home();
    EXPECT_NO_THROW(XConnection{session.xName()});
  }
  EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(errno, ECHILD) << "a child process is left";
  EXPECT_FALSE(std::filesystem::exists(home));
}

TEST(KWinSession, GivesAProgramTheInputOfAPersonWhereItsWindowIs) {
  const KWinSession session;
  session.adoptEnvironment();
  KWinScripts kwin(session.busAddress());
  NativeWindow window(session.environment(), {.title = "Mine", .width = 300, .height = 200});
  kwin.moveTo("Mine", {200, 150});
  EXPECT_EQ(kwin.frameOf("Mine"), (Rect{200, 150, 300, 200}));

  const WaylandClient client;
  FakeInput hand(client);
  hand.clickAt({250, 200});
  EXPECT_TRUE(eventually([&] { return window.pressedButtons() == 1; }));
  constexpr std::uint32_t keyA = 30;
  hand.type(keyA);
  EXPECT_TRUE(eventually([&] { return window.typedKeys() == 1; }));
}

TEST(KWinSession, HasNativeWindowsThatDoAsTheyAreTold) {
  const KWinSession session;
  KWinScripts kwin(session.busAddress());
  NativeWindow window(session.environment(), {.title = "Mine"});
  window.resize(500, 250);
  window.setTitle("Yours");
  EXPECT_TRUE(eventually([&] { return kwin.frameOf("Yours").width == 500; }));
  window.minimise();
  EXPECT_EQ(kwin.run("tell(win('Yours').minimized)"), "true");
  window.close();
  EXPECT_EQ(kwin.run("tell(win('Yours'))"), "undefined");
}

TEST(KWinSession, HasXWindowsToo) {
  const KWinSession session;
  session.adoptEnvironment();
  KWinScripts kwin(session.busAddress());
  const TestWindow window(session.xName(), {.title = "X"});
  EXPECT_EQ(kwin.run("tell(win('X').caption)"), "X");
}

}  // namespace
}  // namespace vistrel::testbed
