#include "tests/managed/ParkingBed.h"

#include <algorithm>
#include <stdexcept>
#include <utility>
#include <variant>

#include "tests/support/XWindows.h"

namespace vistrel::testbed {
namespace {

using platform::AccessibilityElement;
using platform::accessibilityPosition;
using platform::accessibilityWindows;

}  // namespace

ParkingBed::ParkingBed(const ParkingPlace& place, std::vector<std::string> serverArguments)
    : session_(PrivateDisplay::Options{.windowManager = place.manager,
                                       .server = place.server,
                                       .serverArguments = std::move(serverArguments)}) {
  using platform::linux_desktop::ScreenLayout;
  session_.providers().layout->set(ScreenLayout({{{0, 0, 1280, 1024}, 1}}));
}

std::optional<platform::DisplayID> ParkingBed::makeDisplay(int width, int height) {
  const auto size = [](int points) { return 2 * static_cast<std::uint32_t>(points); };
  const auto server = session_.providers().hiddenDisplays;
  const auto display = server->createDisplay(
      {.name = "Test", .maxPixelsWide = size(width), .maxPixelsHigh = size(height)});
  if (!display) {
    return std::nullopt;
  }
  EXPECT_GT(boundsOf(*display).width, 0) << "before anybody places it";
  EXPECT_TRUE(
      server->applySettings(*display, {.hiDPI = true, .modes = {{size(width), size(height), 60}}}));
  auto& displays = *session_.providers().displays;
  const auto mainBounds = displays.displayBounds(displays.mainDisplayID());
  const auto configuration = displays.beginDisplayConfiguration();
  configuration->configureOrigin(*display, static_cast<std::int32_t>(mainBounds.maxX()), 0);
  configuration->complete(platform::ConfigureOption::forSession);
  return display;
}

void ParkingBed::removeDisplay(platform::DisplayID display) {
  session_.providers().hiddenDisplays->removeDisplay(display);
}

Rect ParkingBed::boundsOf(platform::DisplayID display) {
  const auto bounds = session_.providers().displays->displayBounds(display);
  return {static_cast<int>(bounds.minX()), static_cast<int>(bounds.minY()),
          static_cast<int>(bounds.width()), static_cast<int>(bounds.height())};
}

std::shared_ptr<AccessibilityElement> ParkingBed::elementOf(xcb_window_t window) {
  auto& accessibility = *session_.providers().otherWindows;
  const auto numberOf = accessibility.windowNumberFunctionNamed("_AXUIElementGetWindow");
  const auto record = session_.listed(window, platform::ListedWindows::all);
  if (!record) {
    throw std::runtime_error("a window is not listed");
  }
  const auto application = accessibility.applicationElement(record->owningApplication->processID);
  const auto [error, value] = application->copyAttributeValue(accessibilityWindows);
  if (error != platform::AccessibilityError::success) {
    throw std::runtime_error("a program has no windows that can be reached");
  }
  for (const auto& each : std::get<std::vector<std::shared_ptr<AccessibilityElement>>>(value)) {
    platform::WindowID number = 0;
    if (numberOf(*each, &number) == platform::AccessibilityError::success && number == window) {
      return each;
    }
  }
  throw std::runtime_error("a window has no element");
}

std::optional<platform::Point> ParkingBed::positionOf(AccessibilityElement& element) {
  const auto [error, value] = element.copyAttributeValue(accessibilityPosition);
  const auto* position = std::get_if<platform::AccessibilityValue>(&value);
  return position ? position->point : std::nullopt;
}

platform::AccessibilityError ParkingBed::move(AccessibilityElement& element,
                                              platform::Point position) {
  return element.setAttributeValue(accessibilityPosition, {position});
}

ParkedWindow::ParkedWindow(ParkingBed& bed, xcb_window_t window)
    : bed_(bed), element_(bed.elementOf(window)), home_(ParkingBed::positionOf(*element_)) {
  const Rect area = areaOf(bed.connection(), window).value_or(Rect{});
  display_ = bed.makeDisplay(std::max(area.width, 640), std::max(area.height, 480));
  auto& displays = *bed.session().providers().displays;
  if (display_) {
    const auto bounds = displays.displayBounds(*display_);
    place_ = {bounds.minX() + 8, bounds.minY() + 8};
  } else {
    const auto screen = displays.displayBounds(displays.mainDisplayID());
    place_ = {screen.width() - 40, screen.height() - 40};
  }
  EXPECT_EQ(ParkingBed::move(*element_, place_), platform::AccessibilityError::success);
}

ParkedWindow::~ParkedWindow() {
  if (home_) {
    ParkingBed::move(*element_, *home_);
  }
  if (display_) {
    bed_.removeDisplay(*display_);
  }
}

}  // namespace vistrel::testbed
