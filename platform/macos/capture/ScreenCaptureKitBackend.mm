#include "platform/macos/capture/ScreenCaptureKitBackend.h"

#import <CoreGraphics/CoreGraphics.h>
#import <ScreenCaptureKit/ScreenCaptureKit.h>

#include <utility>

#include "platform/macos/Conversions.h"
#include "platform/macos/capture/CoreImageContext.h"
#include "platform/macos/capture/ScreenCaptureKitStream.h"
#include "platform/macos/capture/ShareableWindowRecord.h"

namespace vistrel::platform::macos {

bool ScreenCaptureKitBackend::preflightScreenCaptureAccess() {
  return CGPreflightScreenCaptureAccess();
}

bool ScreenCaptureKitBackend::requestScreenCaptureAccess() {
  return CGRequestScreenCaptureAccess();
}

void ScreenCaptureKitBackend::getShareableContent(DesktopWindows desktopWindows,
                                                  ListedWindows listedWindows,
                                                  ShareableContentCompletion completion) {
  [SCShareableContent
      getShareableContentExcludingDesktopWindows:desktopWindows == DesktopWindows::excluded
                             onScreenWindowsOnly:listedWindows == ListedWindows::onScreen
                               completionHandler:^(SCShareableContent* content, NSError* error) {
                                 completion(content != nil ? shareableContent(content) : nullptr,
                                            coreError(error));
                               }];
}

std::shared_ptr<Stream> ScreenCaptureKitBackend::makeStream(
    const ContentFilter& filter, const StreamConfiguration& configuration,
    std::weak_ptr<StreamDelegate> delegate) {
  return ScreenCaptureKitStream::make(filter, configuration, std::move(delegate));
}

std::shared_ptr<ImageContext> ScreenCaptureKitBackend::makeImageContext(
    const ImageContextOptions& options) {
  return std::make_shared<CoreImageContext>(options);
}

}  // namespace vistrel::platform::macos
