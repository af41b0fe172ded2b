#include <benchmark/benchmark.h>
#include <stdexcept>
#include <string>
#include <unistd.h>

#include "platform/linux/x11/listing/WindowList.h"
#include "tests/support/Poll.h"
#include "tests/support/PrivateDisplay.h"
#include "tests/support/XConnection.h"

namespace vistrel::bench {
namespace {

using namespace platform::linux_desktop;

/// A desktop under openbox with so many windows of one program, all with names of their own.
class FullDesktop {
 public:
  explicit FullDesktop(std::size_t windows) : program_(display_.name()) {
    display_.adoptEnvironment();
    for (std::size_t i = 0; i < windows; ++i) open(i);
    program_.sync();
    const auto areManaged = [&] {
      return program_.numbers(program_.root(), "_NET_CLIENT_LIST").size() == windows;
    };
    if (!testbed::eventually(areManaged)) throw std::runtime_error("windows are not managed");
  }

 private:
  void open(std::size_t number) {
    const auto window = xcb_generate_id(program_.get());
    const auto place = static_cast<std::int16_t>(number % 500);
    xcb_create_window(program_.get(), XCB_COPY_FROM_PARENT, window, program_.root(), place, place,
                      300, 200, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    program_.setText(window, "_NET_WM_NAME", program_.atom("UTF8_STRING"),
                     "Document " + std::to_string(number));
    program_.setText(window, "WM_CLASS", XCB_ATOM_STRING, std::string("editor\0Editor\0", 14));
    program_.setNumbers(window, "_NET_WM_PID", XCB_ATOM_CARDINAL,
                        {static_cast<std::uint32_t>(getpid())});
    xcb_map_window(program_.get(), window);
  }

  const testbed::PrivateDisplay display_;
  const testbed::XConnection program_;
};

/// How long the list of all windows takes, as a refresh of the picker asks for it.
void windowListing(benchmark::State& state) {
  const auto windows = static_cast<std::size_t>(state.range(0));
  const FullDesktop desktop(windows);
  const auto connection = Connection::open();
  ApplicationNames names;
  for (auto iteration : state) {
    const auto content =
        listWindows(*connection, names, ScreenLayout(), platform::DesktopWindows::excluded,
                    platform::ListedWindows::onScreen);
    if (content->windows.size() != windows) state.SkipWithError("windows are missing");
  }
}

BENCHMARK(windowListing)->Arg(100)->Arg(1000)->Iterations(20)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vistrel::bench
