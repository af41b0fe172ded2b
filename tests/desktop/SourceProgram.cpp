#include "tests/desktop/SourceProgram.h"

#include <fstream>

namespace vistrel::testbed {
namespace {

namespace fs = std::filesystem;

// Blocks of colours beside each other, and below them nothing.
constexpr auto shellScript = R"(
for line in 1 2 3 4 5 6; do
  printf '\033[41m%20s\033[44m%20s\033[42m%20s\033[0m\n' '' '' ''
done
exec cat
)";

constexpr auto tclScript = R"(
wm title . {Four colours}
foreach {row column colour} {0 0 red 0 1 green 1 0 blue 1 1 yellow} {
  frame .$row$column -background $colour -width 250 -height 150
  grid .$row$column -row $row -column $column -sticky nsew
  grid rowconfigure . $row -weight 1
  grid columnconfigure . $column -weight 1
}
)";

// A film of one frame: brightness from the left to the right, and two colours.
void writeFilm(const fs::path& file) {
  constexpr int width = 320;
  constexpr int height = 180;
  std::ofstream film(file, std::ios::binary);
  film << "YUV4MPEG2 W" << width << " H" << height << " F25:1 Ip A1:1 C444\nFRAME\n";
  for (int plane = 0; plane < 3; ++plane) {
    for (int i = 0; i < width * height; ++i) {
      const int x = i % width;
      film.put(static_cast<char>(plane == 0 ? 40 + x / 2 : (x / 160 + plane) % 2 == 0 ? 80 : 176));
    }
  }
}

}  // namespace

SourceProgram xterm() {
  return {"Xterm", "XTerm — Blocks", "debian-xterm.desktop",
          [](const fs::path&) -> std::vector<std::string> {
            return {"xterm", "-fa", "DejaVu Sans Mono", "-T", "Blocks", "-e",
                    "sh",    "-c",  shellScript};
          }};
}

SourceProgram wish() {
  return {"Wish", "Colours — Four colours", "",
          [](const fs::path& home) -> std::vector<std::string> {
            std::ofstream(home / "colours.tcl") << tclScript;
            return {"wish", (home / "colours.tcl").string(), "-name", "colours"};
          }};
}

SourceProgram gnomeCalculator() {
  return {"GnomeCalculator", "Calculator — Calculator", "org.gnome.Calculator.desktop",
          [](const fs::path& home) -> std::vector<std::string> {
            // Else it asks the net for the currencies of the week.
            const fs::path settings = home / "config/glib-2.0/settings";
            fs::create_directories(settings);
            std::ofstream(settings / "keyfile") << "[org/gnome/calculator]\nrefresh-interval=0\n";
            return {"env", "GSETTINGS_BACKEND=keyfile", "GSK_RENDERER=cairo", "gnome-calculator"};
          }};
}

SourceProgram kcalc() {
  return {"Kcalc", "KCalc — KCalc", "org.kde.kcalc.desktop",
          [](const fs::path&) -> std::vector<std::string> { return {"kcalc"}; }};
}

SourceProgram mpv() {
  return {"Mpv", "mpv Media Player — film.y4m - mpv", "mpv.desktop",
          [](const fs::path& home) -> std::vector<std::string> {
            writeFilm(home / "film.y4m");
            return {"mpv",
                    "--no-config",
                    "--load-scripts=no",
                    "--no-audio",
                    "--vo=x11",
                    "--no-osc",
                    "--keep-open=always",
                    "--pause",
                    (home / "film.y4m").string()};
          }};
}

}  // namespace vistrel::testbed
