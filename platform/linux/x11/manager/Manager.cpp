#include "platform/linux/x11/manager/Manager.h"

#include <algorithm>
#include <chrono>
#include <poll.h>

#include "platform/linux/x11/server/Property.h"

namespace vistrel::platform::linux_desktop {
namespace {

using Clock = std::chrono::steady_clock;

/// Waits for a change of a property of `window`, on which `connection` is to listen to nothing
/// else, until `isAsWanted`; false when it is not by then.
bool awaitProperty(Connection& connection, xcb_window_t window, std::chrono::milliseconds longest,
                   const std::function<bool()>& isAsWanted) {
  const auto end = Clock::now() + longest;
  forgive(connection.xcb(), connection.selectEvents(window, XCB_EVENT_MASK_PROPERTY_CHANGE));
  bool holds = isAsWanted();
  bool isOver = false;
  while (!holds && !isOver && !connection.isLost()) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
    isOver = left.count() <= 0;
    // The answer to the last question may have brought the event along.
    if (isOver || connection.pollEvent()) {
      holds = isAsWanted();
    } else {
      pollfd readable{connection.descriptor(), POLLIN, 0};
      poll(&readable, 1, static_cast<int>(left.count()));
    }
  }
  forgive(connection.xcb(), connection.selectEvents(window, XCB_EVENT_MASK_NO_EVENT));
  return holds;
}

/// A window that the manager is asked about, which nobody ever sees.
class Probe {
 public:
  explicit Probe(Connection& connection)
      : connection_(connection), window_(xcb_generate_id(connection.xcb())) {
    xcb_create_window(connection_.xcb(), XCB_COPY_FROM_PARENT, window_, connection_.root(), 0, 0, 1,
                      1, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
  }
  Probe(const Probe&) = delete;
  Probe& operator=(const Probe&) = delete;
  ~Probe() { xcb_destroy_window(connection_.xcb(), window_); }

  xcb_window_t window() const { return window_; }

 private:
  Connection& connection_;
  xcb_window_t window_;
};

/// Whether the list of atoms that a property is holds `atom`.
bool holds(Connection& connection, xcb_window_t window, std::string_view list,
           std::string_view atom) {
  const auto atoms = propertyOf(connection, window, list).values();
  return std::find(atoms.begin(), atoms.end(), connection.atom(atom)) != atoms.end();
}

bool covers(Connection& connection, const PixelRect& area) {
  const auto size = propertyOf(connection, connection.root(), "_NET_DESKTOP_GEOMETRY").firstValue();
  return size && static_cast<std::int64_t>(*size) >= area.x + area.width;
}

}  // namespace

bool hasManager(Connection& connection) {
  // A manager that has gone leaves its property on the root; a living one shows on the window that
  // the property names (EWMH, _NET_SUPPORTING_WM_CHECK).
  constexpr auto check = "_NET_SUPPORTING_WM_CHECK";
  const auto window = propertyOf(connection, connection.root(), check).firstValue();
  return window && propertyOf(connection, *window, check).firstValue() == window;
}

bool managerSupports(Connection& connection, std::string_view hint) {
  return hasManager(connection) && holds(connection, connection.root(), "_NET_SUPPORTED", hint);
}

bool hasState(Connection& connection, xcb_window_t window, std::string_view state) {
  return holds(connection, window, "_NET_WM_STATE", state);
}

void tellManager(Connection& connection, xcb_window_t window, std::string_view message,
                 const std::array<std::uint32_t, 5>& data) {
  xcb_client_message_event_t event{};
  event.response_type = XCB_CLIENT_MESSAGE;
  event.format = 32;
  event.window = window;
  event.type = connection.atom(message);
  std::copy(data.begin(), data.end(), event.data.data32);
  xcb_send_event(connection.xcb(), 0, connection.root(),
                 XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                 reinterpret_cast<const char*>(&event));
}

void awaitManager(Connection& connection) {
  constexpr std::chrono::seconds longest(2);
  constexpr auto question = "_NET_REQUEST_FRAME_EXTENTS";
  if (!managerSupports(connection, question)) return;
  const Probe probe(connection);
  tellManager(connection, probe.window(), question, {});
  awaitProperty(connection, probe.window(), longest, [&] {
    return propertyOf(connection, probe.window(), "_NET_FRAME_EXTENTS").exists();
  });
}

bool managerReaches(Connection& connection, const PixelRect& area) {
  if (!hasManager(connection)) return true;
  // Some take notice some time after they have been told.
  constexpr std::chrono::milliseconds grace(500);
  awaitManager(connection);
  // EWMH: the size of every desktop. A manager that leaves out what no output shows does not count
  // it in here either.
  const auto isCovered = [&] { return covers(connection, area); };
  if (awaitProperty(connection, connection.root(), grace, isCovered)) return true;
  // It may have been held up all the while.
  awaitManager(connection);
  return isCovered();
}

}  // namespace vistrel::platform::linux_desktop
