#include <fstream>

#include "platform/linux/SerialQueue.h"
#include "platform/linux/wayland/kwin/KWinScripts.h"
#include "tests/linux/wayland/KWinTest.h"
#include "tests/support/DBus.h"
#include "tests/support/Poll.h"
#include "tests/support/TemporaryDirectory.h"

namespace vistrel::platform::linux_desktop {
namespace {

using KWinScriptsTest = KWinTest;

TEST_F(KWinScriptsTest, AreCarriedOutAlsoWhereAnotherProgramsScriptHasTheirNumber) {
  const testbed::TemporaryDirectory directory;
  const auto file = directory.path() / "script.js";
  std::ofstream(file) << "var nothing;";
  const auto bus = testbed::connectToBus(desktop_.busAddress());
  const testbed::BusObject scripting(bus, "org.kde.KWin", "/Scripting");
  for (const char* name : {"first", "second"}) {
    scripting.call("org.kde.kwin.Scripting", "loadScript", "ss", file.c_str(), name);
  }
  scripting.call("org.kde.kwin.Scripting", "unloadScript", "s", "first");
  KWinScripts scripts;
  EXPECT_EQ(scripts.run("tell('here');",
                        monotonicNow() + std::chrono::seconds(testbed::generousDeadline).count()),
            "here\n");
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
