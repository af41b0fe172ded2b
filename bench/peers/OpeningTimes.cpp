#include "bench/peers/OpeningTimes.h"

#include <chrono>
#include <stdexcept>
#include <string>
#include <thread>

#include "bench/peers/Bed.h"
#include "bench/peers/Figures.h"
#include "tests/desktop/RunningVistrel.h"
#include "tests/support/Poll.h"
#include "tests/support/ScreenReader.h"
#include "tests/support/TestWindow.h"

namespace vistrel::bench {
namespace {

using Clock = std::chrono::steady_clock;

std::string millisecondsSince(Clock::time_point start) {
  return figure(std::chrono::duration<double, std::milli>(Clock::now() - start).count());
}

// Clear of where the first panel opens, whose picture is then the only thing there of this colour.
constexpr testbed::Rect sourceArea{700, 0, Bed::sourceArea.width, Bed::sourceArea.height};
constexpr testbed::Point firstPanel{32, 32};
constexpr testbed::Rgb sourceColour = testbed::green;

/// Looks there often, with pauses: the server answers one after the other, and what it answers here
/// the program waits for. Throws std::runtime_error when the picture does not come.
void awaitPicture(const testbed::ScreenReader& screen) {
  constexpr std::chrono::microseconds betweenLooks{300};
  const testbed::Rect panel = testbed::PanelOnScreen::computedArea(sourceArea, firstPanel);
  const auto deadline = Clock::now() + testbed::generousDeadline;
  while (!similar(screen.pixel(panel.centre()), sourceColour, 6)) {
    if (Clock::now() > deadline) throw std::runtime_error("no mirror opens");
    std::this_thread::sleep_for(betweenLooks);
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
                                      .area = sourceArea,
                                      .picture = testbed::Quadrants::uniform(sourceColour),
                                      .decorated = false});
    const auto start = Clock::now();
    const testbed::RunningVistrel program(bed.display(), bed.connection());
    program.picker();
    const std::string picker = millisecondsSince(start);
    const testbed::Point row = program.pickerRows(1).front().centre();
    const std::string list = millisecondsSince(start);
    // A person reads the list first; what the start leaves to be done is done meanwhile.
    std::this_thread::sleep_for(std::chrono::seconds(1));
    bed.hand().clickAt(row, 2);
    const auto clicked = Clock::now();
    awaitPicture(screen);
    figures.add({std::to_string(round), picker, list, millisecondsSince(clicked)});
  }
}

}  // namespace vistrel::bench
