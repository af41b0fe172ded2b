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

bool WindowMirrorManager::isScreenCaptureAllowed() {
  return platform::preflightScreenCaptureAccess() || platform::requestScreenCaptureAccess();
}

void WindowMirrorManager::requestWindows(WindowsAnswer answer) {
  platform::getShareableContent(
      platform::DesktopWindows::included, platform::ListedWindows::onScreen,
      [weak = weak_from_this(), answer = std::move(answer)](
          const std::shared_ptr<const ShareableContent>& content, const std::optional<Error>&) {
        const auto self = weak.lock();
        if (!self || !content) return answer(std::nullopt);
        answer(self->filteredWindows(content->windows));
      });
}

void WindowMirrorManager::fetchWindows(FetchCompletion completion) {
  if (!isScreenCaptureAllowed()) return completion({});
  requestWindows([completion = std::move(completion)](std::optional<Windows> windows) {
    platform::mainQueue().async(
        [completion, windows = std::move(windows)] { completion(windows.value_or(Windows{})); });
  });
}

std::vector<WindowRecord> WindowMirrorManager::filteredWindows(
    const std::vector<WindowRecord>& windows) const {
  return mirrorWorthyWindows(windows, platform::processIdentifier());
}

void WindowMirrorManager::refreshWindowsBlocking(double timeoutSeconds) {
  const auto answered = platform::makeSemaphore(0);
  requestWindows([weak = weak_from_this(), answered](std::optional<Windows> windows) {
    const auto self = weak.lock();
    if (self && windows) self->cachedWindows_.store(*std::move(windows));
    answered->signal();
  });
  answered->wait(timeoutSeconds);
}

void WindowMirrorManager::openScreenRecordingSettings() {
  platform::openURL(
      "x-apple.systempreferences:com.apple.preference.security?Privacy_ScreenCapture");
}

}  // namespace vistrel
