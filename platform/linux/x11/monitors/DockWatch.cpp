#include "platform/linux/x11/monitors/DockWatch.h"

#include <algorithm>
#include <array>
#include <list>
#include <utility>

#include "platform/linux/Trace.h"
#include "platform/linux/WindowPlace.h"
#include "platform/linux/x11/manager/TopLevel.h"
#include "platform/linux/x11/server/Property.h"
#include "platform/linux/x11/server/ServedConnection.h"

namespace vistrel::platform::linux_desktop {
namespace {

constexpr std::array rootProperties{"_NET_CLIENT_LIST", "_NET_WORKAREA", "_NET_CURRENT_DESKTOP"};
constexpr std::array clientProperties{"_NET_WM_STRUT_PARTIAL", "_NET_WM_STRUT"};

constexpr std::uint32_t rootEvents =
    XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;

/// Without a manager there are none: it is the manager that keeps the docks' room free.
std::set<xcb_window_t> managedClients(Connection& connection) {
  const auto list = propertyOf(connection, connection.root(), "_NET_CLIENT_LIST").values();
  std::set<xcb_window_t> clients(list.begin(), list.end());
  clients.erase(connection.root());  // any client can write into the list
  return clients;
}

struct StrutQuery {
  StrutQuery(Connection& connection, xcb_window_t client)
      : window(client),
        partial(connection, client, "_NET_WM_STRUT_PARTIAL"),
        whole(connection, client, "_NET_WM_STRUT") {}

  xcb_window_t window;
  PropertyRequest partial;
  PropertyRequest whole;
};

}  // namespace

std::shared_ptr<DockWatch> DockWatch::on(const std::shared_ptr<SerialQueue>& queue,
                                         std::function<void()> changed) {
  auto connection = Connection::open();
  if (!connection) return nullptr;
  std::shared_ptr<DockWatch> docks(new DockWatch(std::move(connection), std::move(changed)));
  queue->async([queue = queue.get(), docks] {
    serveOn(*queue, *docks->connection_, [docks] { docks->serve(); });
  });
  return docks;
}

DockWatch::DockWatch(std::unique_ptr<Connection> connection, std::function<void()> changed)
    : connection_(std::move(connection)), changed_(std::move(changed)) {
  forgive(connection_->xcb(), connection_->selectEvents(connection_->root(), rootEvents));
  reservations_ = read();
}

Reservations DockWatch::reservations() const {
  const std::lock_guard lock(mutex_);
  return reservations_;
}

void DockWatch::serve() {
  connection_->serve([this](const xcb_generic_event_t& event) { handle(event); },
                     [this] {
                       if (std::exchange(isStale_, false)) refresh();
                     });
}

void DockWatch::handle(const xcb_generic_event_t& event) {
  // All others come from windows whose place counts: the root, docks, their frames.
  isStale_ = isStale_ || typeOf(event) != XCB_PROPERTY_NOTIFY ||
             isAboutRoom(eventAs<xcb_property_notify_event_t>(event));
}

bool DockWatch::isAboutRoom(const xcb_property_notify_event_t& event) {
  const auto isIt = [&](const char* name) { return event.atom == connection_->atom(name); };
  return event.window == connection_->root()
             ? std::any_of(rootProperties.begin(), rootProperties.end(), isIt)
             : std::any_of(clientProperties.begin(), clientProperties.end(), isIt);
}

void DockWatch::refresh() {
  auto current = read();
  if (current == reservations()) return;
  trace(TraceTopic::monitors, [&] {
    return "docks that keep room free: " + std::to_string(current.docks.size()) + "; work area " +
           (current.workArea ? areaText(*current.workArea) : "unknown");
  });
  {
    const std::lock_guard lock(mutex_);
    reservations_ = std::move(current);
  }
  changed_();
}

Reservations DockWatch::read() {
  auto* const xcb = connection_->xcb();
  const auto clients = managedClients(*connection_);
  listenToClients(clients);
  Reservations current;
  current.docks = readDocks(clients);
  current.workArea = readWorkArea();
  const auto root =
      replyTo<xcb_get_geometry_reply>(xcb, xcb_get_geometry(xcb, connection_->root()));
  if (root) current.root = {root->width, root->height};
  return current;
}

void DockWatch::listenToClients(const std::set<xcb_window_t>& clients) {
  for (const auto each : clients) {
    if (clients_.contains(each)) continue;
    forgive(connection_->xcb(), connection_->selectEvents(each, XCB_EVENT_MASK_PROPERTY_CHANGE));
  }
  clients_ = clients;
}

std::vector<Dock> DockWatch::readDocks(const std::set<xcb_window_t>& clients) {
  // What clients have set may be large, so only so many windows' answers are in memory at once.
  constexpr std::size_t mostAtOnce = 32;
  std::vector<Dock> docks;
  for (auto next = clients.begin(); next != clients.end();) {
    std::list<StrutQuery> queries;
    while (next != clients.end() && queries.size() < mostAtOnce) {
      queries.emplace_back(*connection_, *next++);
    }
    for (auto& query : queries) {
      const auto struts = strutsFrom(query.partial.fetch().values(), query.whole.fetch().values());
      if (!struts) continue;
      if (const auto place = followPlace(query.window)) docks.push_back({*place, *struts});
    }
  }
  return docks;
}

std::optional<PixelRect> DockWatch::followPlace(xcb_window_t window) {
  auto* const xcb = connection_->xcb();
  forgive(xcb, connection_->selectEvents(
                   window, XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY));
  // When a manager moves a dock, it is the frame that moves; the dock gets word by SendEvent alone.
  const auto frame = topLevelOf(*connection_, window);
  if (frame != window) {
    forgive(xcb, connection_->selectEvents(frame, XCB_EVENT_MASK_STRUCTURE_NOTIFY));
  }
  const auto attributes =
      replyTo<xcb_get_window_attributes_reply>(xcb, xcb_get_window_attributes(xcb, window));
  if (!attributes || attributes->map_state != XCB_MAP_STATE_VIEWABLE) return std::nullopt;
  return placeIn(xcb, window, connection_->root());
}

std::optional<PixelRect> DockWatch::readWorkArea() {
  const auto root = connection_->root();
  const auto areas = propertyOf(*connection_, root, "_NET_WORKAREA").values();
  const auto desktop = propertyOf(*connection_, root, "_NET_CURRENT_DESKTOP").firstValue();
  return workAreaFrom(areas, desktop.value_or(0));
}

}  // namespace vistrel::platform::linux_desktop
