#include <QCoreApplication>
#include <benchmark/benchmark.h>
#include <string>

#include "platform/linux/qt/menus/ShownMenu.h"
#include "platform/simulated/SimulatedBackend.h"
#include "tests/linux/qt/OffscreenQt.h"

namespace vistrel::bench {
namespace {

using platform::linux_desktop::OffscreenQt;
using platform::linux_desktop::ShownMenu;

class Filler : public platform::MenuDelegate {
 public:
  explicit Filler(int lines) : lines_(lines) {}

  void menuNeedsUpdate(platform::Menu& menu) override {
    menu.removeAllItems();
    for (int i = 0; i < lines_; ++i) {
      // No two fillings have a line in common, as where every title has changed.
      menu.addItem(std::make_shared<platform::MenuItem>("Document " + std::to_string(next_++),
                                                        platform::Action(), ""));
    }
  }

 private:
  const int lines_;
  int next_ = 0;
};

/// A menu of as many windows, without a display: what of its opening is the toolkit's and ours.
class LongMenu {
 public:
  explicit LongMenu(int lines) : filler_(std::make_shared<Filler>(lines)) {
    menu_->setDelegate(filler_);
  }

  void open() {
    shown_.popup({10, 10});
    turnEventLoop();
  }
  void fillAnew() {
    filler_->menuNeedsUpdate(*menu_);
    turnEventLoop();
  }
  void close() {
    shown_.hide();
    turnEventLoop();
  }

 private:
  static void turnEventLoop() {
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
  }

  platform::simulated::SimulatedBackend desktop_;
  const std::shared_ptr<platform::Menu> menu_ = std::make_shared<platform::Menu>("Menu");
  const std::shared_ptr<Filler> filler_;
  ShownMenu shown_{menu_};
};

/// How long a menu of so many lines keeps the main thread until it is on the screen.
void menuOpening(benchmark::State& state) {
  OffscreenQt::start();
  LongMenu menu(static_cast<int>(state.range(0)));
  for (auto iteration : state) {
    menu.open();
    state.PauseTiming();
    menu.close();
    state.ResumeTiming();
  }
}

/// The same while it is open, when all its lines give way to others.
void menuFilledAnew(benchmark::State& state) {
  OffscreenQt::start();
  LongMenu menu(static_cast<int>(state.range(0)));
  menu.open();
  for (auto iteration : state) menu.fillAnew();
}

BENCHMARK(menuOpening)->Arg(20)->Arg(2000)->Iterations(10)->Unit(benchmark::kMillisecond);
BENCHMARK(menuFilledAnew)->Arg(20)->Arg(2000)->Iterations(10)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vistrel::bench
