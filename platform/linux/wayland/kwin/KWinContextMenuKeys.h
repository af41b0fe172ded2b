#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "platform/linux/SerialQueue.h"
#include "platform/linux/session/ContextMenuKeys.h"
#include "platform/linux/wayland/kwin/GlobalMenuKeys.h"
#include "platform/linux/wayland/kwin/KWinGuard.h"

namespace vistrel::platform::linux_desktop {

/// By global shortcuts of KWin's, since X is told no keys while a native window has the keyboard;
/// and by X's way, for keys that KWin does not give us. KWin tells X nothing of those that it does.
class KWinContextMenuKeys final : public ContextMenuKeys {
 public:
  /// Outlives the main queue's blocks.
  KWinContextMenuKeys(std::unique_ptr<ContextMenuKeys> x, std::shared_ptr<KWinGuard> guard)
      : x_(std::move(x)), guard_(std::move(guard)) {}
  KWinContextMenuKeys(const KWinContextMenuKeys&) = delete;
  KWinContextMenuKeys& operator=(const KWinContextMenuKeys&) = delete;
  /// Returns once they are released.
  ~KWinContextMenuKeys() override;

  void take(std::function<void()> pressed) override;
  void release() override;

 private:
  class Served;

  const std::unique_ptr<ContextMenuKeys> x_;
  const std::shared_ptr<KWinGuard> guard_;
  std::shared_ptr<SerialQueue> queue_;  // from the first use on
  std::shared_ptr<Served> served_;      // likewise; used on the queue
  std::function<void()> pressed_;       // null while they are not taken
};

}  // namespace vistrel::platform::linux_desktop
