#pragma once

#include <memory>

#include "platform/Backend.h"
#include "platform/VirtualDisplayClasses.h"
#include "platform/linux/StandardError.h"
#include "platform/linux/qt/QtDesktop.h"
#include "platform/linux/session/Session.h"

namespace vistrel::platform::linux_desktop {

/// The seam's listing and capturing, by the session's providers of these.
class SessionScreenCapture final : public ScreenCaptureBackend {
 public:
  /// Both outlive it.
  SessionScreenCapture(WindowLister& lister, WindowStreams& streams)
      : lister_(lister), streams_(streams) {}

  bool preflightScreenCaptureAccess() override { return streams_.isCaptureOffered(); }
  bool requestScreenCaptureAccess() override { return streams_.isCaptureOffered(); }
  void getShareableContent(DesktopWindows desktopWindows, ListedWindows listedWindows,
                           ShareableContentCompletion completion) override;
  std::shared_ptr<Stream> makeStream(const ContentFilter& filter,
                                     const StreamConfiguration& configuration,
                                     std::weak_ptr<StreamDelegate> delegate) override;
  std::shared_ptr<ImageContext> makeImageContext(const ImageContextOptions& options) override;

 private:
  WindowLister& lister_;
  WindowStreams& streams_;
};

/// Joins the toolkit (windows, event loop) and the session's providers (listing, capture, drawing,
/// displays).
class LinuxBackend final : public Backend {
 public:
  /// `programPath` is argv[0], which outlives it.
  LinuxBackend(std::unique_ptr<Session> session, char* programPath);

  DispatchBackend& dispatch() override { return toolkit().dispatch(); }
  WindowBackend& windows() override { return toolkit().windows(); }
  WorkspaceBackend& workspace() override { return toolkit().workspace(); }
  Application& application() override { return toolkit().application(); }
  ScreenCaptureBackend& screenCapture() override { return screenCapture_; }
  DisplayBackend& displays() override { return *session_->displays; }
  VirtualDisplayBackend& virtualDisplays() override { return virtualDisplays_; }
  AccessibilityBackend& accessibility() override { return *session_->otherWindows; }
  StandardErrorBackend& standardError() override { return standardError_; }

 private:
  /// Starts with whatever of it is asked for first, which is to be done on the main thread.
  QtDesktop& toolkit();

  const std::unique_ptr<Session> session_;  // outlives the toolkit, whose windows it draws
  char* const programPath_;
  SessionScreenCapture screenCapture_;
  VirtualDisplayClasses virtualDisplays_;
  StandardError standardError_;
  std::unique_ptr<QtDesktop> qt_;
};

}  // namespace vistrel::platform::linux_desktop
