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
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/desktop/RunningVistrel.h"
#include "tests/support/InputDriver.h"
#include "tests/support/Poll.h"
#include "tests/support/PrivateDisplay.h"
#include "tests/support/ScreenReader.h"
#include "tests/support/XWindows.h"

namespace vistrel::testbed {
namespace {

struct Source {
  std::string kind;
  Rect area;
};

const std::vector<Source> demoSources{
    {"notes", {1000, 60, 400, 220}}, {"log", {40, 560, 480, 300}}, {"tide", {450, 330, 950, 530}}};
// The picker sorts by program: Builder, Notes, Tide.
constexpr std::size_t tideRow = 2;
constexpr std::size_t builderRow = 0;

void paintDesktop(const XConnection& connection) {
  constexpr std::uint32_t slate = 0x3a4656;
  xcb_change_window_attributes(connection.get(), connection.root(), XCB_CW_BACK_PIXEL, &slate);
  xcb_clear_area(connection.get(), 0, connection.root(), 0, 0, 0, 0);
  connection.sync();
}

std::unique_ptr<ChildProcess> startSource(const PrivateDisplay& display, const Source& source) {
  const auto [x, y, width, height] = source.area;
  return std::make_unique<ChildProcess>(ChildProcess::Command{
      .arguments = {VISTREL_DEMO_SOURCE, source.kind, std::to_string(x), std::to_string(y),
                    std::to_string(width), std::to_string(height)},
      .environment = display.environment()});
}

xcb_window_t windowOf(const XConnection& connection, const ChildProcess& process) {
  xcb_window_t found = XCB_WINDOW_NONE;
  const bool came = eventually([&] {
    for (const xcb_window_t window : windowsOfProcess(connection, process.pid())) {
      if (isViewable(connection, window) && frameExtentsOf(connection, window)) {
        found = window;
      }
    }
    return found != XCB_WINDOW_NONE;
  });
  if (!came) {
    throw std::runtime_error("a source window did not open: " + process.standardError());
  }
  return found;
}

// The window with what the manager draws around it.
Rect framedArea(const XConnection& connection, xcb_window_t window) {
  const Rect area = areaOf(connection, window).value_or(Rect{});
  const FrameExtents frame = frameExtentsOf(connection, window).value_or(FrameExtents{});
  return {area.x - frame.left, area.y - frame.top, area.width + frame.left + frame.right,
          area.height + frame.top + frame.bottom};
}

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
bool follows(const XConnection& connection, xcb_window_t source, const PanelOnScreen& mirror) {
  constexpr int moments = 20;
  constexpr double same = 8;
  const ScreenReader screen(connection);
  Picture last;
  for (int moment = 0; moment < moments; ++moment) {
    const bool matched = eventually([&] {
      const Picture now = screen.read(mirror.contents());
      const bool isNew = now != last;
      last = now;
      return isNew &&
             difference(screen.readAll(), framedArea(connection, source), mirror.contents()) < same;
    });
    if (!matched) {
      return false;
    }
  }
  return true;
}

/// A session with ordinary windows, and a person who mirrors them.
class Demo {
 public:
  Demo() {
    paintDesktop(connection_);
    for (const Source& source : demoSources) {
      sources_.push_back(startSource(display_, source));
      newestSource_ = windowOf(connection_, *sources_.back());
    }
  }

  /// Starts the program, the one that is built here if `program` is empty; whether the mirror
  /// followed its source.
  bool run(const std::string& program) {
    auto command = RunningVistrel::command({}, display_.environment());
    if (!program.empty()) {
      command.arguments.front() = program;
    }
    vistrel_ = std::make_unique<RunningVistrel>(connection_, command);
    mirrorRow(builderRow, 1);
    const PanelOnScreen mirror = mirrorRow(tideRow, 2);
    std::cout << "Double-clicked rows of the picker: panels mirror the windows.\n";
    const Point from = mirror.titleBar();
    hand_.drag(from, {from.x + 240, from.y - 20}, 40);
    // In the open, so that what it shows can be compared.
    activate(newestSource_);
    const bool followed = follows(connection_, newestSource_, mirror);
    std::cout << (followed ? "The mirror's pixels followed the source's.\n"
                           : "The mirror's pixels did not follow the source's.\n");
    activate(vistrel_->picker().id());
    return followed;
  }

  void savePicture(const std::filesystem::path& file) const {
    ScreenReader(connection_).readAll().savePng(file);
    std::cout << "The screen is saved as " << file.string() << ".\n";
  }

 private:
  // Brings a window to the front, as a taskbar does (EWMH 1.5, _NET_ACTIVE_WINDOW).
  void activate(xcb_window_t window) {
    constexpr std::uint32_t byPerson = 2;
    connection_.sendToManager(window, "_NET_ACTIVE_WINDOW", {byPerson});
    const bool isActive = eventually([&] {
      return connection_.numbers(connection_.root(), "_NET_ACTIVE_WINDOW") == std::vector{window};
    });
    if (!isActive) {
      throw std::runtime_error("a window did not come to the front");
    }
  }

  PanelOnScreen mirrorRow(std::size_t row, std::size_t panelsAfter) {
    constexpr std::uint32_t betweenClicks = 700;
    const Point at = vistrel_->pickerRows(demoSources.size()).at(row).centre();
    hand_.rest(betweenClicks);
    hand_.clickAt(at, 2);
    return vistrel_->panels(panelsAfter).back();
  }

  const PrivateDisplay display_{{.width = 1440, .height = 900}};
  const XConnection connection_{display_.name()};
  InputDriver hand_{connection_};
  std::vector<std::unique_ptr<ChildProcess>> sources_;
  xcb_window_t newestSource_ = XCB_WINDOW_NONE;
  std::unique_ptr<RunningVistrel> vistrel_;
};

bool show(const std::filesystem::path& picture, const std::string& program) {
  Demo demo;
  bool followed = false;
  try {
    followed = demo.run(program);
  } catch (const std::exception& failure) {
    std::cerr << "The demo failed: " << failure.what() << '\n';
  }
  demo.savePicture(picture);
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
