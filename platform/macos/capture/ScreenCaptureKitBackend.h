#pragma once

#include "platform/Backend.h"

namespace vistrel::platform::macos {

/// Permission, listing and capture through ScreenCaptureKit.
class ScreenCaptureKitBackend final : public ScreenCaptureBackend {
 public:
  bool preflightScreenCaptureAccess() override;
  bool requestScreenCaptureAccess() override;
  void getShareableContent(DesktopWindows desktopWindows, ListedWindows listedWindows,
                           ShareableContentCompletion completion) override;
  std::shared_ptr<Stream> makeStream(const ContentFilter& filter,
                                     const StreamConfiguration& configuration,
                                     std::weak_ptr<StreamDelegate> delegate) override;
  std::shared_ptr<ImageContext> makeImageContext(const ImageContextOptions& options) override;
};

}  // namespace vistrel::platform::macos
