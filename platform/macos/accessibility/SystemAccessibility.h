#pragma once

#include "platform/Backend.h"

namespace vistrel::platform::macos {

/// Accessibility as the system's application services offer it.
class SystemAccessibility final : public AccessibilityBackend {
 public:
  bool isProcessTrusted() override;
  bool isProcessTrustedWithOptions(bool prompt) override;
  std::shared_ptr<AccessibilityElement> applicationElement(std::int32_t processID) override;
  std::optional<AccessibilityValue> makePointValue(Point point) override;
  GetWindowNumber windowNumberFunctionNamed(const std::string& symbol) override;
};

}  // namespace vistrel::platform::macos
