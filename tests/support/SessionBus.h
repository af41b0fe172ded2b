#pragma once

#include <string>

#include "tests/support/ChildProcess.h"
#include "tests/support/PrivateHome.h"

namespace vistrel::testbed {

/// The session bus of programs that live in a private home.
class SessionBus {
 public:
  /// Returns once it listens. Throws std::runtime_error, with what it wrote, when it does not
  /// start.
  SessionBus(const PrivateHome& home, const std::vector<std::string>& environment)
      : SessionBus(home, environment, Pipe::open()) {}

  /// As in DBUS_SESSION_BUS_ADDRESS.
  const std::string& address() const { return address_; }
  pid_t pid() const { return bus_.pid(); }

 private:
  SessionBus(const PrivateHome& home, const std::vector<std::string>& environment, Pipe pipe);

  ChildProcess bus_;
  std::string address_;
};

}  // namespace vistrel::testbed
