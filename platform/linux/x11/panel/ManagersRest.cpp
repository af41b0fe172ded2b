#include "platform/linux/x11/panel/ManagersRest.h"

#include <utility>

#include "platform/linux/x11/server/UnseenWindow.h"

namespace vistrel::platform::linux_desktop {
namespace {

/// Managers do what belongs together within milliseconds.
constexpr double rest = 0.1;
constexpr std::uint32_t mostDisturbances = 10000;
/// The width that is asked for after so many of them; the window starts smaller.
std::uint32_t widthAfter(std::uint32_t disturbances) { return 2 + disturbances; }

}  // namespace

ManagersRest::ManagersRest(SerialQueue& queue, Connection& connection, std::function<void()> atRest)
    : queue_(queue),
      connection_(connection),
      atRest_(std::move(atRest)),
      window_(makeUnseenWindow(connection, XCB_EVENT_MASK_STRUCTURE_NOTIFY)) {}

void ManagersRest::disturb() {
  const std::uint32_t disturbance = (*disturbances_ + 1) % mostDisturbances;
  *disturbances_ = disturbance;
  queue_.asyncAt(monotonicNow() + rest, [this, disturbance, weak = std::weak_ptr(disturbances_)] {
    const auto latest = weak.lock();
    if (latest && *latest == disturbance) ask();
  });
}

void ManagersRest::handle(const xcb_configure_notify_event_t& event) {
  if (event.window == window_.id() && event.width == widthAfter(*disturbances_)) atRest_();
}

void ManagersRest::ask() {
  const std::uint32_t width = widthAfter(*disturbances_);
  xcb_configure_window(connection_.xcb(), window_.id(), XCB_CONFIG_WINDOW_WIDTH, &width);
  connection_.flush();
}

}  // namespace vistrel::platform::linux_desktop
