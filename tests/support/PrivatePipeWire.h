#pragma once

#include "tests/support/ChildProcess.h"
#include "tests/support/PrivateHome.h"

namespace vistrel::testbed {

/// PipeWire and its session manager, of programs that live in a private home and have a session
/// bus. They open none of the machine's devices.
class PrivatePipeWire {
 public:
  /// Returns once streams can start. Throws std::runtime_error, with what the programs wrote, when
  /// one of them does not start.
  PrivatePipeWire(const PrivateHome& home, const std::vector<std::string>& environment);

 private:
  ChildProcess pipeWire_;
  ChildProcess wirePlumber_;
};

}  // namespace vistrel::testbed
