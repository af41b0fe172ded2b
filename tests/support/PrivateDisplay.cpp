#include "tests/support/PrivateDisplay.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <poll.h>
#include <stdexcept>
#include <string_view>
#include <unistd.h>
#include <utility>

#include "tests/support/ManagerProbe.h"
#include "tests/support/XConnection.h"

extern char** environ;

namespace vistrel::testbed {
namespace {

// What a private session must not take over from the one that the test was started in.
constexpr std::array<std::string_view, 9> foreignVariables = {
    "DISPLAY=", "WAYLAND_DISPLAY=", "XAUTHORITY=", "XDG_", "DBUS_", "SESSION_MANAGER=",
    "HOME=",    "DESKTOP_",         "QT_"};

bool isForeign(std::string_view variable) {
  return std::ranges::any_of(foreignVariables,
                             [&](std::string_view prefix) { return variable.starts_with(prefix); });
}

// The first line that a program writes into a pipe, once it is ready; empty when it ended first.
std::string readLine(const FileDescriptor& descriptor) {
  std::string line;
  char character = 0;
  while (::read(descriptor.get(), &character, 1) == 1 && character != '\n') {
    line += character;
  }
  return line;
}

[[noreturn]] void failToStart(const std::string& program, const ChildProcess& child) {
  throw std::runtime_error(program + " did not start: " + child.standardError());
}

}  // namespace

PrivateDisplay::PrivateDisplay(const Options& options) : variables_(options.variables) {
  for (const char* name : {"runtime", "config", "state", "data", "cache"}) {
    std::filesystem::create_directory(directory_.path() / name);
  }
  // The XDG base directory specification asks for a run-time directory of the user alone.
  std::filesystem::permissions(directory_.path() / "runtime", std::filesystem::perms::owner_all);
  startServer(options);
  startBus();
  if (options.windowManager != WindowManager::none) {
    startWindowManager(options.windowManager);
  }
}

PrivateDisplay::~PrivateDisplay() = default;

std::vector<std::string> PrivateDisplay::sessionVariables() const {
  const std::string home = directory_.path().string();
  std::vector<std::string> variables{"DISPLAY=" + name_,
                                     "DBUS_SESSION_BUS_ADDRESS=" + busAddress_,
                                     "HOME=" + home,
                                     "XDG_RUNTIME_DIR=" + home + "/runtime",
                                     "XDG_CONFIG_HOME=" + home + "/config",
                                     "XDG_STATE_HOME=" + home + "/state",
                                     "XDG_DATA_HOME=" + home + "/data",
                                     "XDG_CACHE_HOME=" + home + "/cache"};
  variables.insert(variables.end(), variables_.begin(), variables_.end());
  return variables;
}

std::vector<std::string> PrivateDisplay::environment() const {
  std::vector<std::string> variables = sessionVariables();
  for (char** variable = environ; *variable != nullptr; ++variable) {
    if (!isForeign(*variable)) {
      variables.emplace_back(*variable);
    }
  }
  return variables;
}

void PrivateDisplay::adoptEnvironment() const {
  std::vector<std::string> foreign;
  for (char** variable = environ; *variable != nullptr; ++variable) {
    if (isForeign(*variable)) {
      const std::string_view text = *variable;
      foreign.emplace_back(text.substr(0, text.find('=')));
    }
  }
  for (const std::string& name : foreign) {
    ::unsetenv(name.c_str());
  }
  for (const std::string& variable : sessionVariables()) {
    const auto equals = variable.find('=');
    ::setenv(variable.substr(0, equals).c_str(), variable.c_str() + equals + 1, 1);
  }
}

void PrivateDisplay::startServer(const Options& options) {
  Pipe pipe = Pipe::open();
  ChildProcess::Command command{
      .arguments = commandOf(options.server, options.width, options.height, directory_.path()),
      .environment = environment(),
      .inherited = {pipe.writeEnd.get()}};
  const std::string program = command.arguments.front();
  for (const std::string& each :
       {std::string("-displayfd"), std::to_string(pipe.writeEnd.get()), std::string("-nolisten"),
        std::string("tcp"), std::string("-noreset")}) {
    command.arguments.push_back(each);
  }
  command.arguments.insert(command.arguments.end(), options.serverArguments.begin(),
                           options.serverArguments.end());
  server_ = std::make_unique<ChildProcess>(command);
  pipe.writeEnd.close();
  const std::string number = readLine(pipe.readEnd);
  if (number.empty()) {
    failToStart(program, *server_);
  }
  name_ = ":" + number;
  setUpMonitor(options.server, name_, options.width, options.height);
}

void PrivateDisplay::startBus() {
  Pipe pipe = Pipe::open();
  bus_ = std::make_unique<ChildProcess>(ChildProcess::Command{
      .arguments = {"dbus-daemon", "--session", "--nofork", "--nopidfile",
                    "--address=unix:path=" + (directory_.path() / "runtime/bus").string(),
                    "--print-address=" + std::to_string(pipe.writeEnd.get())},
      .environment = environment(),
      .inherited = {pipe.writeEnd.get()}});
  pipe.writeEnd.close();
  busAddress_ = readLine(pipe.readEnd);
  if (busAddress_.empty()) {
    failToStart("dbus-daemon", *bus_);
  }
}

void PrivateDisplay::replaceWindowManager(WindowManager manager) {
  if (manager == WindowManager::none) {
    windowManager_.reset();
  } else {
    startWindowManager(manager);
  }
}

void PrivateDisplay::startWindowManager(WindowManager manager) {
  const XConnection connection(name_);
  ChildProcess::Command command{.arguments = commandOf(manager), .environment = environment()};
  // Asks the one that runs to leave (ICCCM 4.3).
  command.arguments.emplace_back("--replace");
  // Else toolkits start an accessibility bus for the manager's own menus.
  command.environment.emplace_back("NO_AT_BRIDGE=1");
  const auto former = std::exchange(windowManager_, std::make_unique<ChildProcess>(command));
  if (former && !former->waitForEnd()) {
    throw std::runtime_error("the former window manager does not leave");
  }
  // What it says of itself on the root window stands before it turns to its events.
  const ManagerProbe probe(connection);
  if (!eventually([&] { return probe.isAnswered() || windowManager_->ending(); }) ||
      windowManager_->ending()) {
    failToStart(command.arguments.front(), *windowManager_);
  }
}

}  // namespace vistrel::testbed
