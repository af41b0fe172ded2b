#pragma once

#include "platform/Backend.h"
#include "platform/linux/x11/parking/ParkedWindows.h"

namespace vistrel::platform::linux_desktop {

/// Other programs' windows by way of the window manager. X11 asks nobody for a permission: what
/// there has to be is a manager that moves windows on request (EWMH, _NET_MOVERESIZE_WINDOW), and
/// nothing else counts. So there are no settings to show either, unless some program of the desktop
/// serves their URL.
class X11Accessibility final : public AccessibilityBackend {
 public:
  /// Both outlive this object, which outlives its elements. Windows that are not where they were
  /// found when it goes are given back what they had.
  X11Accessibility(Connection& connection, const ScreenLayout& layout)
      : connection_(connection), windows_(connection, layout) {}

  bool isProcessTrusted() override;
  /// There is nobody to prompt.
  bool isProcessTrustedWithOptions(bool prompt) override;
  std::shared_ptr<AccessibilityElement> applicationElement(std::int32_t processID) override;
  std::optional<AccessibilityValue> makePointValue(Point point) override;
  GetWindowNumber windowNumberFunctionNamed(const std::string& symbol) override;

 private:
  class ApplicationElement;
  class WindowElement;

  Connection& connection_;
  ParkedWindows windows_;
};

}  // namespace vistrel::platform::linux_desktop
