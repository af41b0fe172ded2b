#include "tests/support/WaylandSession.h"

#include <csignal>
#include <fstream>
#include <regex>
#include <stdexcept>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <utility>

namespace vistrel::testbed {
namespace {

namespace fs = std::filesystem;

/// Instead of what is there under that name.
void set(std::vector<std::string>& variables, const std::string& variable) {
  const std::string name = variable.substr(0, variable.find('=') + 1);
  std::erase_if(variables, [&](std::string_view each) { return each.starts_with(name); });
  variables.push_back(variable);
}

/// Makes the directory of X's sockets as the system does at its start, where none has: the first
/// compositor would make it its own user's, and mutter 43 then serves nobody else.
void ensureXSocketDirectory() {
  constexpr mode_t forAllButNobodyElses = 01777;
  const mode_t mask = ::umask(0);
  ::mkdir("/tmp/.X11-unix", forAllButNobodyElses);
  ::umask(mask);
}

OrdinaryUser becomeOrdinaryUser() {
  ensureXSocketDirectory();
  return {};
}

/// What a compositor that was killed leaves of its X servers: each has a file that tells whose it
/// is.
void removeXServersOf(pid_t compositor) {
  const std::regex lock(R"(\.X([0-9]+)-lock)");
  for (const auto& file : fs::directory_iterator("/tmp")) {
    const std::string name = file.path().filename().string();
    std::smatch parts;
    pid_t owner = 0;
    if (std::regex_match(name, parts, lock) && std::ifstream(file.path()) >> owner &&
        owner == compositor) {
      std::error_code isGone;
      fs::remove("/tmp/.X11-unix/X" + parts.str(1), isGone);
      fs::remove(file.path(), isGone);
    }
  }
}

}  // namespace

WaylandSession::WaylandSession(std::vector<std::string> ofDesktop,
                               const std::vector<std::string>& ofPerson)
    : user_(becomeOrdinaryUser()), variables_(std::move(ofDesktop)) {
  for (const std::string& variable : ofPerson) {
    set(variables_, variable);
  }
}

// XWayland ends with its compositor.
WaylandSession::~WaylandSession() { killCompositor(); }

std::vector<std::string> WaylandSession::environment() const {
  std::vector<std::string> variables = home_.environment();
  variables.insert(variables.end(),
                   {"XDG_SESSION_TYPE=wayland", std::string("WAYLAND_DISPLAY=") + waylandName,
                    "LIBGL_ALWAYS_SOFTWARE=1",
                    // Threads of the rendering that have nothing to do take the others' time.
                    "LP_NUM_THREADS=1", "NO_AT_BRIDGE=1"});
  if (bus_) {
    variables.push_back("DBUS_SESSION_BUS_ADDRESS=" + busAddress());
  }
  if (!xName_.empty()) {
    variables.insert(variables.end(), {"DISPLAY=" + xName_, "XAUTHORITY=" + xAuthority_});
  }
  for (const std::string& variable : variables_) {
    set(variables, variable);
  }
  return variables;
}

void WaylandSession::startBus() { bus_ = std::make_unique<SessionBus>(home_, environment()); }

void WaylandSession::startPipeWire() {
  pipeWire_ = std::make_unique<PrivatePipeWire>(home_, environment());
}

void WaylandSession::setXDisplay(std::string name, std::string authority) {
  xName_ = std::move(name);
  xAuthority_ = std::move(authority);
}

pid_t WaylandSession::xwaylandPid() const {
  for (const auto& process : fs::directory_iterator("/proc")) {
    const std::string name = process.path().filename().string();
    if (name.find_first_not_of("0123456789") != std::string::npos) continue;
    std::ifstream status(process.path() / "status");
    bool isXWayland = false;
    bool isOfCompositor = false;
    for (std::string line; std::getline(status, line);) {
      isXWayland |= line == "Name:\tXwayland";
      isOfCompositor |= line == "PPid:\t" + std::to_string(compositorPid());
    }
    if (isXWayland && isOfCompositor) return std::stoi(name);
  }
  throw std::runtime_error("the compositor has started no Xwayland");
}

void WaylandSession::killCompositor() {
  if (compositor_) {
    compositor_->sendSignal(SIGKILL);
    static_cast<void>(compositor_->waitForEnd());
    removeXServersOf(compositorPid());
  }
}

}  // namespace vistrel::testbed
