#include "tests/support/ManagerConfiguration.h"

#include <fstream>
#include <string>

namespace vistrel::testbed {
namespace {

namespace fs = std::filesystem;

void write(const fs::path& file, const std::string& text) {
  fs::create_directories(file.parent_path());
  std::ofstream(file) << text;
}

void writeProgram(const fs::path& file, const std::string& commands) {
  write(file, "#!/bin/sh\n" + commands);
  fs::permissions(file, fs::perms::owner_all);
}

std::string kwinrc(bool composites) {
  return std::string("[Compositing]\nEnabled=") + (composites ? "true" : "false") +
         "\n\n[Desktops]\nNumber=4\nRows=1\n";
}

constexpr auto fluxboxInit = R"(session.configVersion: 13
session.keyFile: /etc/X11/fluxbox/keys
session.styleOverlay: ~/.fluxbox/overlay
session.screen0.toolbar.visible: false
session.screen0.workspaces: 4
)";

// Else the style has a program look for another one that paints a wallpaper, and ask the person.
constexpr auto fluxboxOverlay = "background: unset\n";

// A window that the pointer enters would have the keyboard, and one without decorations some.
constexpr auto awesomeRc = R"(dofile("/etc/xdg/awesome/rc.lua")
table.insert(require("awful.rules").rules,
             {rule = {}, properties = {titlebars_enabled = false, border_width = 0}})
require("awful.ewmh").add_activate_filter(function() return false end, "mouse_enter")
)";

// A desktop lasts as long as there is something on it.
constexpr auto i3Config = R"(# i3 config file (v4)
font pango:DejaVu Sans 10
for_window [class=".*"] floating enable
exec --no-startup-id i3-msg "workspace 2; open; workspace 1"
)";

constexpr auto jwmrc = R"(<?xml version="1.0"?>
<JWM>
  <Desktops width="4" height="1"/>
  <FocusModel>click</FocusModel>
  <Key mask="A" key="Tab">nextstacked</Key>
</JWM>
)";

constexpr auto bspwmrc = R"(bspc config border_width 0
bspc rule -a '*' state=floating
bspc monitor -d 1 2 3 4
)";

constexpr auto herbstluftwmAutostart = R"(herbstclient rule floating=on
herbstclient add 2
)";

}  // namespace

void configure(WindowManager manager, const fs::path& home) {
  const fs::path config = home / "config";
  switch (manager) {
    case WindowManager::kwin:
    case WindowManager::kwinCompositing:
      // Windows that grow into their place are not where one sees them.
      write(config / "kdeglobals", "[KDE]\nAnimationDurationFactor=0\n");
      return write(config / "kwinrc", kwinrc(manager == WindowManager::kwinCompositing));
    case WindowManager::icewm:
      return write(config / "icewm/preferences", "ShowTaskBar=0\n");
    case WindowManager::fluxbox:
      write(home / ".fluxbox/init", fluxboxInit);
      return write(home / ".fluxbox/overlay", fluxboxOverlay);
    case WindowManager::awesome:
      return write(config / "awesome/rc.lua", awesomeRc);
    case WindowManager::i3:
      return write(config / "i3/config", i3Config);
    case WindowManager::jwm:
      return write(home / ".jwmrc", jwmrc);
    case WindowManager::bspwm:
      return writeProgram(config / "bspwm/bspwmrc", bspwmrc);
    case WindowManager::herbstluftwm:
      return writeProgram(config / "herbstluftwm/autostart", herbstluftwmAutostart);
    case WindowManager::none:
    case WindowManager::openbox:
    case WindowManager::xfwm4:
    case WindowManager::xfwm4Compositing:
    case WindowManager::mutter:
    case WindowManager::marco:
    case WindowManager::metacity:
      break;
  }
}

bool isConfigured(const XConnection& connection) {
  const auto desktops = connection.numbers(connection.root(), "_NET_NUMBER_OF_DESKTOPS");
  return !desktops.empty() && desktops.front() > 1;
}

}  // namespace vistrel::testbed
