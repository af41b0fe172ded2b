#pragma once

#include <memory>
#include <utility>

#include "platform/Backend.h"
#include "platform/VirtualDisplayClasses.h"
#include "platform/linux/StandardError.h"
#include "platform/linux/X11Desktop.h"
#include "platform/linux/qt/QtDesktop.h"

namespace vistrel::platform::linux_desktop {

/// Joins the two halves: the toolkit's (windows, event loop) and X11's (listing,
/// capture, drawing, displays).
class LinuxBackend final : public Backend {
 public:
  /// `programPath` is argv[0], which outlives it.
  LinuxBackend(std::unique_ptr<X11Desktop> desktop, char* programPath)
      : desktop_(std::move(desktop)),
        programPath_(programPath),
        virtualDisplays_(desktop_->virtualDisplays()) {}

  /// The toolkit comes with the application object. Until then there are displays, classes for
  /// virtual ones, and standard error alone.
  Application& application() override {
    if (!qt_) qt_ = QtDesktop::start(programPath_, *desktop_);
    return qt_->application();
  }

  DispatchBackend& dispatch() override { return qt_->dispatch(); }
  WindowBackend& windows() override { return qt_->windows(); }
  ScreenCaptureBackend& screenCapture() override { return *desktop_; }
  WorkspaceBackend& workspace() override { return qt_->workspace(); }
  DisplayBackend& displays() override { return desktop_->displays(); }
  VirtualDisplayBackend& virtualDisplays() override { return virtualDisplays_; }
  AccessibilityBackend& accessibility() override { return desktop_->accessibility(); }
  StandardErrorBackend& standardError() override { return standardError_; }

 private:
  std::unique_ptr<X11Desktop> desktop_;  // outlives the toolkit, whose windows it draws
  char* const programPath_;
  VirtualDisplayClasses virtualDisplays_;
  StandardError standardError_;
  std::unique_ptr<QtDesktop> qt_;
};

}  // namespace vistrel::platform::linux_desktop
