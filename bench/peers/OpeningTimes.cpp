#include "bench/peers/OpeningTimes.h"

#include <chrono>
#include <string>

#include "bench/peers/Bed.h"
#include "bench/peers/Figures.h"
#include "tests/desktop/RunningVistrel.h"
#include "tests/support/ScreenReader.h"
#include "tests/support/TestWindow.h"

namespace vistrel::bench {
namespace {

using Clock = std::chrono::steady_clock;

std::string millisecondsSince(Clock::time_point start) {
  return figure(std::chrono::duration<double, std::milli>(Clock::now() - start).count());
}

/// Returns once the middle of the first panel is of that colour.
void awaitPanel(const testbed::RunningVistrel& program, const testbed::ScreenReader& screen,
                testbed::Rgb colour) {
  const testbed::PanelOnScreen panel = program.panels(1).front();
  while (!similar(screen.pixel(panel.contents().centre()), colour, 6)) {
  }
}

}  // namespace

void measureOpeningTimes(const std::filesystem::path& folder, int times) {
  Figures figures(folder / "opening.csv",
                  {"round", "start_to_picker_ms", "start_to_list_ms", "click_to_picture_ms"});
  for (int round = 1; round <= times; ++round) {
    Bed bed(Bed::Compositing::none);
    const testbed::ScreenReader screen(bed.connection());
    const testbed::TestWindow source(bed.display().name(),
                                     {.title = "Source",
                                      .area = Bed::sourceArea,
                                      .picture = testbed::Quadrants::uniform(testbed::green),
                                      .decorated = false});
    const auto start = Clock::now();
    const testbed::RunningVistrel program(bed.display(), bed.connection());
    program.picker();
    const std::string picker = millisecondsSince(start);
    const testbed::Point row = program.pickerRows(1).front().centre();
    const std::string list = millisecondsSince(start);
    bed.hand().clickAt(row, 2);
    const auto clicked = Clock::now();
    awaitPanel(program, screen, testbed::green);
    figures.add({std::to_string(round), picker, list, millisecondsSince(clicked)});
  }
}

}  // namespace vistrel::bench
