#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/ChildProcess.h"

namespace vistrel::testbed {

/// A bus of a test's own.
class BusDaemon {
 public:
  /// Returns once it listens. Throws std::runtime_error, with what it wrote, when it does not
  /// start.
  BusDaemon(const std::filesystem::path& configuration, const std::vector<std::string>& environment)
      : BusDaemon(configuration, environment, Pipe::open()) {}

  /// As in DBUS_SESSION_BUS_ADDRESS.
  const std::string& address() const { return address_; }
  pid_t pid() const { return bus_.pid(); }

 private:
  BusDaemon(const std::filesystem::path& configuration, const std::vector<std::string>& environment,
            Pipe pipe);

  ChildProcess bus_;
  std::string address_;
};

}  // namespace vistrel::testbed
