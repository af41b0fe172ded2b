#include "tests/managed/ParkingPrograms.h"

#include <charconv>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "platform/linux/x11/X11Session.h"

namespace vistrel::testbed {
namespace {

constexpr const char* program = VISTREL_PARKING_PROGRAM;

std::string contentsOf(const std::filesystem::path& file) {
  std::ostringstream contents;
  contents << std::ifstream(file).rdbuf();
  return contents.str();
}

bool hasWritten(const ChildProcess& process, const std::string& line) {
  return ("\n" + process.standardOutput()).find("\n" + line + "\n") != std::string::npos;
}

}  // namespace

std::unique_ptr<ChildProcess> ParkedByAProgram::start(const TestWindow& window,
                                                      const std::vector<std::string>& deeds,
                                                      Guard guard, std::size_t killedAt,
                                                      const PrivateDisplay* display) {
  std::filesystem::path path = program;
  if (guard == Guard::missing) {
    path = withoutGuard_.path() / path.filename();
    std::filesystem::copy_file(program, path, std::filesystem::copy_options::skip_existing);
  }
  ChildProcess::Command command{
      .arguments = {path, std::to_string(window.id())},
      .environment = (display ? *display : bed_.session().display()).environment()};
  command.arguments.insert(command.arguments.end(), deeds.begin(), deeds.end());
  command.environment.push_back("VISTREL_FAULT_AT=" + std::to_string(killedAt));
  return std::make_unique<ChildProcess>(command);
}

std::unique_ptr<ChildProcess> ParkedByAProgram::startParked(const TestWindow& window, Guard guard) {
  auto process = start(window, {"park", "pause"}, guard);
  EXPECT_TRUE(eventually([&] { return hasWritten(*process, "pause"); }))
      << process->standardOutput();
  EXPECT_TRUE(eventually([&] { return isOutOfSight(window); })) << window.area();
  return process;
}

std::vector<std::string> ParkedByAProgram::stepsOf(const TestWindow& window) {
  const auto process = start(window, {"park", "restore"}, Guard::present);
  const auto ending = process->waitForEnd();
  EXPECT_TRUE(ending && ending->exitStatus == 0) << process->standardOutput();
  std::vector<std::string> steps;
  std::istringstream lines(process->standardOutput());
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("step: ")) {
      steps.push_back(line);
    }
  }
  return steps;
}

void ParkedByAProgram::startAnother() {
  EXPECT_NE(platform::linux_desktop::openX11Session(platform::Instances::any).session, nullptr);
}

std::vector<pid_t> ParkedByAProgram::guards() {
  std::vector<pid_t> found;
  const std::string display = "DISPLAY=" + bed_.session().display().name();
  for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
    const std::string name = entry.path().filename().string();
    pid_t pid = 0;
    std::from_chars(name.data(), name.data() + name.size(), pid);
    // The kernel keeps 15 bytes of a name.
    if (pid == 0 || contentsOf(entry.path() / "comm") != "vistrel-guard\n") {
      continue;
    }
    const std::string variables = contentsOf(entry.path() / "environ");
    if (variables.find(display + '\0') != std::string::npos) {
      found.push_back(pid);
    }
  }
  return found;
}

bool ParkedByAProgram::isForgotten(const TestWindow& window) {
  return connection().numbers(window.id(), "_VISTREL_PARKED").empty() &&
         connection().numbers(connection().root(), "_VISTREL_PARKED_WINDOWS").empty() &&
         connection().numbers(connection().root(), "_VISTREL_GROWN_SCREEN").empty();
}

::testing::AssertionResult ParkedByAProgram::isAsBefore(const Belongings& before,
                                                        const std::string& monitorsBefore,
                                                        const TestWindow& window) {
  if (!eventually([&] { return isForgotten(window) && monitors() == monitorsBefore; })) {
    return ::testing::AssertionFailure()
           << (isForgotten(window) ? "" : "not forgotten, ") << monitors() << " instead of "
           << monitorsBefore << "with " << belongingsOf(window);
  }
  return comesBackTo(before, window);
}

void ParkedByAProgram::expectKillsMadeGood(Guard guard) {
  const auto window = openTied();
  const Belongings before = settledBelongingsOf(*window);
  const std::string monitorsBefore = monitors();
  const auto steps = stepsOf(*window);
  ASSERT_TRUE(isAsBefore(before, monitorsBefore, *window));
  ASSERT_GE(steps.size(), 12u);
  for (std::size_t i = 0; i < steps.size(); ++i) {
    SCOPED_TRACE(steps[i]);
    const auto program = start(*window, {"park", "restore"}, guard, i + 1);
    const auto ending = program->waitForEnd();
    ASSERT_TRUE(ending.has_value());
    EXPECT_EQ(ending->signal, SIGKILL);
    // What comes before the guard has been started is left to a start.
    const bool isGuarded = program->standardOutput().find("guard started") != std::string::npos;
    if (guard == Guard::missing || !isGuarded) {
      startAnother();
    }
    ASSERT_TRUE(isAsBefore(before, monitorsBefore, *window));
  }
  EXPECT_TRUE(eventually([&] { return guards().empty(); }));
}

std::unique_ptr<TestWindow> ParkedByAProgram::openTied() {
  auto window = open();
  setStates(*window, true, {above});
  setStates(*window, true, {vertically});
  setStates(*window, true, {fullScreen});
  return window;
}

}  // namespace vistrel::testbed
