#pragma once

#import <ScreenCaptureKit/ScreenCaptureKit.h>

#include "platform/ScreenCapture.h"

namespace vistrel::platform::macos {

/// A window record and the service's own object for the window, which a stream asks for.
struct ShareableWindowRecord : ShareableWindow {
  SCWindow* window = nil;
};

/// All records of `content`, in the service's order.
std::shared_ptr<const ShareableContent> shareableContent(SCShareableContent* content);

/// The service's object behind a record that this backend listed.
SCWindow* serviceWindow(const ShareableWindow& record);

}  // namespace vistrel::platform::macos
