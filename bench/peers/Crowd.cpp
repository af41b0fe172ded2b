#include "bench/peers/Crowd.h"

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "bench/DrawnFrames.h"
#include "bench/MirroredSession.h"
#include "bench/ProcessorTime.h"
#include "bench/peers/Figures.h"

namespace vistrel::bench {
namespace {

using Clock = std::chrono::steady_clock;
using testbed::Rect;
using testbed::TestWindow;

/// Side by side, so that all of each is drawn also where nobody mirrors it.
std::vector<Rect> places(int count) {
  constexpr int columns = 4;
  constexpr int width = 640;
  constexpr int height = 400;
  std::vector<Rect> result;
  for (int i = 0; i < count; ++i) {
    result.push_back({i % columns * width, i / columns * height, width, height});
  }
  return result;
}

/// Returns how many seconds that has taken.
double repaint(const std::vector<TestWindow*>& sources, std::chrono::duration<double> span) {
  constexpr std::chrono::duration<double> interval{1.0 / 30};
  const auto start = Clock::now();
  for (int frame = 1; Clock::now() - start < span; ++frame) {
    const auto shade = static_cast<std::uint8_t>(80 + frame * 7 % 160);
    for (TestWindow* source : sources) {
      const Rect area = source->area();
      source->paint({0, 0, area.width, area.height}, {shade, shade, 120});
    }
    std::this_thread::sleep_until(start + frame * interval);
  }
  return std::chrono::duration<double>(Clock::now() - start).count();
}

class Rows {
 public:
  Rows(const std::filesystem::path& folder, std::chrono::duration<double> span)
      : figures_(folder / "crowd.csv",
                 {"sources", "mirrored", "client_ms_per_s", "server_ms_per_s", "shown_per_s"}),
        span_(span) {}

  void addAlone(int count) {
    const testbed::PrivateDisplay display({.width = 2560, .height = 2400});
    std::vector<std::unique_ptr<TestWindow>> windows;
    std::vector<TestWindow*> sources;
    for (const Rect& area : places(count)) {
      windows.push_back(std::make_unique<TestWindow>(
          display.name(), TestWindow::Options{.area = area, .decorated = false}));
      sources.push_back(windows.back().get());
    }
    const double server = processorSeconds(display.serverPid());
    const double elapsed = repaint(sources, span_);
    figures_.add({std::to_string(count), "no", "0",
                  figure((processorSeconds(display.serverPid()) - server) / elapsed * 1000), "0"});
  }

  void addMirrored(int count) {
    MirroredSession session(places(count));
    std::vector<TestWindow*> sources;
    // Each reads events of its own.
    std::vector<std::unique_ptr<testbed::XConnection>> connections;
    std::vector<std::unique_ptr<DrawnFrames>> shown;
    for (std::size_t i = 0; i < session.size(); ++i) {
      sources.push_back(&session.source(i));
      connections.push_back(std::make_unique<testbed::XConnection>(session.displayName()));
      shown.push_back(std::make_unique<DrawnFrames>(*connections.back(), session.panel(i).id()));
    }
    const double client = session.clientSeconds();
    const double server = session.serverSeconds();
    const double elapsed = repaint(sources, span_);
    const double clientAfter = session.clientSeconds();
    const double serverAfter = session.serverSeconds();
    int frames = 0;
    for (const auto& panel : shown) frames += panel->count();
    figures_.add({std::to_string(count), "yes", figure((clientAfter - client) / elapsed * 1000),
                  figure((serverAfter - server) / elapsed * 1000), figure(frames / elapsed)});
  }

 private:
  Figures figures_;
  std::chrono::duration<double> span_;
};

}  // namespace

void measureCrowd(const std::filesystem::path& folder, std::chrono::duration<double> span) {
  Rows rows(folder, span);
  for (const int sources : {1, 16}) {
    rows.addAlone(sources);
    rows.addMirrored(sources);
  }
}

}  // namespace vistrel::bench
