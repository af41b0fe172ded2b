#include <algorithm>

#include "tests/desktop/DesktopTest.h"
#include "tests/support/AuthorityFile.h"

namespace vistrel::testbed {
namespace {

// One line for a person, and exit status 1; no signal, hence no core.
void expectOneLineAndStatusOne(ChildProcess& process) {
  const auto ending = process.waitForEnd();
  ASSERT_TRUE(ending.has_value()) << "still running";
  EXPECT_EQ(ending->signal, std::nullopt);
  EXPECT_EQ(ending->exitStatus, 1);
  const std::string said = process.standardError();
  EXPECT_GT(said.size(), 1u);
  EXPECT_EQ(std::ranges::count(said, '\n'), 1) << said;
  EXPECT_TRUE(said.ends_with('\n')) << said;
  EXPECT_EQ(process.standardOutput(), "");
}

std::vector<std::string> withDisplay(std::vector<std::string> environment,
                                     const std::string& display) {
  std::erase_if(environment, [](const std::string& variable) {
    return variable.starts_with("DISPLAY=") || variable.starts_with("XAUTHORITY=");
  });
  if (!display.empty()) {
    environment.push_back("DISPLAY=" + display);
  }
  return environment;
}

class Start : public DesktopTest {};

TEST_F(Start, WithoutADisplayItSaysSoAndEnds) {
  ChildProcess process(RunningVistrel::command({}, withDisplay(display_.environment(), "")));
  expectOneLineAndStatusOne(process);
}

TEST_F(Start, WithADisplayThatIsNotThereItSaysSoAndEnds) {
  const TemporaryDirectory nowhere;
  ChildProcess process(RunningVistrel::command(
      {}, withDisplay(display_.environment(), "unix" + (nowhere.path() / "X").string() + ":0")));
  expectOneLineAndStatusOne(process);
}

TEST_F(Start, WithADisplayThatRefusesItSaysSoAndEnds) {
  const AuthorityFile authority;
  const PrivateDisplay closed(
      {.windowManager = WindowManager::none, .serverArguments = {"-auth", authority.path()}});
  ASSERT_THROW(XConnection{closed.name()}, std::runtime_error);
  ChildProcess process(
      RunningVistrel::command({}, withDisplay(closed.environment(), closed.name())));
  expectOneLineAndStatusOne(process);
}

TEST_F(Start, WithoutAThreadForPanelsItSaysSoAndEnds) {
  auto command = RunningVistrel::command({}, display_.environment());
  // Threads have stacks of that size (pthread_attr_init(3)): larger than any address space.
  command.arguments.insert(command.arguments.begin(),
                           {"/bin/sh", "-c", "ulimit -s 1000000000000 && exec \"$0\" \"$@\""});
  ChildProcess process(command);
  expectOneLineAndStatusOne(process);
}

TEST_F(Start, WhenTheDisplayGoesAwayItSaysSoAndEnds) {
  PrivateDisplay display;
  std::unique_ptr<RunningVistrel> vistrel;
  {
    const XConnection connection(display.name());
    vistrel = std::make_unique<RunningVistrel>(display, connection);
    vistrel->picker();
  }
  display.stopServer();
  expectOneLineAndStatusOne(vistrel->process());
}

TEST_F(Start, WhenTheDisplayGoesAwayUnderAMirrorItSaysSoAndEnds) {
  const auto source = openSource();
  const PanelOnScreen panel = mirrorOnlySource();
  ASSERT_TRUE(eventually([&] { return panel.shows(fourColours); }));
  display_.stopServer();
  expectOneLineAndStatusOne(vistrel_->process());
  vistrel_.reset();
}

TEST_F(Start, ArgumentsThatAreNoOptionsOfItsOwnMeanNothing) {
  const auto source = openSource();
  startVistrel({"--vdtest=1", "-vddiag", "--help", "-platform", "offscreen", "-display", ":77",
                "-style", "nonsense", "--", "file"});
  EXPECT_TRUE(vistrel_->picker().isOnScreen());
  EXPECT_EQ(vistrel_->pickerRows(1).size(), 1u);
}

TEST_F(Start, ThePickerHasTheFocusAndItsComputedSize) {
  startVistrel();
  const PickerOnScreen picker = vistrel_->picker();
  EXPECT_TRUE(eventually([&] { return activeWindow() == picker.id(); }));
  EXPECT_EQ(picker.area().width, 460);
  EXPECT_EQ(picker.area().height, PickerOnScreen::menuBarHeight + 420);
}

}  // namespace
}  // namespace vistrel::testbed
