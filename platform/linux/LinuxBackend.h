#pragma once

#include <memory>
#include <utility>

#include "platform/Backend.h"
#include "platform/linux/X11Desktop.h"
#include "platform/linux/qt/QtDesktop.h"

namespace vistrel::platform::linux_desktop {

/// Joins the two halves: the toolkit's (windows, event loop) and X11's (listing, capture, drawing).
class LinuxBackend final : public Backend {
 public:
  LinuxBackend(std::unique_ptr<X11Desktop> desktop, std::unique_ptr<QtDesktop> toolkit)
      : desktop_(std::move(desktop)), toolkit_(std::move(toolkit)) {}

  DispatchBackend& dispatch() override { return toolkit_->dispatch(); }
  WindowBackend& windows() override { return toolkit_->windows(); }
  ScreenCaptureBackend& screenCapture() override { return *desktop_; }
  WorkspaceBackend& workspace() override { return toolkit_->workspace(); }
  Application& application() override { return toolkit_->application(); }

 private:
  std::unique_ptr<X11Desktop> desktop_;  // outlives the toolkit, whose windows it draws
  std::unique_ptr<QtDesktop> toolkit_;
};

}  // namespace vistrel::platform::linux_desktop
