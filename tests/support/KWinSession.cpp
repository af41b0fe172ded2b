#include "tests/support/KWinSession.h"

#include <fstream>
#include <stdexcept>

namespace vistrel::testbed {
namespace {

namespace fs = std::filesystem;

void write(const fs::path& file, const std::string& text) {
  fs::create_directories(file.parent_path());
  std::ofstream(file) << text;
}

constexpr auto installedKWin = "/usr/bin/kwin_wayland";

std::string kwinrc(int desktops) {
  return "[Compositing]\nEnabled=true\nAnimationSpeed=0\n\n"
         "[Plugins]\nscreencastEnabled=true\n\n"
         "[Desktops]\nNumber=" +
         std::to_string(desktops) + "\nRows=1\n";
}

// The service cache knows the applications that are in a menu; hidden ones too.
constexpr auto menu = R"(<!DOCTYPE Menu PUBLIC "-//freedesktop//DTD Menu 1.0//EN"
  "http://www.freedesktop.org/standards/menu-spec/menu-1.0.dtd">
<Menu>
  <Name>Applications</Name>
  <DefaultAppDirs/>
  <Include><All/></Include>
</Menu>
)";

// Tells for whom X programs are to ask, once it is there.
constexpr auto tellDisplay = R"(#!/bin/sh
printf '%s\n%s\n' "$DISPLAY" "$XAUTHORITY" >"$HOME/display.new"
mv "$HOME/display.new" "$HOME/display"
)";

void configure(const fs::path& home, int desktops) {
  const fs::path config = home / "config";
  write(config / "kwinrc", kwinrc(desktops));
  // Windows that grow into their place are not where one sees them.
  write(config / "kdeglobals", "[KDE]\nAnimationDurationFactor=0\n");
  write(config / "menus/kf5-applications.menu", menu);
  write(home / "tell-display", tellDisplay);
  fs::permissions(home / "tell-display", fs::perms::owner_all);
  // Without its file capability, which a container may not grant.
  fs::copy_file(installedKWin, home / "kwin_wayland");
}

}  // namespace

KWinSession::KWinSession(const Options& options)
    : WaylandSession({"XDG_CURRENT_DESKTOP=KDE"}, options.variables) {
  configure(home(), options.desktops);
  if (options.grantsTest) {
    grantWithoutNotice(fs::read_symlink("/proc/self/exe"));
  }
  for (const auto& program : options.granted) {
    grantWithoutNotice(program);
  }
  startBus();
  rebuildServiceCache();
  startPipeWire();
  startKWin(options);
}

void KWinSession::grantWithoutNotice(const fs::path& program) const {
  const std::string name = program.filename().string();
  write(home() / "data/applications" / (name + ".desktop"),
        "[Desktop Entry]\nType=Application\nNoDisplay=true\nName=" + name +
            "\nExec=" + program.string() +
            "\nX-KDE-Wayland-Interfaces=org_kde_plasma_window_management,"
            "zkde_screencast_unstable_v1,org_kde_kwin_fake_input\n"
            "X-KDE-DBUS-Restricted-Interfaces=org.kde.KWin.ScreenShot2\n");
}

void KWinSession::grant(const fs::path& program) {
  grantWithoutNotice(program);
  rebuildServiceCache();
}

void KWinSession::rebuildServiceCache() const {
  ChildProcess build({.arguments = {"kbuildsycoca5"}, .environment = environment()});
  const auto ending = build.waitForEnd();
  if (!ending || ending->exitStatus != 0) {
    throw std::runtime_error("kbuildsycoca5: " + build.standardError());
  }
}

void KWinSession::startKWin(const Options& options) {
  ChildProcess::Command command{
      .arguments = {(home() / "kwin_wayland").string(), "--virtual", "--no-lockscreen", "--socket",
                    waylandName, "--width", std::to_string(options.width), "--height",
                    std::to_string(options.height), "--scale", std::to_string(options.scale),
                    "--output-count", std::to_string(options.outputs)},
      .environment = environment()};
  command.environment.emplace_back("KWIN_COMPOSE=O2");
  if (options.hasXWayland) {
    command.arguments.emplace_back("--xwayland");
  }
  command.arguments.push_back((home() / "tell-display").string());
  startCompositor(command, [&] { return fs::exists(home() / "display"); });
  std::ifstream told(home() / "display");
  std::string name;
  std::string authority;
  std::getline(told, name);
  std::getline(told, authority);
  setXDisplay(name, authority);
}

}  // namespace vistrel::testbed
