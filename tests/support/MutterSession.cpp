#include "tests/support/MutterSession.h"

#include <filesystem>
#include <fstream>
#include <regex>
#include <stdexcept>
#include <unistd.h>

#include "tests/support/DBus.h"
#include "tests/support/GnomeShell.h"

namespace vistrel::testbed {
namespace {

namespace fs = std::filesystem;

// Windows that grow into their place are not where one sees them.
constexpr auto settings = R"([org/gnome/mutter]
center-new-windows=true

[org/gnome/desktop/interface]
enable-animations=false

[org/gnome/desktop/notifications]
show-banners=false

[org/gnome/shell]
welcome-dialog-last-shown-version='999'
)";

void configure(const fs::path& home) {
  const fs::path directory = home / "config/glib-2.0/settings";
  fs::create_directories(directory);
  std::ofstream(directory / "keyfile") << settings;
}

/// Where mutter listens for the first client of X; empty as long as it has not told.
std::string xNameIn(const std::string& log) {
  std::smatch found;
  std::regex_search(log, found, std::regex("public X11 display (:[0-9]+)"));
  return found[1];
}

/// The cookie that this client needs; empty as long as there is none.
std::string xAuthorityIn(const fs::path& runtime) {
  for (const auto& each : fs::directory_iterator(runtime)) {
    if (each.path().filename().string().starts_with(".mutter-Xwaylandauth.")) return each.path();
  }
  return {};
}

/// False while it has not got so far that it can say.
bool isInDesktop(const GnomeShell& shell) {
  try {
    return shell.evaluate("Main.layoutManager._startingUp") == "false" &&
           shell.evaluate("Main.overview.hide(), Main.overview.visible") == "false";
  } catch (const std::runtime_error&) {
    return false;
  }
}

/// The person leaves the overview, with which the shell begins.
void leaveOverview(const GnomeShell& shell) {
  // Where its start alone takes twenty seconds, as on a busy machine now and then, the rest does
  // too.
  if (!eventually([&] { return isInDesktop(shell); }, 3 * generousDeadline)) {
    throw std::runtime_error("gnome-shell stays in its overview");
  }
}

}  // namespace

MutterSession::MutterSession(const Options& options)
    : WaylandSession(
          {"XDG_CURRENT_DESKTOP=GNOME", "XDG_SESSION_ID=c1", "GSETTINGS_BACKEND=keyfile"},
          options.variables),
      systemBus_(privateHome(), environment()) {
  configure(home());
  startBus();
  startPipeWire();
  systemBus_.awaitLogind();
  startMutter(options);
  if (options.isGnomeShell) {
    leaveOverview(GnomeShell(*this));
  }
  if (options.hasPortal) {
    startPortal();
  }
}

// Before the system bus, with which it would end by itself.
MutterSession::~MutterSession() { killCompositor(); }

void MutterSession::startMutter(const Options& options) {
  ChildProcess::Command command{
      .arguments = {options.isGnomeShell ? "gnome-shell" : "mutter", "--headless", "--wayland",
                    "--wayland-display", waylandName, "--virtual-monitor",
                    std::to_string(options.width) + "x" + std::to_string(options.height)},
      .environment = environment()};
  if (options.isGnomeShell) {
    // Lets the test look into it.
    command.arguments.emplace_back("--unsafe-mode");
  }
  const BusConnection bus = connectToBus(busAddress());
  std::string name;
  std::string authority;
  startCompositor(command, [&] {
    name = xNameIn(compositor().standardOutput() + compositor().standardError());
    authority = xAuthorityIn(home() / "runtime");
    return !name.empty() && !authority.empty() && isOnBus(bus, "org.gnome.Mutter.ScreenCast") &&
           isOnBus(bus, "org.gnome.Mutter.RemoteDesktop") &&
           (!options.isGnomeShell || isOnBus(bus, "org.gnome.Shell"));
  });
  setXDisplay(name, authority);
  letTestIn();
}

// As a person's login does: the test's own connections to the X server show no cookie.
void MutterSession::letTestIn() const {
  ChildProcess xhost({.arguments = {"xhost", "+si:localuser:#" + std::to_string(::geteuid())},
                      .environment = environment()});
  const auto ending = xhost.waitForEnd();
  if (!ending || ending->exitStatus != 0) {
    throw std::runtime_error("xhost: " + xhost.standardError());
  }
}

void MutterSession::startPortal() {
  portal_ = std::make_unique<GnomePortal>(busAddress(), environment());
}

}  // namespace vistrel::testbed
