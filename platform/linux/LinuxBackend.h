#pragma once

#include <memory>
#include <utility>

#include "platform/Backend.h"
#include "platform/linux/WithoutDisplay.h"
#include "platform/linux/X11Desktop.h"
#include "platform/linux/qt/QtDesktop.h"

namespace vistrel::platform::linux_desktop {

/// Accessibility grants nothing.
class NoAccessibility final : public AccessibilityBackend {
 public:
  bool isProcessTrusted() override { return false; }
  bool isProcessTrustedWithOptions(bool) override { return false; }
  std::shared_ptr<AccessibilityElement> applicationElement(std::int32_t) override {
    return nullptr;
  }
  std::optional<AccessibilityValue> makePointValue(Point) override { return std::nullopt; }
  GetWindowNumber windowNumberFunctionNamed(const std::string&) override { return nullptr; }
};

/// Joins the two halves: the toolkit's (windows, event loop) and X11's (listing, capture, drawing).
class LinuxBackend final : public Backend {
 public:
  /// `programPath` is argv[0], which outlives it.
  LinuxBackend(std::unique_ptr<X11Desktop> desktop, char* programPath)
      : desktop_(std::move(desktop)), programPath_(programPath) {}

  /// The toolkit comes with the application object. Until then there are displays, and classes for
  /// virtual ones, alone.
  Application& application() override {
    if (!toolkit_) toolkit_ = QtDesktop::start(programPath_, *desktop_);
    return toolkit_->application();
  }

  DispatchBackend& dispatch() override { return toolkit_->dispatch(); }
  WindowBackend& windows() override { return toolkit_->windows(); }
  ScreenCaptureBackend& screenCapture() override { return *desktop_; }
  WorkspaceBackend& workspace() override { return toolkit_->workspace(); }
  DisplayBackend& displays() override { return displays_; }
  VirtualDisplayBackend& virtualDisplays() override { return virtualDisplays_; }
  AccessibilityBackend& accessibility() override { return accessibility_; }

 private:
  std::unique_ptr<X11Desktop> desktop_;  // outlives the toolkit, whose windows it draws
  char* const programPath_;
  NoDisplays displays_;
  NoVirtualDisplays virtualDisplays_;
  NoAccessibility accessibility_;
  std::unique_ptr<QtDesktop> toolkit_;
};

}  // namespace vistrel::platform::linux_desktop
