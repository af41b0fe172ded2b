#pragma once

#include <memory>

namespace vistrel::platform {

/// Raw value is AppKit's NSApplicationActivationPolicy.
enum class ActivationPolicy { regular = 0 };

class ApplicationDelegate {
 public:
  virtual ~ApplicationDelegate() = default;
  virtual void applicationDidFinishLaunching() = 0;
  /// A click on the program's icon (or what stands in for it) while it runs.
  virtual bool applicationShouldHandleReopen(bool hasVisibleWindows) = 0;
};

/// The running program. Main thread.
class Application {
 public:
  virtual ~Application() = default;

  static Application& shared();

  virtual void setActivationPolicy(ActivationPolicy policy) = 0;
  /// Held weakly.
  virtual void setDelegate(std::weak_ptr<ApplicationDelegate> delegate) = 0;
  virtual void activateIgnoringOtherApps(bool ignoringOtherApps) = 0;
  /// The event loop; tells the delegate first that launching has finished. Returns after
  /// `terminate` where the platform lets it.
  virtual void run() = 0;
  virtual void terminate() = 0;
};

}  // namespace vistrel::platform
