#include "bench/peers/Soak.h"

#include <algorithm>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "bench/peers/Figures.h"
#include "bench/peers/HeldMemory.h"
#include "tests/desktop/RunningVistrel.h"
#include "tests/support/InputDriver.h"
#include "tests/support/Poll.h"
#include "tests/support/PrivateDisplay.h"
#include "tests/support/ProcessEntries.h"
#include "tests/support/ScreenReader.h"
#include "tests/support/ServerResources.h"
#include "tests/support/TestWindow.h"

namespace vistrel::bench {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using testbed::PanelOnScreen;
using testbed::Rect;
using testbed::TestWindow;

constexpr std::size_t mirrors = 16;

template <class Condition>
void waitUntil(const std::string& what, Condition&& condition) {
  if (!testbed::eventually(condition)) throw std::runtime_error("there is no " + what);
}

/// A session in which a person mirrors windows and closes them again. The newest is closed first:
/// panels cascade, so only its close button is sure to be in sight.
class Soak {
 public:
  Soak() {
    openSource();
    program_ = std::make_unique<testbed::RunningVistrel>(display_, connection_);
    unselected_ = screen_.pixel(behindText(program_->pickerRows(2).front()));
    mirrorFirstRow();
  }

  /// Until there are as many as are wanted.
  void fill() {
    while (mirrors_.size() < mirrors) {
      openSource();
      mirrorFirstRow();
      stir();
    }
  }
  /// Closes some of the newest, at least one, and never all.
  void closeSome() {
    const std::size_t left = 1 + draw(mirrors - 1);
    while (mirrors_.size() > left) {
      close();
      stir();
    }
    // What is gone is on the list until it is made anew.
    refresh();
    waitUntil("marked first row", [&] {
      const auto rows = picker().rows();
      return !rows.empty() && isUnselected(rows.front()) && picker().isMarked(rows.front());
    });
  }

  int opened() const { return opened_; }
  pid_t process() const { return program_->process().pid(); }
  const testbed::XConnection& connection() const { return connection_; }

 private:
  struct Mirror {
    std::unique_ptr<TestWindow> source;
    xcb_window_t panel;
  };

  testbed::PickerOnScreen picker() const { return program_->picker(); }
  std::size_t draw(std::size_t count) { return random_() % count; }
  static testbed::Point behindText(Rect row) { return row.at(0.9, 0.5); }
  bool isUnselected(Rect row) const { return screen_.pixel(behindText(row)) == unselected_; }
  void refresh() { hand_.clickAt(picker().refreshButton()); }

  /// First in the list, whose order is that of titles, and clear of panels and picker.
  void openSource() {
    constexpr int latest = 900'000;
    const int place = opened_ % static_cast<int>(mirrors);
    const Rect area{1700 + place % 4 * 40, place * 100, size.width, size.height};
    opening_ = std::make_unique<TestWindow>(
        display_.name(),
        TestWindow::Options{
            .title = std::to_string(latest - opened_), .area = area, .decorated = false});
    ++opened_;
  }

  void mirrorFirstRow() {
    if (!mirrors_.empty()) refresh();
    std::vector<Rect> rows;
    waitUntil("row of a new source", [&] {
      rows = picker().rows();
      return !rows.empty() && isUnselected(rows.front()) && !picker().isMarked(rows.front());
    });
    hand_.clickAt(rows.front().centre(), 2);
    const auto panels = program_->panels(mirrors_.size() + 1);
    const auto isNew = [&](const PanelOnScreen& panel) {
      return std::ranges::count(mirrors_, panel.id(), &Mirror::panel) == 0;
    };
    const PanelOnScreen panel = *std::ranges::find_if(panels, isNew);
    waitUntil("picture in a new panel", [&] { return panel.shows(testbed::fourColours); });
    mirrors_.push_back({std::move(opening_), panel.id()});
    // The selection stays in its row, where it would hide whether that is marked.
    hand_.clickAt(rows.at(1).centre());
  }

  void close() {
    mirrors_.back().source.reset();
    const PanelOnScreen panel(connection_, mirrors_.back().panel);
    hand_.clickAt(panel.closeButton());
    mirrors_.pop_back();
    program_->panels(mirrors_.size());
  }

  /// One source is resized, and has its size again in the end; all change.
  void stir() {
    TestWindow& resized = *mirrors_[draw(mirrors_.size())].source;
    resized.resize(size.height, size.width);
    for (const Mirror& mirror : mirrors_) {
      mirror.source->paint({10, 10, 100, 100}, {static_cast<std::uint8_t>(draw(256)), 90, 90});
    }
    resized.resize(size.width, size.height);
  }

  static constexpr struct {
    int width;
    int height;
  } size{640, 400};

  const testbed::PrivateDisplay display_{{.width = 2560, .height = 2400}};
  const testbed::XConnection connection_{display_.name()};
  const testbed::ScreenReader screen_{connection_};
  testbed::InputDriver hand_{connection_};
  std::minstd_rand random_{1};
  /// So that there is a second row always.
  const TestWindow last_{display_.name(), {.title = "999999", .area = {1700, 2000, 300, 200}}};
  std::unique_ptr<testbed::RunningVistrel> program_;
  testbed::Rgb unselected_;
  int opened_ = 0;
  std::unique_ptr<TestWindow> opening_;
  std::vector<Mirror> mirrors_;  // newest last
};

}  // namespace

void measureSoak(const std::filesystem::path& folder, std::chrono::duration<double> span) {
  // Longer than panels take to show for the last time what they have shown.
  constexpr auto untilAtRest = 2s;
  Figures figures(folder / "soak.csv", {"seconds", "opened", "client_bytes", "descriptors",
                                        "threads", "server_resources", "server_pixmap_bytes"});
  Soak soak;
  const auto start = Clock::now();
  for (;;) {
    soak.fill();
    std::this_thread::sleep_for(untilAtRest);
    const std::chrono::duration<double> elapsed = Clock::now() - start;
    const auto held = testbed::resourcesOfProcess(soak.connection(), soak.process());
    std::uint64_t resources = 0;
    for (const auto& [type, count] : held.counts) resources += count;
    figures.add({figure(elapsed.count()), std::to_string(soak.opened()),
                 std::to_string(ownBytes(soak.process())),
                 std::to_string(testbed::openDescriptors(soak.process())),
                 std::to_string(testbed::threadCount(soak.process())), std::to_string(resources),
                 std::to_string(held.pixmapBytes)});
    if (elapsed > span) return;
    soak.closeSome();
  }
}

}  // namespace vistrel::bench
