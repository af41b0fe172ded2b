#include <csignal>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <unistd.h>

#include "tests/desktop/DesktopTest.h"

namespace vistrel::testbed {
namespace {

namespace fs = std::filesystem;

/// On a display that cannot be captured, where the picker offers to relaunch the program. The
/// program is installed in a place of its own, to be upgraded and removed.
class Relaunch : public DesktopTest {
 protected:
  static constexpr int grantButtonLeft = 110;
  static constexpr Rect moved{50, 90, 600, 800};

  Relaunch() : DesktopTest({.serverArguments = {"-extension", "Composite"}}) {
    fs::create_directory(installed_.parent_path());
    fs::copy_file(RunningVistrel::command({}, {}).arguments.front(), installed_);
  }

  std::unique_ptr<ChildProcess> startInstalled() {
    auto command = RunningVistrel::command({"--argument"}, display_.environment());
    command.arguments.front() = installed_.string();
    command.environment.emplace_back("DESKTOP_STARTUP_ID=launcher-1-host_TIME1");
    command.environment.emplace_back("XDG_ACTIVATION_TOKEN=token");
    return std::make_unique<ChildProcess>(command);
  }
  PickerOnScreen pickerOf(pid_t process) {
    xcb_window_t found = XCB_WINDOW_NONE;
    EXPECT_TRUE(eventually([&] {
      for (const xcb_window_t window : windowsOfProcess(connection_, process)) {
        if (isViewable(connection_, window) && titleOf(connection_, window) == "Vistrel") {
          found = window;
        }
      }
      return found != XCB_WINDOW_NONE;
    }));
    return {connection_, found, 1, std::make_shared<ScreenReader>(connection_)};
  }
  /// What the program says of the display comes before it.
  void openAlert(const PickerOnScreen& picker) {
    ASSERT_TRUE(eventually([&] { return activeWindow() == picker.id(); }));
    input_.clickAt({picker.area().x + grantButtonLeft + 40, picker.refreshButton().y});
    const xcb_window_t advice = activeOtherThan({picker.id()});
    input_.type(keyReturn);
    activeOtherThan({picker.id(), advice});
  }
  /// Waits until another window has the keyboard than these.
  xcb_window_t activeOtherThan(std::set<xcb_window_t> windows) const {
    windows.insert(XCB_WINDOW_NONE);
    xcb_window_t active = XCB_WINDOW_NONE;
    EXPECT_TRUE(eventually([&] { return !windows.contains(active = activeWindow()); }));
    return active;
  }
  /// Waits until the program has seen it: its list is as large then, beside the alert too.
  void moveAndResize(const PickerOnScreen& picker) {
    constexpr std::uint32_t staticAllFieldsByPerson = 10 | 0xf << 8 | 2 << 12;
    connection_.sendToManager(
        picker.id(), "_NET_MOVERESIZE_WINDOW",
        {staticAllFieldsByPerson, moved.x, moved.y, moved.width, moved.height});
    // Above the notice that stands under it here.
    constexpr Point inList{moved.x + moved.width - 50, moved.y + moved.height - 120};
    ASSERT_TRUE(
        eventually([&] { return picker.area() == moved && screen_.pixel(inList) == white; }));
  }
  /// Puts a program in the place of the installed one that notes how it was started, and goes on as
  /// a copy of it.
  void upgrade() {
    const fs::path newer = installed_.string() + ".new";
    fs::copy_file(installed_, copy_);
    std::ofstream(newer) << "#!/bin/sh\n"
                         << "echo $$ $# \"${DESKTOP_STARTUP_ID-none}\" "
                            "\"${XDG_ACTIVATION_TOKEN-none}\" "
                            "$(cut -d ' ' -f 6 /proc/$$/stat) >"
                         << note_ << ".part\n"
                         << "mv " << note_ << ".part " << note_ << "\n"
                         << "exec " << copy_ << "\n";
    fs::permissions(newer, fs::perms::owner_all);
    fs::rename(newer, installed_);
  }

  std::unique_ptr<ChildProcess> first_;
  const fs::path installed_ = display_.home() / "bin/vistrel";
  const fs::path copy_ = display_.home() / "bin/vistrel-2";
  const fs::path note_ = display_.home() / "note";
};

TEST_F(Relaunch, AnotherInstanceTakesThePlaceOfThisOneWithItsPickersFrame) {
  first_ = startInstalled();
  const PickerOnScreen picker = pickerOf(first_->pid());
  openAlert(picker);
  upgrade();
  moveAndResize(picker);
  input_.type(keyReturn);
  const auto ending = first_->waitForEnd();
  ASSERT_TRUE(ending.has_value());
  EXPECT_EQ(ending->exitStatus, 0);
  EXPECT_EQ(first_->standardError() + first_->standardOutput(), "");

  ASSERT_TRUE(eventually([&] { return fs::exists(note_); }));
  pid_t process = 0;
  int arguments = -1;
  std::string startupID;
  std::string token;
  pid_t session = 0;
  std::ifstream(note_) >> process >> arguments >> startupID >> token >> session;
  EXPECT_EQ(arguments, 0);
  EXPECT_EQ(startupID, "none");
  EXPECT_EQ(token, "none");
  EXPECT_NE(session, ::getsid(0));
  const PickerOnScreen second = pickerOf(process);
  EXPECT_TRUE(eventually([&] { return second.area() == moved; })) << second.area();

  // It is the one instance now.
  const auto again = startInstalled();
  ASSERT_TRUE(again->waitForEnd().has_value());
  EXPECT_EQ(again->ending()->exitStatus, 0);

  // One that cannot start another quits all the same.
  fs::remove(copy_);
  openAlert(second);
  input_.type(keyReturn);
  EXPECT_TRUE(eventually([&] { return windowsOfProcess(connection_, process).empty(); }));
}

}  // namespace
}  // namespace vistrel::testbed
