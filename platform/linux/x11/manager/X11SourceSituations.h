#pragma once

#include <memory>
#include <utility>

#include "platform/linux/session/SourceSituations.h"
#include "platform/linux/x11/server/Connection.h"

namespace vistrel::platform::linux_desktop {

/// What the window manager has done with sources.
class X11SourceSituations final : public SourceSituations {
 public:
  explicit X11SourceSituations(std::shared_ptr<Connection> connection)
      : connection_(std::move(connection)) {}

  SourceSituation of(std::uint32_t window) override;

 private:
  const std::shared_ptr<Connection> connection_;
};

}  // namespace vistrel::platform::linux_desktop
