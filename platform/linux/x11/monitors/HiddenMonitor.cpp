#include "platform/linux/x11/monitors/HiddenMonitor.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <charconv>
#include <optional>
#include <sys/uio.h>
#include <xcb/xcbext.h>

#include "platform/linux/CurrentThread.h"
#include "platform/linux/HiddenMonitorName.h"
#include "platform/linux/Trace.h"
#include "platform/linux/x11/manager/Manager.h"
#include "platform/linux/x11/manager/WindowPlaces.h"
#include "platform/linux/x11/monitors/FreePlace.h"
#include "platform/linux/x11/monitors/GrownScreen.h"
#include "platform/linux/x11/server/FaultPoint.h"
#include "platform/linux/x11/server/ProcessToken.h"
#include "platform/linux/x11/server/Property.h"
#include "platform/linux/x11/server/ServerGrab.h"
#include "platform/linux/x11/server/UnseenWindow.h"

namespace vistrel::platform::linux_desktop {
namespace {

/// On a monitor's window: its name, and the token of the window's process.
constexpr auto ownerMark = "_VISTREL_HIDDEN_MONITOR";

/// On the root window: the window of a manager that rearranges windows when the screen grows.
constexpr auto rearrangerMark = "_VISTREL_REARRANGING_MANAGER";

std::string nameFor(xcb_window_t owner) {
  std::array<char, 8> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), owner, 16).ptr;
  return std::string(hiddenMonitorPrefix) + std::string(digits.data(), end);
}

std::optional<xcb_window_t> ownerIn(std::string_view name) {
  name.remove_prefix(hiddenMonitorPrefix.size());
  xcb_window_t owner = XCB_WINDOW_NONE;
  const auto [end, failure] = std::from_chars(name.data(), name.data() + name.size(), owner, 16);
  if (failure != std::errc() || end != name.data() + name.size()) return std::nullopt;
  return owner;
}

/// A server may give the window's number to somebody else one day, hence the mark.
bool hasOwner(Connection& connection, const ListedMonitor& monitor) {
  const auto owner = ownerIn(monitor.name);
  return owner && propertyOf(connection, *owner, ownerMark).firstValue() == monitor.id;
}

/// RRSetMonitor as the wire carries it, for a monitor without outputs: libxcb 1.15 ends the program
/// over its own request of that name.
struct SetMonitorRequest {
  std::uint8_t majorOpcode = 0;
  std::uint8_t minorOpcode = 0;
  std::uint16_t length = 0;
  xcb_window_t window = XCB_WINDOW_NONE;
  xcb_randr_monitor_info_t monitor{};
};
static_assert(sizeof(SetMonitorRequest) == 32);

xcb_void_cookie_t setMonitor(Connection& connection, const xcb_randr_monitor_info_t& monitor) {
  SetMonitorRequest request;
  request.window = connection.root();
  request.monitor = monitor;
  // XCB writes the request's head, and puts what it needs into the two vectors before the first.
  std::array<iovec, 4> parts{};
  parts[2] = {&request, sizeof(request)};
  const xcb_protocol_request_t kind{2, &xcb_randr_id, XCB_RANDR_SET_MONITOR, 1};
  return {xcb_send_request(connection.xcb(), XCB_REQUEST_CHECKED, &parts[2], &kind)};
}

void deleteMonitor(Connection& connection, xcb_atom_t id) {
  // Somebody may have removed it.
  forgive(connection.xcb(),
          xcb_randr_delete_monitor_checked(connection.xcb(), connection.root(), id));
}

/// Traces why there is none, or not there; false.
template <class MakeReason>
bool refuse(const MakeReason& reason) {
  trace(TraceTopic::monitors, [&] { return "hidden monitor refused: " + std::string(reason()); });
  return false;
}

/// icewm 3.3.1 rearranges everybody's windows then, so it is tried once only: for as long as that
/// manager runs, whichever program of ours it is.
bool isKnownToRearrange(Connection& connection) {
  const auto known = propertyOf(connection, connection.root(), rearrangerMark).firstValue();
  return known && known == managersWindow(connection);
}

void rememberThatItRearranges(Connection& connection) {
  const auto manager = managersWindow(connection);
  if (!manager) return;
  xcb_change_property(connection.xcb(), XCB_PROP_MODE_REPLACE, connection.root(),
                      connection.atom(rearrangerMark), XCB_ATOM_WINDOW, 32, 1, &*manager);
}

/// What can be told without making one.
bool managerMayTakeOne(Connection& connection) {
  if (!managerTellsItsReach(connection)) {
    return refuse([] { return "the manager does not say how far its desktop reaches"; });
  }
  return !isKnownToRearrange(connection) ||
         refuse([] { return "the manager rearranges windows when the screen grows"; });
}

void putScreenBackAfterLast(Connection& connection) {
  const auto left = monitorsOf(connection);
  const bool isLast = std::none_of(left.begin(), left.end(), [](const ListedMonitor& each) {
    return isHiddenMonitor(each.name);
  });
  if (isLast) putScreenBack(connection);
}

/// To the right of the primary monitor, its top edge aligned.
PixelRect besidePrimary(const std::vector<ListedMonitor>& all, PixelSize size) {
  const PixelRect primary = all.empty() ? PixelRect{} : all.front().area;
  return {primary.x + primary.width, primary.y, size.width, size.height};
}

}  // namespace

bool canHideMonitors(Connection& connection) {
  if (!offersMonitors(connection)) {
    return refuse([] { return "the server has none (RandR 1.5)"; });
  }
  int right = 0;
  for (const auto& each : monitorsOf(connection)) {
    if (!isHiddenMonitor(each.name)) right = std::max(right, each.area.x + each.area.width);
  }
  const int largest = largestScreen(connection).width;
  return largest > right || refuse([&] {
           return "the others reach to " + std::to_string(right) + " and the screen can to " +
                  std::to_string(largest);
         });
}

std::vector<xcb_window_t> monitorOwnersOf(Connection& connection, std::uint32_t processToken) {
  std::vector<xcb_window_t> owners;
  if (!offersMonitors(connection)) return owners;
  for (const auto& each : monitorsOf(connection)) {
    const auto owner = isHiddenMonitor(each.name) ? ownerIn(each.name) : std::nullopt;
    if (!owner) continue;
    const auto mark = propertyOf(connection, *owner, ownerMark).values();
    if (mark == std::vector{each.id, processToken}) owners.push_back(*owner);
  }
  return owners;
}

void removeAbandonedMonitors(Connection& connection) {
  if (!offersMonitors(connection)) return;
  {
    const ServerGrab grab(connection);
    for (const auto& each : monitorsOf(connection)) {
      if (!isHiddenMonitor(each.name) || hasOwner(connection, each)) continue;
      trace(TraceTopic::monitors, [&] { return "abandoned one removed: " + areaText(each.area); });
      deleteMonitor(connection, each.id);
    }
    putScreenBackAfterLast(connection);
  }
  connection.sync();
}

std::unique_ptr<HiddenMonitor> HiddenMonitor::make(PixelSize size, double deadline) {
  assert(isMainThread());
  auto connection = Connection::open();
  if (!connection) refuse([] { return "the display refuses another connection"; });
  if (!connection || !canHideMonitors(*connection)) return nullptr;
  if (!managerMayTakeOne(*connection)) return nullptr;
  const PixelRect wanted = besidePrimary(monitorsOf(*connection), size);
  std::unique_ptr<HiddenMonitor> monitor(new HiddenMonitor(std::move(connection)));
  const WindowPlaces places(*monitor->connection_);
  if (!monitor->place(wanted)) return nullptr;
  const bool isReached = managerReaches(*monitor->connection_, monitor->area_, deadline);
  const bool isRearranged = places.haveChanged();
  if (isReached && !isRearranged) return monitor;
  monitor->leave();
  if (isRearranged) {
    rememberThatItRearranges(*monitor->connection_);
    // It does so again for the former size.
    awaitManagerUntil(*monitor->connection_, deadline);
    places.restore(deadline);
  }
  refuse([&] {
    return isRearranged ? "the manager rearranges windows for it"
                        : "the manager would keep windows away from it";
  });
  return nullptr;
}

HiddenMonitor::HiddenMonitor(std::unique_ptr<Connection> connection)
    : connection_(std::move(connection)),
      owner_(makeUnseenWindow(*connection_)),
      id_(connection_->atom(nameFor(owner_.id()))) {
  const std::array mark{id_, processToken()};
  xcb_change_property(connection_->xcb(), XCB_PROP_MODE_REPLACE, owner_.id(),
                      connection_->atom(ownerMark), XCB_ATOM_CARDINAL, 32, mark.size(),
                      mark.data());
}

HiddenMonitor::~HiddenMonitor() {
  assert(isMainThread());
  leave();
}

void HiddenMonitor::leave() {
  connection_->sync();
  if (connection_->isLost()) renewConnection();
  {
    const ServerGrab grab(*connection_);
    withdraw();
    putScreenBackAfterLast(*connection_);
  }
  connection_->sync();
}

void HiddenMonitor::renewConnection() {
  auto connection = Connection::open();
  if (!connection) return;
  owner_.abandon();
  connection_ = std::move(connection);
}

bool HiddenMonitor::place(const PixelRect& wanted) {
  assert(isMainThread());
  const ServerGrab grab(*connection_);
  auto all = monitorsOf(*connection_);
  std::erase_if(all, [this](const ListedMonitor& each) { return each.id == id_; });
  const PixelRect area = freePlace(wanted, areasOf(all));
  const int largest = largestScreen(*connection_).width;
  if (area.x + area.width > largest) {
    return refuse([&] {
      return areaText(area) + " is more than the screen can be, " + std::to_string(largest);
    });
  }
  return makeRoom(all, area) && (area == area_ || announce(area));
}

std::optional<HiddenMonitor::Move> HiddenMonitor::getOutOfTheWay() {
  assert(isMainThread());
  const PixelRect from = area_;
  const auto all = monitorsOf(*connection_);
  const bool isInTheWay = std::any_of(all.begin(), all.end(), [&](const ListedMonitor& each) {
    return !isHiddenMonitor(each.name) && !isEmpty(intersection(each.area, from));
  });
  const bool isCutOff = from.x + from.width > screenSize(*connection_).width;
  if (isEmpty(from) || (!isInTheWay && !isCutOff)) return std::nullopt;
  if (!place(besidePrimary(all, sizeOf(from)))) leave();
  return Move{from, area_};
}

bool HiddenMonitor::makeRoom(const std::vector<ListedMonitor>& all, const PixelRect& area) {
  const bool hasPrimary = !all.empty() && all.front().isPrimary;
  const auto primary =
      hasPrimary || all.empty() ? xcb_randr_output_t{XCB_NONE} : all.front().output;
  return growScreen(*connection_, area.x + area.width, primary) ||
         refuse([&] { return "the server does not let the screen grow for " + areaText(area); });
}

bool HiddenMonitor::announce(const PixelRect& area) {
  const PixelRect former = area_;
  withdraw();
  if (set(area)) return true;
  if (!isEmpty(former)) set(former);
  return false;
}

bool HiddenMonitor::set(const PixelRect& area) {
  xcb_randr_monitor_info_t info{};
  info.name = id_;
  info.x = static_cast<std::int16_t>(area.x);
  info.y = static_cast<std::int16_t>(area.y);
  info.width = static_cast<std::uint16_t>(area.width);
  info.height = static_cast<std::uint16_t>(area.height);
  // Programs derive from it how large to show things, and a window is to look here as it did.
  const PixelSize millimetres = millimetresOf(*connection_, sizeOf(area));
  info.width_in_millimeters = static_cast<std::uint32_t>(millimetres.width);
  info.height_in_millimeters = static_cast<std::uint32_t>(millimetres.height);
  if (failureOf(connection_->xcb(), setMonitor(*connection_, info))) {
    return refuse([&] { return "the server refuses one at " + areaText(area); });
  }
  VISTREL_FAULT_POINT(*connection_, "monitor: set");
  trace(TraceTopic::monitors, [&] { return "hidden monitor at " + areaText(area); });
  area_ = area;
  return true;
}

void HiddenMonitor::withdraw() {
  if (!isEmpty(area_)) {
    trace(TraceTopic::monitors, [&] { return "hidden monitor removed from " + areaText(area_); });
    deleteMonitor(*connection_, id_);
    VISTREL_FAULT_POINT(*connection_, "monitor: removed");
  }
  area_ = {};
}

}  // namespace vistrel::platform::linux_desktop
