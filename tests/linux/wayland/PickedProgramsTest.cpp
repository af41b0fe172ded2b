#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "tests/linux/wayland/PickingPerson.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/GnomeShell.h"
#include "tests/support/MutterSession.h"
#include "tests/support/Poll.h"
#include "tests/support/TestPortal.h"

namespace vistrel::platform::linux_desktop {
namespace {

using testbed::eventually;

/// A program as people have them, whose window is streamed with what its toolkit draws around it.
struct Program {
  const char* name;
  const char* title;
  std::vector<std::string> command;
};

void PrintTo(const Program& program, std::ostream* out) { *out << program.name; }

/// Windows of such programs in a session of gnome-shell, which knows where a person sees them.
class PickedProgram : public ::testing::Test {
 protected:
  /// Returns once its window has the keyboard.
  void start(const Program& program) {
    title_ = program.title;
    process_ = std::make_unique<testbed::ChildProcess>(testbed::ChildProcess::Command{
        .arguments = program.command, .environment = session_.environment()});
    ASSERT_TRUE(eventually([&] {
      if (shell_.frameOf(title_)) shell_.raise(title_);
      return shell_.evaluate("global.display.focus_window?.title") == '"' + title_ + '"';
    }));
  }
  Size pickedSize() {
    const std::string status = person_.pickFocused();
    return status.empty() ? person_.window()->frame.size : Size{};
  }
  Size seenSize() const {
    const auto frame = shell_.frameOf(title_).value_or(testbed::Rect{});
    return {static_cast<double>(frame.width), static_cast<double>(frame.height)};
  }

  std::string sizes() {
    const auto text = [](Size size) {
      return std::to_string(size.width) + " × " + std::to_string(size.height);
    };
    return text(pickedSize()) + " picked, " + text(seenSize()) + " seen";
  }

  testbed::MutterSession session_{testbed::MutterSession::Options{.isGnomeShell = true}};
  const bool isAdopted_ = (session_.adoptEnvironment(), true);
  testbed::TestPortal portal_{session_};
  const testbed::GnomeShell shell_{session_};
  PickingPerson person_;
  std::string title_;
  std::unique_ptr<testbed::ChildProcess> process_;
};

class PickedProgramWithShadow : public PickedProgram,
                                public ::testing::WithParamInterface<Program> {};

INSTANTIATE_TEST_SUITE_P(
    Any, PickedProgramWithShadow,
    ::testing::Values(
        Program{"Gtk3",
                "Notice",
                {"zenity", "--info", "--title=Notice", "--text=Nothing has happened so far."}},
        Program{"Weston", "Wayland Terminal", {"weston-terminal", "--shell=/bin/cat"}},
        Program{"XTerm", "Log", {"xterm", "-T", "Log", "-e", "cat"}}),
    [](const auto& each) { return each.param.name; });

TEST_P(PickedProgramWithShadow, IsPickedInTheSizeInWhichItIsSeen) {
  start(GetParam());
  // Windows take their last size a little after they have come.
  EXPECT_TRUE(eventually([&] { return pickedSize() == seenSize(); })) << sizes();
}

/// Where its last black line ends and the shadow begins, nobody can tell.
TEST_F(PickedProgram, LosesNothingWhereItIsBlackItself) {
  start({"DarkXTerm", "Log", {"xterm", "-T", "Log", "-bg", "black", "-e", "cat"}});
  EXPECT_TRUE(eventually([&] {
    const Size picked = pickedSize();
    const Size seen = seenSize();
    return picked.width == seen.width && picked.height >= seen.height;
  })) << sizes();
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
