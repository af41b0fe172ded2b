#include "platform/linux/x11/parking/ParkedWindows.h"

#include <cassert>
#include <vector>

#include "platform/linux/CurrentThread.h"
#include "platform/linux/Trace.h"
#include "platform/linux/x11/manager/Manager.h"
#include "platform/linux/x11/manager/PlaceRequest.h"
#include "platform/linux/x11/parking/Sight.h"
#include "platform/linux/x11/server/Property.h"

namespace vistrel::platform::linux_desktop {
namespace {

// The states that a manager derives a window's place and size from (EWMH, _NET_WM_STATE).
constexpr auto horizontally = "_NET_WM_STATE_MAXIMIZED_HORZ";
constexpr auto vertically = "_NET_WM_STATE_MAXIMIZED_VERT";
constexpr auto fullScreen = "_NET_WM_STATE_FULLSCREEN";

// Those that it derives from how high a window lies.
constexpr auto above = "_NET_WM_STATE_ABOVE";
constexpr auto below = "_NET_WM_STATE_BELOW";

constexpr auto sticky = "_NET_WM_STATE_STICKY";

}  // namespace

ParkedWindows::~ParkedWindows() {
  for (const auto& [window, home] : homes_) giveBack(window, home);
}

std::optional<Point> ParkedWindows::positionOf(xcb_window_t window) {
  assert(isMainThread());
  // It may still be on its way to where it was last asked to be.
  awaitManager(connection_);
  const auto place = placeOf(window);
  if (!place) return std::nullopt;
  told_ = {window, pointsOf(*place)};
  trace(TraceTopic::manager,
        [&] { return windowText(window) + " is at " + areaText(place->visible); });
  return told_->second;
}

bool ParkedWindows::move(xcb_window_t window, Point position) {
  assert(isMainThread());
  const auto found = placeOf(window);
  if (!found) {
    trace(TraceTopic::manager, [&] { return windowText(window) + " has gone, and is not moved"; });
    homes_.erase(window);
    return false;
  }
  const auto left = homes_.find(window);
  if (left == homes_.end()) {
    if (position == pointsOf(*found)) return true;
    park(window, homes_.emplace(window, leave(window, *found)).first->second, *found, position);
  } else if (position == left->second.position) {
    giveBack(window, left->second);
    homes_.erase(left);
  } else {
    park(window, left->second, *found, position);
  }
  return true;
}

std::optional<ParkedWindows::Outcome> ParkedWindows::outcomeFor(xcb_window_t window) const {
  const auto left = homes_.find(window);
  return left == homes_.end() ? std::nullopt : std::optional(left->second.outcome);
}

std::optional<FramedWindow> ParkedWindows::placeOf(xcb_window_t window) {
  return FramedWindowRequest(connection_, window, connection_.root()).fetch();
}

Point ParkedWindows::pointsOf(const FramedWindow& place) const {
  return layout_->get()->toPoints(place.visible).origin;
}

ParkedWindows::Home ParkedWindows::leave(xcb_window_t window, const FramedWindow& found) {
  const bool isTold = told_ && told_->first == window;
  Home home{.position = isTold ? told_->second : pointsOf(found),
            .client = found.client,
            .ties = takeOffTies(window),
            .desktop = propertyOf(connection_, window, "_NET_WM_DESKTOP").firstValue(),
            .isSticky = hasState(connection_, window, sticky)};
  if (home.ties != Ties{}) home.client = placeOf(window).value_or(found).client;
  if (home.desktop) setDesktop(window, everyDesktop);
  return home;
}

void ParkedWindows::giveBack(xcb_window_t window, const Home& home) {
  // It may have become full-screen where it is.
  takeOffTies(window);
  const auto place = placeOf(window);
  if (!place) return;
  if (home.outcome != Outcome::outOfSight) putBackUp(window, home);
  requestPlace(connection_, window, home.client, place->decoration);
  putOnTies(window, home.ties);
  if (home.desktop) backToDesktop(window, home);
  connection_.sync();
}

void ParkedWindows::park(xcb_window_t window, Home& home, const FramedWindow& found,
                         Point position) {
  moveTo(window, found, position);
  if (home.desktop) stickWhereLeftBehind(window);
  if (home.outcome == Outcome::outOfSight && isInSight(window)) putBelowOthers(window, home);
}

void ParkedWindows::moveTo(xcb_window_t window, const FramedWindow& found, Point position) {
  const auto layout = layout_->get();
  const Rect wanted{position, layout->toPoints(found.visible).size};
  const PixelRect visible = layout->holding(wanted).toPixels(wanted);
  // What is around the client may have changed with its states.
  const auto place = placeOf(window).value_or(found);
  requestPlace(
      connection_, window,
      {visible.x + place.client.x - place.visible.x, visible.y + place.client.y - place.visible.y,
       found.client.width, found.client.height},
      place.decoration);
}

bool ParkedWindows::isInSight(xcb_window_t window) {
  const auto place = placeOf(window);
  if (!place) return false;
  std::vector<PixelRect> monitors;
  for (const auto& each : layout_->get()->monitors()) monitors.push_back(each.monitor.pixels);
  return linux_desktop::isInSight(place->visible, monitors);
}

void ParkedWindows::putBelowOthers(xcb_window_t window, Home& home) {
  home.layer = {.isAbove = hasState(connection_, window, above),
                .isBelow = hasState(connection_, window, below)};
  if (home.layer.isAbove) setStates(window, false, above, nullptr);
  if (!home.layer.isBelow) setStates(window, true, below, nullptr);
  awaitManager(connection_);
  home.outcome = hasState(connection_, window, below) ? Outcome::belowOthers : Outcome::inSight;
  trace(TraceTopic::manager, [&] {
    return windowText(window) + " is kept in sight" +
           (home.outcome == Outcome::belowOthers ? ", below all others" : "");
  });
}

void ParkedWindows::putBackUp(xcb_window_t window, const Home& home) {
  if (!home.layer.isBelow) setStates(window, false, below, nullptr);
  if (home.layer.isAbove) setStates(window, true, above, nullptr);
}

ParkedWindows::Ties ParkedWindows::takeOffTies(xcb_window_t window) {
  const auto has = [&](std::string_view state) { return hasState(connection_, window, state); };
  Ties ties;
  ties.fullScreen = has(fullScreen);
  if (ties.fullScreen) {
    setStates(window, false, fullScreen, nullptr);
    // openbox 3.6.1 and mutter 43.8 tell only after this what a window was before.
    awaitManager(connection_);
  }
  ties.horizontally = has(horizontally);
  ties.vertically = has(vertically);
  if (ties.horizontally || ties.vertically) {
    setStates(window, false, horizontally, vertically);
    awaitManager(connection_);
  }
  return ties;
}

void ParkedWindows::putOnTies(xcb_window_t window, const Ties& ties) {
  if (ties.horizontally && ties.vertically) {
    // xfwm4 4.18.0 takes two messages in a row for a change of mind.
    setStates(window, true, horizontally, vertically);
  } else if (ties.horizontally || ties.vertically) {
    setStates(window, true, ties.horizontally ? horizontally : vertically, nullptr);
  }
  if (ties.fullScreen) setStates(window, true, fullScreen, nullptr);
}

void ParkedWindows::setStates(xcb_window_t window, bool areOn, const char* state,
                              const char* another) {
  const std::uint32_t second = another ? connection_.atom(another) : xcb_atom_t{XCB_ATOM_NONE};
  tellManager(connection_, window, "_NET_WM_STATE",
              {areOn ? 1U : 0U, connection_.atom(state), second, byPerson, 0});
}

void ParkedWindows::setDesktop(xcb_window_t window, std::uint32_t desktop) {
  tellManager(connection_, window, "_NET_WM_DESKTOP", {desktop, byPerson, 0, 0, 0});
}

void ParkedWindows::stickWhereLeftBehind(xcb_window_t window) {
  // i3 4.22 and bspwm 0.9.10 keep a window on its desktop unless it has this state.
  const auto desktop = propertyOf(connection_, window, "_NET_WM_DESKTOP").firstValue();
  if (desktop == everyDesktop || hasState(connection_, window, sticky)) return;
  setStates(window, true, sticky, nullptr);
}

void ParkedWindows::backToDesktop(xcb_window_t window, const Home& home) {
  // awesome 4.3 goes on showing a window on every desktop that it has once been on, and jwm 2.4.3
  // goes on to say so.
  if (!home.isSticky && hasState(connection_, window, sticky)) {
    setStates(window, false, sticky, nullptr);
  }
  setDesktop(window, *home.desktop);
}

}  // namespace vistrel::platform::linux_desktop
