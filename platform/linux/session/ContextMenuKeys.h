#pragma once

#include <functional>

namespace vistrel::platform::linux_desktop {

/// The keys that ask for a context menu (Menu, Shift+F10), for windows that never have the
/// keyboard. Main thread.
class ContextMenuKeys {
 public:
  virtual ~ContextMenuKeys() = default;

  /// From now on they call `pressed`, on the main queue, whatever window has the keyboard. A key
  /// that another program has taken stays with it.
  virtual void take(std::function<void()> pressed) = 0;
  /// Lets them be.
  virtual void release() = 0;
};

}  // namespace vistrel::platform::linux_desktop
