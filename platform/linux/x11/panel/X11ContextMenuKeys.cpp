#include "platform/linux/x11/panel/X11ContextMenuKeys.h"

namespace vistrel::platform::linux_desktop {

void X11ContextMenuKeys::take(std::function<void()> pressed) {
  pressed_ = std::move(pressed);
  if (!keys_) {
    keys_ = MenuKeys::on(queue_, [this] {
      mainQueue().async([this] {
        if (const auto handler = pressed_) handler();
      });
    });
  }
  if (keys_) queue_->async([keys = keys_] { keys->take(); });
}

void X11ContextMenuKeys::release() {
  pressed_ = nullptr;
  if (keys_) queue_->async([keys = keys_] { keys->release(); });
}

}  // namespace vistrel::platform::linux_desktop
