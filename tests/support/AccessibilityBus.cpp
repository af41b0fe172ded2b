#include "tests/support/AccessibilityBus.h"

#include <optional>
#include <stdexcept>

#include "tests/support/Poll.h"

namespace vistrel::testbed {
namespace {

constexpr const char* busName = "org.freedesktop.DBus";
constexpr const char* eventInterface = "org.a11y.atspi.Event.Object";
constexpr const char* registryName = "org.a11y.atspi.Registry";

BusObject busItself(const BusConnection& bus) { return {bus, busName, "/org/freedesktop/DBus"}; }

// AT-SPI 2's way in: the service that a session starts when it is first called.
BusObject launcher(const BusConnection& session) {
  return {session, "org.a11y.Bus", "/org/a11y/bus"};
}

// Programs tell only what someone has asked the registry for.
void askForEvents(const BusConnection& bus) {
  busItself(bus).call(busName, "AddMatch", "s",
                      "type='signal',interface='org.a11y.atspi.Event.Object'");
  const BusObject registry(bus, registryName, "/org/a11y/atspi/registry");
  for (const char* event :
       {"object:state-changed", "object:property-change", "object:children-changed"}) {
    registry.call(registryName, "RegisterEvent", "s", event);
  }
}

pid_t processOf(const BusObject& object) {
  return static_cast<pid_t>(
      busItself(object.bus())
          .call(busName, "GetConnectionUnixProcessID", "s", object.program().c_str())
          .number());
}

std::optional<Accessible> programWithPid(const Accessible& desktop, pid_t pid) {
  for (const Accessible& program : desktop.children()) {
    if (processOf(program.object()) == pid) {
      return program;
    }
  }
  return std::nullopt;
}

}  // namespace

AccessibilityBus::AccessibilityBus(const std::string& busAddress)
    : session_(connectToBus(busAddress)) {
  const BusObject a11y = launcher(session_);
  // First of all: programs look at these only when the bus comes up, and when they start.
  for (const char* status : {"ScreenReaderEnabled", "IsEnabled"}) {
    a11y.call("org.freedesktop.DBus.Properties", "Set", "ssv", "org.a11y.Status", status, "b", 1);
  }
  bus_ = connectToBus(a11y.call("org.a11y.Bus", "GetAddress").text());
  askForEvents(bus_);
}

Accessible AccessibilityBus::program(pid_t pid) const {
  const Accessible desktop({bus_, registryName, "/org/a11y/atspi/accessible/root"});
  std::optional<Accessible> found;
  if (!eventually([&] {
        found = programWithPid(desktop, pid);
        return found.has_value();
      })) {
    throw std::runtime_error("process " + std::to_string(pid) + " cannot be read");
  }
  return *found;
}

pid_t AccessibilityBus::launcherPid() const { return processOf(launcher(session_)); }

std::vector<AccessibilityBus::Event> AccessibilityBus::events() {
  std::vector<Event> events;
  sd_bus_message* raw = nullptr;
  while (sd_bus_process(bus_.get(), &raw) > 0) {
    if (raw == nullptr) {
      continue;
    }
    BusMessage message(raw);
    if (sd_bus_message_is_signal(raw, eventInterface, nullptr) > 0) {
      std::string kind = sd_bus_message_get_member(raw);
      kind.append(" ").append(message.text());
      events.push_back({std::move(kind), message.signedNumber(), sd_bus_message_get_path(raw)});
    }
  }
  return events;
}

}  // namespace vistrel::testbed
