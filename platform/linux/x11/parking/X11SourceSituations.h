#pragma once

#include <memory>
#include <utility>

#include "platform/linux/session/SourceSituations.h"
#include "platform/linux/x11/parking/ParkedWindows.h"
#include "platform/linux/x11/server/Connection.h"

namespace vistrel::platform::linux_desktop {

/// What the window manager has done with sources, those that have been parked among them.
class X11SourceSituations final : public SourceSituations {
 public:
  X11SourceSituations(std::shared_ptr<Connection> connection,
                      std::shared_ptr<const ParkedWindows> parked)
      : connection_(std::move(connection)), parked_(std::move(parked)) {}

  SourceSituation of(std::uint32_t window) override;

 private:
  const std::shared_ptr<Connection> connection_;
  const std::shared_ptr<const ParkedWindows> parked_;
};

}  // namespace vistrel::platform::linux_desktop
