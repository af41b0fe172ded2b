#pragma once

#include <memory>
#include <utility>

#include "platform/Backend.h"
#include "platform/linux/wayland/kwin/KWinMover.h"

namespace vistrel::platform::linux_desktop {

/// Other programs' native windows by way of KWin, which asks nobody for a permission; those of X by
/// X's half. Main thread.
class KWinAccessibility final : public AccessibilityBackend {
 public:
  /// Outlives its elements.
  KWinAccessibility(std::unique_ptr<AccessibilityBackend> x, std::shared_ptr<KWinMover> mover)
      : x_(std::move(x)), mover_(std::move(mover)) {}

  bool isProcessTrusted() override;
  bool isProcessTrustedWithOptions(bool prompt) override;
  std::shared_ptr<AccessibilityElement> applicationElement(std::int32_t processID) override;
  std::optional<AccessibilityValue> makePointValue(Point point) override;
  GetWindowNumber windowNumberFunctionNamed(const std::string& symbol) override;

 private:
  const std::unique_ptr<AccessibilityBackend> x_;
  const std::shared_ptr<KWinMover> mover_;
};

}  // namespace vistrel::platform::linux_desktop
