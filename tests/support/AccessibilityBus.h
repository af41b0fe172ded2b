#pragma once

#include <cstdint>
#include <string>
#include <sys/types.h>
#include <vector>

#include "tests/support/Accessible.h"
#include "tests/support/PrivateDisplay.h"

namespace vistrel::testbed {

/// A screen reader in a private session: programs make themselves readable to it over the
/// accessibility bus (AT-SPI 2) as soon as it is there.
class AccessibilityBus {
 public:
  /// `display` outlives this. Throws std::runtime_error when the session has no such bus.
  explicit AccessibilityBus(const PrivateDisplay& display)
      : AccessibilityBus(display.busAddress()) {}
  /// The same in the session whose bus that is.
  explicit AccessibilityBus(const std::string& busAddress);

  /// Waits until the program with that process id can be read. Throws std::runtime_error when it
  /// cannot be.
  Accessible program(pid_t pid) const;

  /// The process that keeps the bus, which nobody here has started.
  pid_t launcherPid() const;

  /// Something that a program told of one of its objects.
  struct Event {
    std::string kind;  // e.g. "StateChanged showing"
    std::int32_t detail = 0;
    std::string path;

    friend bool operator==(const Event&, const Event&) = default;
  };
  /// What was told, without being asked, since this object was made or since the last call: changes
  /// of states, properties and children.
  std::vector<Event> events();

 private:
  BusConnection session_;
  BusConnection bus_;
};

}  // namespace vistrel::testbed
