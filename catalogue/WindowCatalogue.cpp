#include <optional>
#include <utility>

#include "catalogue/MirrorWorthyWindows.h"
#include "catalogue/WindowMirrorManager.h"
#include "platform/Dispatch.h"
#include "platform/Workspace.h"

namespace vistrel {

using platform::Error;
using platform::ShareableContent;
using platform::WindowRecord;

namespace {

/// Asks a person only where the permission is not there yet.
bool isScreenCaptureAllowed() {
  return platform::preflightScreenCaptureAccess() || platform::requestScreenCaptureAccess();
}

}  // namespace

void WindowMirrorManager::fetchWindows(FetchCompletion completion) {
  if (!isScreenCaptureAllowed()) return completion({});
  platform::getShareableContent(
      /*excludingDesktopWindows=*/false, /*onScreenWindowsOnly=*/true,
      [weak = weak_from_this(), completion = std::move(completion)](
          const std::shared_ptr<const ShareableContent>& content, const std::optional<Error>&) {
        const auto self = weak.lock();
        std::vector<WindowRecord> windows;
        if (self && content) windows = self->filteredWindows(content->windows);
        platform::mainQueue().async(
            [completion, windows = std::move(windows)] { completion(windows); });
      });
}

std::vector<WindowRecord> WindowMirrorManager::filteredWindows(
    const std::vector<WindowRecord>& windows) const {
  return mirrorWorthyWindows(windows, platform::processIdentifier());
}

void WindowMirrorManager::refreshWindowsBlocking(double timeoutSeconds) {
  const auto answered = platform::makeSemaphore(0);
  platform::getShareableContent(
      /*excludingDesktopWindows=*/false, /*onScreenWindowsOnly=*/true,
      [weak = weak_from_this(), answered](const std::shared_ptr<const ShareableContent>& content,
                                          const std::optional<Error>&) {
        const auto self = weak.lock();
        if (self && content) self->cachedWindows_.store(self->filteredWindows(content->windows));
        answered->signal();
      });
  answered->wait(timeoutSeconds);
}

void WindowMirrorManager::openScreenRecordingSettings() {
  platform::openURL(
      "x-apple.systempreferences:com.apple.preference.security?Privacy_ScreenCapture");
}

}  // namespace vistrel
