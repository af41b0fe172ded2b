// Shows the program's main job without a person: a private display, ordinary windows, the pointer
// that goes from the picker to a live mirror, and a picture of the whole screen. Exits with 0 when
// the mirror's pixels followed the source's.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>
#include <string>

#include "tests/desktop/demo/DemoDesktop.h"
#include "tests/support/Poll.h"

namespace vistrel::testbed {
namespace {

// The mean colour of a part of a picture, each channel.
std::array<double, 3> meanColour(const Picture& picture, Rect part) {
  std::array<double, 3> sum{};
  for (int y = part.y; y < part.y + part.height; ++y) {
    for (int x = part.x; x < part.x + part.width; ++x) {
      const Rgb colour = picture.at(x, y);
      sum[0] += colour.red;
      sum[1] += colour.green;
      sum[2] += colour.blue;
    }
  }
  for (double& channel : sum) {
    channel /= part.width * part.height;
  }
  return sum;
}

// How far two areas of the screen differ, as the mean over a grid of cells and all channels, 0 to
// 255. The cells even out what scaling does to edges.
double difference(const Picture& screen, Rect a, Rect b) {
  constexpr int cells = 16;
  const auto cell = [](Rect area, int column, int row) {
    return Rect{area.x + area.width * column / cells, area.y + area.height * row / cells,
                std::max(area.width / cells, 1), std::max(area.height / cells, 1)};
  };
  double sum = 0;
  for (int row = 0; row < cells; ++row) {
    for (int column = 0; column < cells; ++column) {
      const auto first = meanColour(screen, cell(a, column, row));
      const auto second = meanColour(screen, cell(b, column, row));
      for (std::size_t channel = 0; channel < first.size(); ++channel) {
        sum += std::abs(first[channel] - second[channel]);
      }
    }
  }
  return sum / (cells * cells * 3);
}

// Whether the mirror shows what the source shows, at so many moments at which the source looks
// different.
bool follows(const DemoDesktop& desktop, xcb_window_t source, const PanelOnScreen& mirror) {
  constexpr int moments = 20;
  constexpr double same = 8;
  const ScreenReader screen(desktop.connection());
  Picture last;
  for (int moment = 0; moment < moments; ++moment) {
    const bool matched = eventually([&] {
      const Picture now = screen.read(mirror.contents());
      const bool isNew = now != last;
      last = now;
      return isNew &&
             difference(screen.readAll(), desktop.framedArea(source), mirror.contents()) < same;
    });
    if (!matched) {
      return false;
    }
  }
  return true;
}

// Mirrors two windows from the picker of `program`; whether the second mirror followed its source.
bool mirrorWindows(DemoDesktop& desktop, const std::string& program) {
  using enum DemoDesktop::Program;
  desktop.start(program);
  desktop.mirror(builder, 1);
  const PanelOnScreen mirror = desktop.mirror(tide, 2);
  std::cout << "Double-clicked rows of the picker: panels mirror the windows.\n";
  // To below the first, close enough that it jumps onto its edges.
  const Point from = mirror.titleBar();
  desktop.hand().drag(from, {from.x - 22, from.y + 152}, 40);
  // In the open, so that what it shows can be compared.
  desktop.activate(desktop.windowOf(tide));
  const bool followed = follows(desktop, desktop.windowOf(tide), mirror);
  std::cout << (followed ? "The mirror's pixels followed the source's.\n"
                         : "The mirror's pixels did not follow the source's.\n");
  desktop.activate(desktop.vistrel().picker().id());
  return followed;
}

bool show(const std::filesystem::path& picture, const std::string& program) {
  DemoDesktop desktop({.width = 1440, .height = 900});
  bool followed = false;
  try {
    followed = mirrorWindows(desktop, program);
  } catch (const std::exception& failure) {
    std::cerr << "The demo failed: " << failure.what() << '\n';
  }
  desktop.screen().savePng(picture);
  std::cout << "The screen is saved as " << picture.string() << ".\n";
  return followed;
}

}  // namespace
}  // namespace vistrel::testbed

int main(int argc, char** argv) {
  if (argc != 2 && argc != 3) {
    std::cerr << "usage: vistrel-demo PICTURE.png [PROGRAM]\n";
    return EXIT_FAILURE;
  }
  try {
    return vistrel::testbed::show(argv[1], argc == 3 ? argv[2] : "") ? EXIT_SUCCESS : EXIT_FAILURE;
  } catch (const std::exception& failure) {
    std::cerr << "The demo cannot be shown: " << failure.what() << '\n';
    return EXIT_FAILURE;
  }
}
