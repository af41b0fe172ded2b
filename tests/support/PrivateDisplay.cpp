#include "tests/support/PrivateDisplay.h"

#include <csignal>
#include <stdexcept>
#include <utility>

#include "tests/support/ManagerConfiguration.h"
#include "tests/support/ManagerProbe.h"
#include "tests/support/XConnection.h"

namespace vistrel::testbed {
namespace {

[[noreturn]] void failToStart(const std::string& program, const ChildProcess& child) {
  throw std::runtime_error(program + " did not start: " + child.standardError());
}

}  // namespace

PrivateDisplay::PrivateDisplay(const Options& options) : variables_(options.variables) {
  startServer(options);
  bus_ = std::make_unique<SessionBus>(home_, environment());
  if (options.windowManager != WindowManager::none) {
    startWindowManager(options.windowManager);
  }
}

// A manager that talks to the server from its signal's handler (fluxbox 1.3.5) hangs there when it
// was just doing so, and one that crashes without a server (KWin 5.27.5) starts anew, on whatever
// display has that number by then.
PrivateDisplay::~PrivateDisplay() {
  if (windowManager_) {
    windowManager_->sendSignal(SIGKILL);
  }
}

std::vector<std::string> PrivateDisplay::environmentOnBus(const std::string& address) const {
  std::vector<std::string> variables = home_.environment();
  variables.insert(variables.end(), {"DISPLAY=" + name_, "DBUS_SESSION_BUS_ADDRESS=" + address});
  variables.insert(variables.end(), variables_.begin(), variables_.end());
  return variables;
}

void PrivateDisplay::startServer(const Options& options) {
  Pipe pipe = Pipe::open();
  ChildProcess::Command command{
      .arguments = commandOf(options.server, options.width, options.height, home_.path()),
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

void PrivateDisplay::replaceWindowManager(WindowManager manager) {
  if (manager == WindowManager::none) {
    windowManager_.reset();
  } else {
    startWindowManager(manager);
  }
}

void PrivateDisplay::startWindowManager(WindowManager manager) {
  const XConnection connection(name_);
  configure(manager, home());
  ChildProcess::Command command{.arguments = commandOf(manager), .environment = environment()};
  if (replacesOthers(manager)) {
    command.arguments.emplace_back("--replace");
  } else {
    windowManager_.reset();
  }
  // Else toolkits start an accessibility bus for the manager's own menus.
  command.environment.emplace_back("NO_AT_BRIDGE=1");
  const auto former = std::exchange(windowManager_, std::make_unique<ChildProcess>(command));
  if (former && !former->waitForEnd()) {
    throw std::runtime_error("the former window manager does not leave");
  }
  // What it says of itself on the root window stands before it turns to its events.
  const ManagerProbe probe(connection);
  if (!eventually([&] {
        return (probe.isAnswered() && isConfigured(connection)) || windowManager_->ending();
      }) ||
      windowManager_->ending()) {
    failToStart(command.arguments.front(), *windowManager_);
  }
}

}  // namespace vistrel::testbed
