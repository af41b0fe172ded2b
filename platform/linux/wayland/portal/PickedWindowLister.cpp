#include "platform/linux/wayland/portal/PickedWindowLister.h"

#include <utility>

namespace vistrel::platform::linux_desktop {

void PickedWindowLister::request(DesktopWindows desktopWindows, ListedWindows listedWindows,
                                 ShareableContentCompletion completion) {
  x_->request(
      desktopWindows, listedWindows,
      [picked = picked_, listedWindows, completion = std::move(completion)](
          const std::shared_ptr<const ShareableContent>& ofX, const std::optional<Error>& error) {
        if (!ofX) return completion(nullptr, error);
        auto content = std::make_shared<ShareableContent>(*ofX);
        const auto records = picked->records(listedWindows);
        content->windows.insert(content->windows.end(), records.begin(), records.end());
        completion(std::move(content), std::nullopt);
      });
}

}  // namespace vistrel::platform::linux_desktop
