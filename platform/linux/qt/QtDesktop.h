#pragma once

#include <memory>

#include "platform/Backend.h"
#include "platform/linux/session/Session.h"

namespace vistrel::platform::linux_desktop {

/// The toolkit's half of the backend: event loop, windows, alerts, the surroundings of the process.
class QtDesktop {
 public:
  /// Starts the toolkit on the display that DISPLAY names, which must be known to answer: the
  /// toolkit ends the process otherwise. `programPath` is argv[0]. Main thread, once; `session` and
  /// `programPath` outlive it.
  static std::unique_ptr<QtDesktop> start(char* programPath, const Session& session);

  virtual ~QtDesktop() = default;
  virtual DispatchBackend& dispatch() = 0;
  virtual WindowBackend& windows() = 0;
  virtual WorkspaceBackend& workspace() = 0;
  virtual Application& application() = 0;
};

}  // namespace vistrel::platform::linux_desktop
