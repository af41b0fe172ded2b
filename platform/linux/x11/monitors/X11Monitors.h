#pragma once

#include <memory>

#include "platform/linux/session/Monitors.h"
#include "platform/linux/x11/server/Connection.h"

namespace vistrel::platform::linux_desktop {

/// By RandR 1.5; a server that is older does not tell.
class X11Monitors final : public Monitors {
 public:
  explicit X11Monitors(std::shared_ptr<Connection> connection);

  std::vector<NamedMonitor> list() override;

 private:
  const std::shared_ptr<Connection> connection_;
  const bool hasMonitors_;
};

}  // namespace vistrel::platform::linux_desktop
