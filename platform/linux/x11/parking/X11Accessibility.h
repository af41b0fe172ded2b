#pragma once

#include <memory>
#include <utility>

#include "platform/Backend.h"
#include "platform/linux/x11/parking/ParkedWindows.h"

namespace vistrel::platform::linux_desktop {

/// Other programs' windows by way of the window manager. X11 asks nobody for a permission: what
/// there has to be is a manager, whatever it lists of what it does, and nothing else counts. So
/// there are no settings to show either, unless some program of the desktop serves their URL.
class X11Accessibility final : public AccessibilityBackend {
 public:
  /// Outlives its elements.
  X11Accessibility(std::shared_ptr<Connection> connection, std::shared_ptr<ParkedWindows> windows)
      : connection_(std::move(connection)), windows_(std::move(windows)) {}

  bool isProcessTrusted() override;
  /// There is nobody to prompt.
  bool isProcessTrustedWithOptions(bool prompt) override;
  std::shared_ptr<AccessibilityElement> applicationElement(std::int32_t processID) override;
  std::optional<AccessibilityValue> makePointValue(Point point) override;
  GetWindowNumber windowNumberFunctionNamed(const std::string& symbol) override;

 private:
  class ApplicationElement;
  class WindowElement;

  const std::shared_ptr<Connection> connection_;
  const std::shared_ptr<ParkedWindows> windows_;
};

}  // namespace vistrel::platform::linux_desktop
