// vistrel-parks WINDOW DEED...: a program that parks another's window and ends in whatever way its
// test likes. DEED is "park", "restore" or "pause", which waits for a signal. WINDOW belongs to the
// process that has started this one. Writes a line for each deed done, and for each step on the
// way. VISTREL_FAULT_AT is the number of the step at which the program is killed; the first is 1.

#include <algorithm>
#include <atomic>
#include <charconv>
#include <csignal>
#include <cstdlib>
#include <string>
#include <string_view>
#include <unistd.h>
#include <variant>

#include "platform/AccessibilityElement.h"
#include "platform/linux/Environment.h"
#include "platform/linux/SerialQueue.h"
#include "platform/linux/x11/X11Session.h"
#include "platform/linux/x11/server/FaultPoint.h"

namespace vistrel::platform::linux_desktop {
namespace {

void say(std::string_view what) {
  const std::string line = std::string(what) + '\n';
  static_cast<void>(write(STDOUT_FILENO, line.data(), line.size()));
}

std::uint32_t numberIn(std::string_view text) {
  std::uint32_t number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

}  // namespace

void passFaultPoint(Connection& connection, std::string_view name) {
  static const std::uint32_t last = numberIn(environmentVariable("VISTREL_FAULT_AT"));
  static std::atomic<std::uint32_t> passed = 0;
  connection.sync();
  say("step: " + std::string(name));
  if (++passed == last) kill(getpid(), SIGKILL);
}

namespace {

/// A window, and where it is kept awake.
class Source {
 public:
  Source(Session& session, xcb_window_t window) : session_(session) {
    const auto numberOf = session.otherWindows->windowNumberFunctionNamed("_AXUIElementGetWindow");
    const auto application = session.otherWindows->applicationElement(getppid());
    const auto [error, value] = application->copyAttributeValue(accessibilityWindows);
    using Elements = std::vector<std::shared_ptr<AccessibilityElement>>;
    for (const auto& each : std::get<Elements>(value)) {
      WindowID number = 0;
      numberOf(*each, &number);
      if (number == window) element_ = each;
    }
  }

  void park() {
    const auto [error, position] = element_->copyAttributeValue(accessibilityPosition);
    home_ = std::get<AccessibilityValue>(position);
    auto& displays = *session_.displays;
    display_ = session_.hiddenDisplays->createDisplay(
        {.name = "Test", .maxPixelsWide = 2560, .maxPixelsHigh = 2048});
    const Point corner{1280 - 40, 1024 - 40};
    const Point place = display_ ? Point{displays.displayBounds(*display_).minX() + 8, 8} : corner;
    element_->setAttributeValue(accessibilityPosition, {place});
  }

  void restore() {
    element_->setAttributeValue(accessibilityPosition, home_);
    if (display_) session_.hiddenDisplays->removeDisplay(*display_);
  }

 private:
  Session& session_;
  std::shared_ptr<AccessibilityElement> element_;
  AccessibilityValue home_;
  std::optional<DisplayID> display_;
};

int run(int argc, char** argv) {
  if (argc < 3) return 2;
  const auto session = openX11Session(Instances::any).session;
  if (!session) return 1;
  session->layout->set(ScreenLayout({{{0, 0, 1280, 1024}, 1}}));
  Source source(*session, numberIn(argv[1]));
  for (const std::string_view deed : std::vector<std::string_view>(argv + 2, argv + argc)) {
    if (deed == "park") source.park();
    if (deed == "restore") source.restore();
    say(deed);
    if (deed == "pause") pause();
  }
  session->parkedSources->leaveHomeFirst();
  shutDownSerialQueues();
  return 0;
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop

int main(int argc, char** argv) { return vistrel::platform::linux_desktop::run(argc, argv); }
