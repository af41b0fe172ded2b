#pragma once

#include <string>
#include <vector>

#include "tests/support/BusDaemon.h"
#include "tests/support/PrivateHome.h"

namespace vistrel::testbed {

/// The session bus of programs that live in a private home.
class SessionBus : public BusDaemon {
 public:
  /// As of the base.
  SessionBus(const PrivateHome& home, const std::vector<std::string>& environment)
      : BusDaemon(home.busConfiguration(), environment) {}
};

}  // namespace vistrel::testbed
