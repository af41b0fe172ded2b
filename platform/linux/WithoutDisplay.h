#pragma once

#include "platform/Backend.h"

namespace vistrel::platform::linux_desktop {

/// No display is online.
class NoDisplays final : public DisplayBackend {
 public:
  DisplayID mainDisplayID() override { return 0; }
  Rect displayBounds(DisplayID) override { return {}; }
  std::uint32_t onlineDisplayCount() override { return 0; }
  std::unique_ptr<DisplayConfiguration> beginDisplayConfiguration() override { return nullptr; }
};

/// The system has no classes for virtual displays.
class NoVirtualDisplays final : public VirtualDisplayBackend {
 public:
  std::shared_ptr<RuntimeClass> classNamed(const std::string&) override { return nullptr; }
};

/// What the self-tests need of a backend where no display server answers. Has nothing else: asking
/// for it ends the program.
std::unique_ptr<Backend> makeBackendWithoutDisplay();

}  // namespace vistrel::platform::linux_desktop
