#include "tests/support/MutterHand.h"

#include <memory>
#include <stdexcept>

#include "tests/support/Poll.h"
#include "tests/support/WaylandClient.h"

namespace vistrel::testbed {
namespace {

constexpr const char* remoteDesktop = "org.gnome.Mutter.RemoteDesktop";
constexpr const char* session = "org.gnome.Mutter.RemoteDesktop.Session";
constexpr const char* screenCast = "org.gnome.Mutter.ScreenCast";
constexpr const char* castSession = "org.gnome.Mutter.ScreenCast.Session";
constexpr const char* virtualMonitor = "Meta-0";
/// Of the kernel (linux/input-event-codes.h); one that does nothing.
constexpr std::uint32_t leftShift = 42;

BusObject beginInput(const BusConnection& bus) {
  const BusObject whole(bus, remoteDesktop, "/org/gnome/Mutter/RemoteDesktop");
  return {bus, remoteDesktop, whole.call(remoteDesktop, "CreateSession").path()};
}

/// A screen cast that belongs to that input.
BusObject beginCast(const BusObject& input) {
  BusMessage property =
      input.call("org.freedesktop.DBus.Properties", "Get", "ss", session, "SessionId");
  const std::string number = property.structure(
      "s", [&] { return property.text(); }, SD_BUS_TYPE_VARIANT);
  const BusObject whole(input.bus(), screenCast, "/org/gnome/Mutter/ScreenCast");
  return {input.bus(), screenCast,
          whole
              .call(screenCast, "CreateSession", "a{sv}", 1, "remote-desktop-session-id", "s",
                    number.c_str())
              .path()};
}

}  // namespace

MutterHand::MutterHand(const WaylandSession& desktop)
    : bus_(connectToBus(desktop.busAddress())),
      input_(beginInput(bus_)),
      stream_(beginCast(input_)
                  .call(castSession, "RecordMonitor", "sa{sv}", virtualMonitor, 0)
                  .path()) {
  input_.call(session, "Start");
  plugIn(desktop);
}

void MutterHand::plugIn(const WaylandSession& desktop) {
  const WaylandClient client((desktop.home() / "runtime" / desktop.waylandName).c_str());
  std::uint32_t capabilities = 0;
  static constexpr wl_seat_listener listener{
      [](void* known, wl_seat*, std::uint32_t told) { *static_cast<std::uint32_t*>(known) = told; },
      [](void*, wl_seat*, const char*) {}};
  const std::unique_ptr<wl_seat, decltype(&wl_seat_destroy)> seat(
      client.bind<wl_seat>(wl_seat_interface, 1), wl_seat_destroy);
  wl_seat_add_listener(seat.get(), &listener, &capabilities);
  constexpr std::uint32_t both = WL_SEAT_CAPABILITY_POINTER | WL_SEAT_CAPABILITY_KEYBOARD;
  // mutter makes each with its first input, which nobody gets.
  if (!eventually([&] {
        input_.call(session, "NotifyPointerMotionRelative", "dd", 0.0, 0.0);
        type(leftShift);
        client.sync();
        return (capabilities & both) == both;
      })) {
    throw std::runtime_error("mutter has no pointer or no keyboard");
  }
}

void MutterHand::moveTo(Point point) {
  input_.call(session, "NotifyPointerMotionAbsolute", "sdd", stream_.c_str(),
              static_cast<double>(point.x), static_cast<double>(point.y));
}

void MutterHand::turn(Button button, bool isDown) {
  input_.call(session, "NotifyPointerButton", "ib", static_cast<std::int32_t>(button),
              isDown ? 1 : 0);
}

void MutterHand::turnKey(std::uint32_t key, bool isDown) {
  input_.call(session, "NotifyKeyboardKeycode", "ub", key, isDown ? 1 : 0);
}

}  // namespace vistrel::testbed
