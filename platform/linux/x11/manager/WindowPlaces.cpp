#include "platform/linux/x11/manager/WindowPlaces.h"

#include <list>
#include <vector>

#include "platform/linux/x11/manager/ClientWindows.h"
#include "platform/linux/x11/manager/Manager.h"
#include "platform/linux/x11/manager/PlaceRequest.h"

namespace vistrel::platform::linux_desktop {
namespace {

std::map<xcb_window_t, FramedWindow> placesOf(Connection& connection,
                                              const std::vector<xcb_window_t>& windows) {
  std::list<FramedWindowRequest> requests;
  for (const auto each : windows) requests.emplace_back(connection, each, connection.root());
  std::map<xcb_window_t, FramedWindow> places;
  auto request = requests.begin();
  for (const auto each : windows) {
    if (const auto place = (request++)->fetch()) places.emplace(each, *place);
  }
  return places;
}

std::vector<xcb_window_t> countedWindows(Connection& connection) {
  auto windows = clientWindows(connection);
  std::erase_if(windows, [&](xcb_window_t each) { return isPartOfDesktop(connection, each); });
  return windows;
}

}  // namespace

WindowPlaces::WindowPlaces(Connection& connection)
    : connection_(connection), places_(placesOf(connection, countedWindows(connection))) {}

void WindowPlaces::restore(double deadline) const {
  for (const auto& [window, place] : displaced()) {
    requestPlace(connection_, window, place.client, place.decoration, deadline);
  }
}

WindowPlaces::Places WindowPlaces::displaced() const {
  std::vector<xcb_window_t> windows;
  windows.reserve(places_.size());
  for (const auto& [window, place] : places_) windows.push_back(window);
  Places displaced;
  for (const auto& [window, place] : placesOf(connection_, windows)) {
    const auto& former = places_.at(window);
    if (place.client != former.client) displaced.emplace(window, former);
  }
  return displaced;
}

}  // namespace vistrel::platform::linux_desktop
