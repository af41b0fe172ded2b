#include "platform/linux/x11/panel/CoveredPanels.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

#include "platform/linux/WindowPlace.h"
#include "platform/linux/XcbRequests.h"
#include "platform/linux/x11/manager/Manager.h"
#include "platform/linux/x11/manager/TopLevel.h"
#include "platform/linux/x11/panel/PanelCover.h"
#include "platform/linux/x11/server/Property.h"

namespace vistrel::platform::linux_desktop {
namespace {

/// Between two looks, in seconds, while panels are dragged: a frame.
constexpr double pause = 1.0 / 30;

/// What managers show a window with (no standard, yet all that can do so read it).
constexpr const char* opacity = "_NET_WM_WINDOW_OPACITY";
constexpr std::uint32_t opaque = 0xFFFFFFFF;

}  // namespace

bool isMarkedCovered(Connection& connection, xcb_window_t panel) {
  return propertyOf(connection, panel, coveredMark).exists();
}

void CoveredPanels::add(xcb_window_t panel) {
  panels_.try_emplace(panel, false);
  followFrameOf(panel);
  lookSoon();
}

void CoveredPanels::followFrameOf(xcb_window_t panel) {
  // A manager that moves a panel moves its frame; the panel gets word by SendEvent alone.
  const auto frame = topLevelOf(connection_, panel);
  if (frame == panel || frame == XCB_NONE) return;
  forgive(connection_.xcb(), connection_.selectEvents(frame, XCB_EVENT_MASK_STRUCTURE_NOTIFY));
}

void CoveredPanels::handle(const xcb_generic_event_t& event) {
  switch (typeOf(event)) {
    case XCB_REPARENT_NOTIFY: {
      const auto window = eventAs<xcb_reparent_notify_event_t>(event).window;
      if (panels_.contains(window)) followFrameOf(window);
      return lookSoon();
    }
    case XCB_CONFIGURE_NOTIFY:
    case XCB_MAP_NOTIFY:
    case XCB_UNMAP_NOTIFY:
      return lookSoon();
    case XCB_DESTROY_NOTIFY:
      panels_.erase(eventAs<xcb_destroy_notify_event_t>(event).window);
      return lookSoon();
    case XCB_PROPERTY_NOTIFY: {
      const auto property = eventAs<xcb_property_notify_event_t>(event).atom;
      if (property == connection_.atom("_NET_CLIENT_LIST_STACKING") ||
          property == connection_.atom(opacity)) {
        lookSoon();
      }
      return;
    }
    default:
      return;
  }
}

void CoveredPanels::lookSoon() {
  if (awaitedLook_) return;
  awaitedLook_ = std::make_shared<const bool>(true);
  queue_.asyncAt(lastLook_ + pause, [this, awaited = std::weak_ptr(awaitedLook_)] {
    if (awaited.lock()) look();
  });
}

void CoveredPanels::look() {
  awaitedLook_.reset();
  lastLook_ = monotonicNow();
  const auto covered = this->covered();
  for (const auto& [panel, isMarked] : panels_) {
    const bool isCovered = std::ranges::count(covered, panel) > 0;
    if (isCovered != isMarked) mark(panel, isCovered);
  }
  connection_.flush();
}

std::vector<xcb_window_t> CoveredPanels::covered() {
  if (panels_.size() < 2 || !isComposited(connection_)) return {};
  const auto shown = shownPanels();
  std::vector<xcb_window_t> candidates;
  for (const auto& each : shown) {
    std::vector<PixelRect> others;
    for (const auto& other : shown) {
      if (other.panel != each.panel) others.push_back(other.frame);
    }
    if (isWhollyUnder(each.frame, others)) candidates.push_back(each.panel);
  }
  // How windows lie costs several questions each.
  if (candidates.empty()) return {};
  std::vector<xcb_window_t> windows;
  std::ranges::transform(shown, std::back_inserter(windows), &Shown::panel);
  std::vector<xcb_window_t> result;
  std::vector<PixelRect> above;
  for (const auto panel : topmostFirst(connection_, windows)) {
    const auto frame = std::ranges::find(shown, panel, &Shown::panel)->frame;
    if (isWhollyUnder(frame, above)) result.push_back(panel);
    if (!isTranslucent(panel)) above.push_back(frame);
  }
  return result;
}

std::vector<CoveredPanels::Shown> CoveredPanels::shownPanels() {
  std::vector<Shown> shown;
  for (const auto& [panel, isMarked] : panels_) {
    if (!isViewable(connection_, panel)) continue;
    const auto frame = placeIn(connection_.xcb(), panel, connection_.root());
    if (frame) shown.push_back({panel, *frame});
  }
  return shown;
}

bool CoveredPanels::isTranslucent(xcb_window_t panel) {
  return propertyOf(connection_, panel, opacity).firstValue().value_or(opaque) != opaque;
}

void CoveredPanels::mark(xcb_window_t panel, bool isCovered) {
  auto* const xcb = connection_.xcb();
  const auto name = connection_.atom(coveredMark);
  constexpr std::uint32_t yes = 1;
  // The toolkit destroys panels on a connection of its own; word of that may be under way.
  forgive(xcb, isCovered ? xcb_change_property_checked(xcb, XCB_PROP_MODE_REPLACE, panel, name,
                                                       XCB_ATOM_CARDINAL, 32, 1, &yes)
                         : xcb_delete_property_checked(xcb, panel, name));
  panels_[panel] = isCovered;
}

}  // namespace vistrel::platform::linux_desktop
