#pragma once

#include <optional>

#include "platform/Backend.h"
#include "platform/macos/GrandCentralDispatch.h"
#include "platform/macos/StandardError.h"
#include "platform/macos/accessibility/SystemAccessibility.h"
#include "platform/macos/application/AppKitApplication.h"
#include "platform/macos/capture/ScreenCaptureKitBackend.h"
#include "platform/macos/displays/CoreGraphicsDisplays.h"
#include "platform/macos/displays/ObjectiveCClasses.h"
#include "platform/macos/windows/AppKitWindows.h"
#include "platform/macos/workspace/AppKitWorkspace.h"

namespace vistrel::platform::macos {

/// The desktop of a person who is logged in.
class MacBackend final : public Backend {
 public:
  DispatchBackend& dispatch() override { return dispatch_; }
  WindowBackend& windows() override { return windows_; }
  ScreenCaptureBackend& screenCapture() override { return screenCapture_; }
  WorkspaceBackend& workspace() override { return workspace_; }
  DisplayBackend& displays() override { return displays_; }
  VirtualDisplayBackend& virtualDisplays() override { return virtualDisplays_; }
  AccessibilityBackend& accessibility() override { return accessibility_; }
  StandardErrorBackend& standardError() override { return standardError_; }
  Application& application() override;

 private:
  GrandCentralDispatch dispatch_;
  AppKitWindows windows_;
  ScreenCaptureKitBackend screenCapture_;
  AppKitWorkspace workspace_;
  CoreGraphicsDisplays displays_;
  ObjectiveCClasses virtualDisplays_;
  SystemAccessibility accessibility_;
  StandardError standardError_;
  std::optional<AppKitApplication> application_;
};

}  // namespace vistrel::platform::macos
