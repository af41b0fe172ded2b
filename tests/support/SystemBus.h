#pragma once

#include <string>
#include <vector>

#include "tests/support/BusDaemon.h"
#include "tests/support/PrivateHome.h"

namespace vistrel::testbed {

/// The system bus of programs that live in a private home, where a stand-in answers for logind.
class SystemBus {
 public:
  /// Returns once the bus listens. Throws std::runtime_error, with what it wrote, when it does not
  /// start.
  SystemBus(const PrivateHome& home, const std::vector<std::string>& environment)
      : bus_(home.systemBusConfiguration(), environment),
        logind_({.arguments = {"/usr/bin/python3", "-m", "dbusmock", "--system", "--template",
                               "logind"},
                 .environment = environment}) {}

  /// Returns once logind answers; throws as above.
  void awaitLogind();

 private:
  BusDaemon bus_;
  ChildProcess logind_;
};

}  // namespace vistrel::testbed
