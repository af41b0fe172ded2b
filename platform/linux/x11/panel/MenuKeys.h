#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "platform/linux/SerialQueue.h"
#include "platform/linux/x11/server/Connection.h"

namespace vistrel::platform::linux_desktop {

/// The keys that ask for a context menu, Menu and Shift+F10, for windows that never have the
/// keyboard: while they are taken, pressing one tells us and not the window that has it.
class MenuKeys {
 public:
  /// Works on `queue` for as long as that runs; null when the display refuses. `pressed` is called
  /// on the queue, once the keyboard is free again. Any thread.
  static std::shared_ptr<MenuKeys> on(const std::shared_ptr<SerialQueue>& queue,
                                      std::function<void()> pressed);

  /// A key that another program has taken stays with it. On the queue.
  void take();
  void release();

 private:
  struct Key {
    xcb_keycode_t code;
    std::uint16_t modifiers;
  };

  MenuKeys(std::unique_ptr<Connection> connection, std::function<void()> pressed);

  void serve();
  void handle(const xcb_generic_event_t& event);
  std::vector<Key> keysOfKeyboard();

  std::unique_ptr<Connection> connection_;
  const std::function<void()> pressed_;
  std::vector<Key> taken_;
};

}  // namespace vistrel::platform::linux_desktop
