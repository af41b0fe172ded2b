#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace vistrel::platform {

/// Opens a URL with whatever program serves it; false when none does. Main thread.
bool openURL(const std::string& url);

/// Starts a new instance of the program whose bundle is at `bundlePath`, even while one is running;
/// false when it could not be started. On macOS it runs "/usr/bin/open" with "-n" and the path.
/// Main thread.
bool openNewInstance(const std::string& bundlePath);

/// Raw value is AppKit's NSApplicationActivationOptions.
enum class ActivationOptions { activateAllWindows = 1 };

/// Another program that runs. Main thread.
class RunningApplication {
 public:
  virtual ~RunningApplication() = default;

  /// Null when no program with a window has that process id.
  static std::shared_ptr<RunningApplication> withProcessIdentifier(std::int32_t processID);

  /// Brings the program's windows to the front, all of them, and gives it the keyboard; false when
  /// the desktop does not let that be asked for.
  virtual bool activate(ActivationOptions options) = 0;
};

/// This process. Any thread.
std::int32_t processIdentifier();

}  // namespace vistrel::platform
