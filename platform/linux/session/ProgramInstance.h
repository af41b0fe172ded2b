#pragma once

#include <cstdint>
#include <functional>

namespace vistrel::platform::linux_desktop {

/// This process as the one instance of the program in the session, if it is to be the only one.
/// Main thread.
class ProgramInstance {
 public:
  virtual ~ProgramInstance() = default;

  /// From now on calls `show`, on the main queue, whenever the program is started again; with the
  /// server's time of what the person did for that.
  virtual void whenStartedAgain(std::function<void(std::uint32_t time)> show) = 0;
  /// The program's next start is a new instance, although this one still runs.
  virtual void letOthersStart() = 0;
};

}  // namespace vistrel::platform::linux_desktop
