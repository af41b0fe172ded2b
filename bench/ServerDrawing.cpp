#include <benchmark/benchmark.h>
#include <functional>

#include "bench/ProcessorTime.h"
#include "platform/linux/x11/picture/MipChain.h"
#include "tests/support/PrivateDisplay.h"

namespace vistrel::bench {
namespace {

using namespace platform::linux_desktop;
using platform::Color;

constexpr PixelSize window{1900, 1020};
constexpr PixelSize half{950, 510};
constexpr PixelSize panel{520, 279};

/// Canvases in a display server of their own.
struct Canvases {
  const testbed::PrivateDisplay display{{.windowManager = testbed::WindowManager::none}};
  const std::unique_ptr<Connection> connection = [this] {
    display.adoptEnvironment();
    return Connection::open();
  }();
  Canvas ofWindow = canvas(window);
  Canvas another = canvas(window);
  Canvas ofHalf = canvas(half);
  Canvas ofPanel = canvas(panel);
  Canvas sample = canvas(panel);
  const Picture opacity = makeSolid(*connection, Color::black(0.5));

  Canvas canvas(PixelSize size) {
    auto made = makeOpaqueCanvas(*connection, size).value();
    fill(*connection, made.picture, Color::white(), rectOf(size));
    return made;
  }
};

using Drawing = void (*)(Canvases&);

void copyAWindow(Canvases& on) {
  copyUnscaled(*on.connection, XCB_RENDER_PICT_OP_SRC, on.ofWindow.picture, on.another.picture,
               rectOf(window));
}

void halveAWindow(Canvases& on) {
  drawScaled(*on.connection, on.ofWindow.picture, halving, on.ofHalf.picture, rectOf(half));
}

void drawAPanelFromAHalf(Canvases& on) {
  drawScaled(*on.connection, on.ofHalf.picture,
             samplingInto(rectOf(panel), half.width, half.height), on.ofPanel.picture,
             rectOf(panel));
}

void blendTwoSamples(Canvases& on) {
  blendUnscaled(*on.connection, on.sample.picture, on.opacity, on.ofPanel.picture, rectOf(panel));
}

/// Milliseconds of the display server's processor time for one such drawing.
void serverDrawing(benchmark::State& state, Drawing draw) {
  constexpr int times = 50;
  Canvases canvases;
  const auto drawAll = [&] {
    for (int i = 0; i < times; ++i) {
      draw(canvases);
      canvases.connection->sync();
    }
  };
  drawAll();
  for (auto iteration : state) {
    const double before = processorSeconds(canvases.display.serverPid());
    drawAll();
    const double spent = processorSeconds(canvases.display.serverPid()) - before;
    state.counters["server_ms"] = spent / times * 1000;
  }
}

void few(benchmark::internal::Benchmark* benchmark) { benchmark->Iterations(10); }

BENCHMARK_CAPTURE(serverDrawing, copyAWindow, copyAWindow)->Apply(few);
BENCHMARK_CAPTURE(serverDrawing, halveAWindow, halveAWindow)->Apply(few);
BENCHMARK_CAPTURE(serverDrawing, drawAPanelFromAHalf, drawAPanelFromAHalf)->Apply(few);
BENCHMARK_CAPTURE(serverDrawing, blendTwoSamples, blendTwoSamples)->Apply(few);

}  // namespace
}  // namespace vistrel::bench
