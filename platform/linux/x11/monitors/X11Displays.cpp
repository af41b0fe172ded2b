#include "platform/linux/x11/monitors/X11Displays.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "platform/linux/Trace.h"

namespace vistrel::platform::linux_desktop {
namespace {

constexpr double pixelsPerPointOfHiDPI = 2;

}  // namespace

std::optional<DisplayID> X11VirtualDisplays::createDisplay(
    const VirtualDisplayDescriptor& descriptor) {
  const auto size = sizeOnRoot(descriptor.maxPixelsWide, descriptor.maxPixelsHigh, true);
  if (!size) return std::nullopt;
  auto monitor = HiddenMonitor::make(*size, command_->get());
  if (!monitor) return std::nullopt;
  const DisplayID id = monitor->id();
  monitors_[id] = std::move(monitor);
  return id;
}

bool X11VirtualDisplays::applySettings(DisplayID display, const VirtualDisplaySettings& settings) {
  const auto found = monitors_.find(display);
  if (found == monitors_.end() || settings.modes.empty()) return false;
  const auto& mode = settings.modes.front();
  const auto size = sizeOnRoot(mode.width, mode.height, settings.hiDPI);
  if (!size) return false;
  const PixelRect now = found->second->area();
  return found->second->place({now.x, now.y, size->width, size->height});
}

void X11VirtualDisplays::place(DisplayID display, int x, int y) {
  const auto found = monitors_.find(display);
  if (found == monitors_.end()) return;
  const PixelRect now = found->second->area();
  found->second->place({x, y, now.width, now.height});
}

std::vector<HiddenMonitor::Move> X11VirtualDisplays::getOutOfTheWay() {
  std::vector<HiddenMonitor::Move> moves;
  for (const auto& [display, monitor] : monitors_) {
    if (const auto move = monitor->getOutOfTheWay()) moves.push_back(*move);
  }
  return moves;
}

std::optional<PixelSize> X11VirtualDisplays::sizeOnRoot(std::uint32_t width, std::uint32_t height,
                                                        bool hiDPI) const {
  constexpr double largest = std::numeric_limits<std::int16_t>::max();
  const double scale = layout_->get()->monitors().front().monitor.pixelsPerPoint /
                       (hiDPI ? pixelsPerPointOfHiDPI : 1);
  const double across = std::round(width * scale);
  const double down = std::round(height * scale);
  if (across < 1 || down < 1 || across > largest || down > largest) {
    trace(TraceTopic::monitors, [&] {
      return "hidden monitor refused: no screen holds " + std::to_string(width) + "x" +
             std::to_string(height) + " points";
    });
    return std::nullopt;
  }
  return PixelSize{static_cast<int>(across), static_cast<int>(down)};
}

/// Takes effect when it is completed.
class X11Displays::Configuration final : public DisplayConfiguration {
 public:
  explicit Configuration(X11Displays& displays) : displays_(displays) {}

  void configureOrigin(DisplayID display, std::int32_t x, std::int32_t y) override {
    origins_[display] = {static_cast<double>(x), static_cast<double>(y)};
  }

  // Nothing outlasts the session here, whatever the option.
  void complete(ConfigureOption /*option*/) override {
    const LaidOutMonitor main = displays_.layout_->get()->monitors().front();
    for (const auto& [display, origin] : origins_) {
      const PixelRect pixels = main.toPixels({origin, {}});
      displays_.virtuals_->place(display, pixels.x, pixels.y);
    }
  }

 private:
  X11Displays& displays_;
  std::map<DisplayID, Point> origins_;
};

X11Displays::X11Displays(std::shared_ptr<Connection> connection,
                         std::shared_ptr<const SharedScreenLayout> layout,
                         std::shared_ptr<X11VirtualDisplays> virtuals)
    : connection_(std::move(connection)),
      layout_(std::move(layout)),
      virtuals_(std::move(virtuals)),
      hasMonitors_(offersMonitors(*connection_)) {}

DisplayID X11Displays::mainDisplayID() {
  const auto all = displays();
  return all.empty() ? DisplayID{0} : all.front().id;
}

Rect X11Displays::displayBounds(DisplayID display) {
  const auto all = displays();
  const auto found = std::find_if(all.begin(), all.end(),
                                  [&](const ListedMonitor& each) { return each.id == display; });
  return found == all.end() ? Rect{} : layout_->get()->toPoints(found->area);
}

std::uint32_t X11Displays::onlineDisplayCount() {
  return static_cast<std::uint32_t>(displays().size());
}

std::unique_ptr<DisplayConfiguration> X11Displays::beginDisplayConfiguration() {
  return std::make_unique<Configuration>(*this);
}

std::vector<ListedMonitor> X11Displays::displays() {
  if (hasMonitors_) return monitorsOf(*connection_);
  const auto root = replyTo<xcb_get_geometry_reply>(
      connection_->xcb(), xcb_get_geometry(connection_->xcb(), connection_->root()));
  if (!root) return {};
  return {{connection_->root(), {}, {0, 0, root->width, root->height}, true, XCB_NONE}};
}

}  // namespace vistrel::platform::linux_desktop
