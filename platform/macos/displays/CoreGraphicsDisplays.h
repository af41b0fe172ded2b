#pragma once

#include "platform/Backend.h"

namespace vistrel::platform::macos {

/// The window server's displays.
class CoreGraphicsDisplays final : public DisplayBackend {
 public:
  DisplayID mainDisplayID() override;
  Rect displayBounds(DisplayID display) override;
  std::uint32_t onlineDisplayCount() override;
  std::unique_ptr<DisplayConfiguration> beginDisplayConfiguration() override;
};

}  // namespace vistrel::platform::macos
