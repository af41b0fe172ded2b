#include "platform/linux/x11/parking/ParkingWorker.h"

#include <limits>
#include <sys/socket.h>
#include <vector>

#include "platform/linux/Trace.h"
#include "platform/linux/x11/manager/Manager.h"
#include "platform/linux/x11/manager/PlaceRequest.h"
#include "platform/linux/x11/parking/Guard.h"
#include "platform/linux/x11/parking/Homecoming.h"
#include "platform/linux/x11/parking/Sight.h"
#include "platform/linux/x11/server/FaultPoint.h"
#include "platform/linux/x11/server/PixelGeometry.h"
#include "platform/linux/x11/server/Property.h"

namespace vistrel::platform::linux_desktop {
namespace {

constexpr double asLongAsItTakes = std::numeric_limits<double>::infinity();

/// As far beyond the main screen as a window is parked that no hidden display is left for.
Point cornerOf(const ScreenLayout& layout) {
  constexpr double partInCorner = 40;
  const Rect main = layout.monitors().front().points;
  return {main.maxX() - partInCorner, main.maxY() - partInCorner};
}

}  // namespace

std::optional<ParkingOutcome> ParkingOutcomes::of(xcb_window_t window) const {
  const std::lock_guard lock(mutex_);
  const auto found = outcomes_.find(window);
  return found == outcomes_.end() ? std::nullopt : std::optional(found->second);
}

void ParkingOutcomes::set(xcb_window_t window, ParkingOutcome outcome) {
  const std::lock_guard lock(mutex_);
  outcomes_[window] = outcome;
}

void ParkingOutcomes::erase(xcb_window_t window) {
  const std::lock_guard lock(mutex_);
  outcomes_.erase(window);
}

void ParkingOutcomes::clear() {
  const std::lock_guard lock(mutex_);
  outcomes_.clear();
}

std::optional<Point> ParkingWorker::positionOf(xcb_window_t window) {
  if (!isConnected()) return std::nullopt;
  // It may still be on its way to where it was last asked to be.
  awaitManagerUntil(*connection_, asLongAsItTakes);
  const auto place = placeOf(window);
  if (!place) return std::nullopt;
  trace(TraceTopic::manager,
        [&] { return windowText(window) + " is at " + areaText(place->visible); });
  return pointsOf(*place);
}

void ParkingWorker::move(xcb_window_t window, Point position, std::optional<Point> toldHome) {
  if (!isConnected()) return;
  resting_.erase(window);
  const auto found = placeOf(window);
  auto parked = homes_.find(window);
  if (!found || (parked != homes_.end() && !isRecordedHere(window))) {
    trace(TraceTopic::manager, [&] { return windowText(window) + " has gone, and is not moved"; });
    if (parked != homes_.end()) homes_.erase(parked);
    outcomes_->erase(window);
  } else if (parked != homes_.end() && position == parked->second.position) {
    sendHome(parked);
  } else if (parked == homes_.end() && (position == pointsOf(*found) || isSomebodyElses(window))) {
    outcomes_->erase(window);
  } else {
    if (parked == homes_.end()) {
      own();
      parked = homes_.emplace(window, leave(window, *found, toldHome)).first;
    }
    park(window, parked->second, *found, position);
  }
  disownWhereNoneIsLeft();
}

void ParkingWorker::sendAllHome() {
  if (!isConnected()) return;
  forgetThoseGone();
  while (!homes_.empty() && !connection_->isLost()) {
    const auto each = homes_.begin();
    resting_[each->first] = each->second.parked;
    sendHome(each);
  }
  disownWhereNoneIsLeft();
}

void ParkingWorker::parkAgain() {
  const auto resting = std::exchange(resting_, {});
  for (const auto& [window, position] : resting) move(window, position, std::nullopt);
}

void ParkingWorker::follow(const PixelRect& from, const PixelRect& to) {
  if (!isConnected()) return;
  forgetThoseGone();
  for (auto& [window, home] : homes_) {
    const auto place = placeOf(window);
    if (!place || isEmpty(intersection(home.asked, from))) continue;
    if (isEmpty(to)) {
      park(window, home, *place, cornerOf(*layout_->get()));
    } else {
      moveTo(window, home, moved(home.asked, to.x - from.x, to.y - from.y));
      home.parked = layout_->get()->toPoints(home.asked).origin;
    }
  }
}

void ParkingWorker::abandon() {
  const std::lock_guard lock(mutex_);
  isAbandoned_ = true;
  // Whoever waits on it finds it lost.
  if (descriptor_ >= 0) shutdown(descriptor_, SHUT_RDWR);
}

bool ParkingWorker::isConnected() {
  if (connection_ && !connection_->isLost()) return true;
  const std::lock_guard lock(mutex_);
  descriptor_ = -1;
  owner_.reset();
  homes_.clear();
  outcomes_->clear();
  connection_ = isAbandoned_ ? nullptr : Connection::open();
  if (connection_) descriptor_ = connection_->descriptor();
  return connection_ != nullptr;
}

std::optional<FramedWindow> ParkingWorker::placeOf(xcb_window_t window) {
  return FramedWindowRequest(*connection_, window, connection_->root()).fetch();
}

Point ParkingWorker::pointsOf(const FramedWindow& place) const {
  return layout_->get()->toPoints(place.visible).origin;
}

bool ParkingWorker::isSomebodyElses(xcb_window_t window) {
  const auto record = readRecord(*connection_, window);
  if (!record) return false;
  if (!isAlive(*connection_, record->owner)) bringAbandonedHome(*connection_, asLongAsItTakes);
  return readRecord(*connection_, window).has_value();
}

bool ParkingWorker::isRecordedHere(xcb_window_t window) {
  const auto record = readRecord(*connection_, window);
  return record && owner_ && record->owner == owner_->id();
}

void ParkingWorker::forgetThoseGone() {
  std::erase_if(homes_, [this](const auto& each) {
    const auto window = each.first;
    if (isRecordedHere(window)) return false;
    outcomes_->erase(window);
    return true;
  });
}

ParkingWorker::Home ParkingWorker::leave(xcb_window_t window, const FramedWindow& found,
                                         std::optional<Point> toldHome) {
  Home home{.position = toldHome.value_or(pointsOf(found)),
            .parked = {},
            .record = {.owner = owner_->id(),
                       .ties = tiesOf(*connection_, window),
                       .desktop = propertyOf(*connection_, window, "_NET_WM_DESKTOP").firstValue(),
                       .isSticky = hasState(*connection_, window, stickyState)}};
  untie(window, home.record, found);
  if (home.record.desktop) setDesktop(*connection_, window, everyDesktop);
  VISTREL_FAULT_POINT(*connection_, "park: on every desktop");
  return home;
}

void ParkingWorker::untie(xcb_window_t window, ParkingRecord& record, const FramedWindow& found) {
  if (record.ties == Ties{}) {
    record.client = found.client;
    writeRecord(*connection_, window, record);
    VISTREL_FAULT_POINT(*connection_, "park: recorded");
    return;
  }
  writeRecord(*connection_, window, record);
  VISTREL_FAULT_POINT(*connection_, "park: ties recorded");
  if (record.ties.fullScreen) {
    setState(*connection_, window, false, fullScreenState);
    VISTREL_FAULT_POINT(*connection_, "park: no longer full-screen");
    // openbox 3.6.1 and mutter 43.8 tell only after this what a window was before.
    awaitManagerUntil(*connection_, asLongAsItTakes);
    record.ties = tiesOf(*connection_, window);
    record.ties.fullScreen = true;
    writeRecord(*connection_, window, record);
    VISTREL_FAULT_POINT(*connection_, "park: further ties recorded");
  }
  if (record.ties.horizontally || record.ties.vertically) {
    takeOffMaximised(*connection_, window);
    VISTREL_FAULT_POINT(*connection_, "park: no longer maximised");
    awaitManagerUntil(*connection_, asLongAsItTakes);
  }
  record.client = placeOf(window).value_or(found).client;
  writeRecord(*connection_, window, record);
  VISTREL_FAULT_POINT(*connection_, "park: free place recorded");
}

void ParkingWorker::park(xcb_window_t window, Home& home, const FramedWindow& found,
                         Point position) {
  home.parked = position;
  moveTo(window, home, clientAt(window, found, position));
  VISTREL_FAULT_POINT(*connection_, "park: moved");
  if (home.record.desktop) stickWhereLeftBehind(window);
  if (!home.record.layer && isInSight(window)) home.outcome = putBelowOthers(window, home);
  outcomes_->set(window, home.outcome);
  VISTREL_FAULT_POINT(*connection_, "park: parked");
}

PixelRect ParkingWorker::clientAt(xcb_window_t window, const FramedWindow& found, Point position) {
  const auto layout = layout_->get();
  const Rect wanted{position, layout->toPoints(found.visible).size};
  const PixelRect visible = layout->holding(wanted).toPixels(wanted);
  // What is around the client may have changed with its states.
  const auto place = placeOf(window).value_or(found);
  return {visible.x + place.client.x - place.visible.x,
          visible.y + place.client.y - place.visible.y, found.client.width, found.client.height};
}

void ParkingWorker::moveTo(xcb_window_t window, Home& home, const PixelRect& client) {
  home.asked = client;
  const auto place = placeOf(window);
  if (place) {
    requestPlace(*connection_, window, client, place->decoration, asLongAsItTakes);
  }
}

void ParkingWorker::stickWhereLeftBehind(xcb_window_t window) {
  // i3 4.22 and bspwm 0.9.10 keep a window on its desktop unless it has this state.
  const auto desktop = propertyOf(*connection_, window, "_NET_WM_DESKTOP").firstValue();
  if (desktop == everyDesktop || hasState(*connection_, window, stickyState)) return;
  setState(*connection_, window, true, stickyState);
  VISTREL_FAULT_POINT(*connection_, "park: sticky");
}

bool ParkingWorker::isInSight(xcb_window_t window) {
  const auto place = placeOf(window);
  if (!place) return false;
  std::vector<PixelRect> monitors;
  for (const auto& each : layout_->get()->monitors()) monitors.push_back(each.monitor.pixels);
  return linux_desktop::isInSight(place->visible, monitors);
}

ParkingOutcome ParkingWorker::putBelowOthers(xcb_window_t window, Home& home) {
  auto& layer = home.record.layer.emplace();
  layer = {.isAbove = hasState(*connection_, window, aboveState),
           .isBelow = hasState(*connection_, window, belowState)};
  writeRecord(*connection_, window, home.record);
  VISTREL_FAULT_POINT(*connection_, "park: layer recorded");
  if (layer.isAbove) setState(*connection_, window, false, aboveState);
  if (!layer.isBelow) setState(*connection_, window, true, belowState);
  VISTREL_FAULT_POINT(*connection_, "park: below others");
  awaitManagerUntil(*connection_, asLongAsItTakes);
  const bool isBelow = hasState(*connection_, window, belowState);
  trace(TraceTopic::manager, [&] {
    return windowText(window) + " is kept in sight" + (isBelow ? ", below all others" : "");
  });
  return isBelow ? ParkingOutcome::belowOthers : ParkingOutcome::inSight;
}

void ParkingWorker::sendHome(std::map<xcb_window_t, Home>::iterator parked) {
  const auto [window, home] = *parked;
  homes_.erase(parked);
  bringHome(*connection_, window, home.record, asLongAsItTakes);
  outcomes_->erase(window);
}

void ParkingWorker::own() {
  if (owner_) return;
  owner_.emplace(*connection_);
  // For the guard to find.
  connection_->sync();
  startGuard(owner_->id());
  VISTREL_FAULT_POINT(*connection_, "park: guard started");
}

void ParkingWorker::disownWhereNoneIsLeft() {
  if (!homes_.empty() || !owner_) return;
  owner_.reset();
  connection_->sync();
}

}  // namespace vistrel::platform::linux_desktop
