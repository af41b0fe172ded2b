#include "tests/support/PrivateHome.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string_view>

extern char** environ;

namespace vistrel::testbed {
namespace {

namespace fs = std::filesystem;

constexpr std::array<std::string_view, 7> takenOver = {
    "PATH=",         "LD_LIBRARY_PATH=", "TMPDIR=",       "ASAN_OPTIONS=",
    "LSAN_OPTIONS=", "TSAN_OPTIONS=",    "UBSAN_OPTIONS="};

const fs::path fontsOfMachine = "/usr/share/fonts/truetype/dejavu";
constexpr std::array fonts = {"DejaVuSans.ttf", "DejaVuSans-Bold.ttf", "DejaVuSansMono.ttf",
                              "DejaVuSansMono-Bold.ttf"};

/// What belongs to the programs that a session consists of: under this home's name, what the
/// machine's is called. Links to what is not installed lead nowhere.
struct Link {
  std::string_view name;
  std::string_view target;
};
constexpr std::array<Link, 9> links = {{
    // mutter, marco and metacity end without their settings' schemas.
    {"share/glib-2.0", "/usr/share/glib-2.0"},
    {"share/kwin", "/usr/share/kwin"},
    // Without the types of files marco and metacity read no picture, and end.
    {"share/mime", "/usr/share/mime"},
    {"share/themes/Clearlooks", "/usr/share/themes/Clearlooks"},
    {"etc/openbox", "/etc/xdg/openbox"},
    {"etc/awesome", "/etc/xdg/awesome"},
    {"services/org.a11y.Bus.service", "/usr/share/dbus-1/services/org.a11y.Bus.service"},
    // Where xfwm4 asks for its settings.
    {"services/org.xfce.Xfconf.service", "/usr/share/dbus-1/services/org.xfce.Xfconf.service"},
    // Whom kwin has watch its keys.
    {"services/org.kde.kglobalaccel.service",
     "/usr/share/dbus-1/services/org.kde.kglobalaccel.service"},
}};

void linkFonts(const fs::path& home) {
  for (const char* font : fonts) {
    if (!fs::exists(fontsOfMachine / font)) {
      throw std::runtime_error("no font " + (fontsOfMachine / font).string());
    }
    fs::create_symlink(fontsOfMachine / font, home / "fonts" / font);
  }
}

// The rendering is what Debian's own configuration asks for.
std::string fontConfiguration(const fs::path& home) {
  return R"(<?xml version="1.0"?>
<!DOCTYPE fontconfig SYSTEM "urn:fontconfig:fonts.dtd">
<fontconfig>
  <dir>)" +
         (home / "fonts").string() + R"(</dir>
  <cachedir>)" +
         (home / "cache/fontconfig").string() + R"(</cachedir>
  <alias><family>monospace</family><prefer><family>DejaVu Sans Mono</family></prefer></alias>
  <match target="pattern">
    <edit name="family" mode="append_last"><string>DejaVu Sans</string></edit>
    <edit name="antialias" mode="append"><bool>true</bool></edit>
    <edit name="hintstyle" mode="append"><const>hintslight</const></edit>
    <edit name="lcdfilter" mode="append"><const>lcddefault</const></edit>
  </match>
</fontconfig>
)";
}

/// Of the bus of that type ("session" or "system"), which starts what is in `services`.
std::string busConfigurationText(const std::string& type, const fs::path& socket,
                                 const fs::path& services) {
  return R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
  "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>)" +
         type + R"(</type>
  <listen>unix:path=)" +
         socket.string() + R"(</listen>
  <auth>EXTERNAL</auth>
  <servicedir>)" +
         services.string() + R"(</servicedir>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
  <limit name="service_start_timeout">120000</limit>
</busconfig>
)";
}

}  // namespace

PrivateHome::PrivateHome() {
  for (const char* name : {"runtime", "config", "state", "data", "cache", "etc", "share/themes",
                           "icons", "services", "fonts", "modules"}) {
    fs::create_directories(path() / name);
  }
  // The XDG base directory specification asks for a run-time directory of the user alone.
  fs::permissions(path() / "runtime", fs::perms::owner_all);
  for (const Link& link : links) {
    fs::create_symlink(link.target, path() / link.name);
  }
  linkFonts(path());
  std::ofstream(path() / "fonts.conf") << fontConfiguration(path());
  std::ofstream(busConfiguration())
      << busConfigurationText("session", busSocket(), path() / "services");
  std::ofstream(systemBusConfiguration())
      << busConfigurationText("system", systemBusSocket(), path() / "no-services");
}

std::vector<std::string> PrivateHome::environment() const {
  const std::string home = path().string();
  std::vector<std::string> variables{
      "HOME=" + home,
      "LANG=C.UTF-8",
      "LC_ALL=C.UTF-8",
      "XDG_RUNTIME_DIR=" + home + "/runtime",
      "XDG_CONFIG_HOME=" + home + "/config",
      "XDG_CONFIG_DIRS=" + home + "/etc",
      "XDG_STATE_HOME=" + home + "/state",
      "XDG_DATA_HOME=" + home + "/data",
      "XDG_DATA_DIRS=" + home + "/share",
      "XDG_CACHE_HOME=" + home + "/cache",
      "DBUS_SYSTEM_BUS_ADDRESS=unix:path=" + systemBusSocket().string(),
      "FONTCONFIG_FILE=" + home + "/fonts.conf",
      // Without a theme there, cursors are the display server's own.
      "XCURSOR_PATH=" + home + "/icons",
      "QT_QPA_PLATFORMTHEME=generic",
      "QT_STYLE_OVERRIDE=Fusion",
      // The window managers' toolkit.
      "GTK_THEME=Adwaita",
      "GSETTINGS_BACKEND=memory",
      "GIO_MODULE_DIR=" + home + "/modules",
  };
  for (char** variable = environ; *variable != nullptr; ++variable) {
    const std::string_view text = *variable;
    if (std::ranges::any_of(takenOver, [&](auto prefix) { return text.starts_with(prefix); })) {
      variables.emplace_back(text);
    }
  }
  return variables;
}

void adoptEnvironment(const std::vector<std::string>& environment) {
  ::clearenv();
  for (const std::string& variable : environment) {
    const auto equals = variable.find('=');
    ::setenv(variable.substr(0, equals).c_str(), variable.c_str() + equals + 1, 1);
  }
}

}  // namespace vistrel::testbed
