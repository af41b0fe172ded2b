#include "parking/VirtualDisplayHost.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace vistrel {

namespace {

/// Points of the smallest window that a display is made for.
constexpr std::int64_t minWidth = 640;
constexpr std::int64_t minHeight = 480;

/// How far left of the main display's edge a display may begin, in points.
constexpr double tolerance = 1.0;

/// Two pixels to a point.
std::int32_t pixelsFor(double points, std::int64_t min) {
  const std::int64_t usable = std::max(platform::truncatedToInt64(points), min);
  return platform::fittingInt32(platform::multipliedExactly(usable, 2));
}

double mainMaxX() { return platform::displayBounds(platform::mainDisplayID()).maxX(); }

}  // namespace

std::unique_ptr<VirtualDisplayHost> VirtualDisplayHost::make(platform::Size pointSize) {
  auto display = VLVirtualDisplay::displayWithWidth(pixelsFor(pointSize.width, minWidth),
                                                    pixelsFor(pointSize.height, minHeight),
                                                    "Vistrel (hidden)");
  if (!display) return nullptr;
  std::unique_ptr<VirtualDisplayHost> host(new VirtualDisplayHost(std::move(display)));
  const platform::Rect& bounds = host->bounds();
  return bounds.width() > 0 && bounds.minX() >= mainMaxX() - tolerance ? std::move(host) : nullptr;
}

VirtualDisplayHost::VirtualDisplayHost(std::unique_ptr<VLVirtualDisplay> display)
    : display_(std::move(display)) {
  arrangeOffToTheSide();
}

void VirtualDisplayHost::arrangeOffToTheSide() {
  if (const auto configuration = platform::beginDisplayConfiguration()) {
    const std::int32_t x = platform::fittingInt32(platform::truncatedToInt64(mainMaxX()));
    configuration->configureOrigin(displayID(), x, 0);
    configuration->complete(platform::ConfigureOption::forSession);
  }
  bounds_ = platform::displayBounds(displayID());
}

}  // namespace vistrel
