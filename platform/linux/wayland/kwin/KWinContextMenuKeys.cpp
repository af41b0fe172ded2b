#include "platform/linux/wayland/kwin/KWinContextMenuKeys.h"

#include "platform/linux/Trace.h"

namespace vistrel::platform::linux_desktop {

/// What lives on the queue: the bus may let one wait.
class KWinContextMenuKeys::Served : public std::enable_shared_from_this<Served> {
 public:
  Served(SerialQueue& queue, std::function<void()> pressed)
      : queue_(queue), pressed_(std::move(pressed)) {}

  void take() {
    if (!keys_) connect();
    if (keys_) keys_->take();
  }
  void release() {
    if (keys_) keys_->release();
  }

 private:
  void connect() {
    keys_ = GlobalMenuKeys::connect(pressed_);
    if (!keys_) {
      return trace(TraceTopic::manager, [] { return "no session bus gives the menu keys"; });
    }
    queue_.watch(keys_->descriptor(), [weak = weak_from_this()] {
      if (const auto strong = weak.lock()) strong->serve();
    });
  }
  void serve() {
    if (!keys_ || keys_->serve()) return;
    queue_.unwatch(keys_->descriptor());
    keys_.reset();
  }

  SerialQueue& queue_;
  const std::function<void()> pressed_;
  std::unique_ptr<GlobalMenuKeys> keys_;
};

KWinContextMenuKeys::~KWinContextMenuKeys() {
  if (!queue_) return;
  bool isReleased = false;
  asyncAndWait(*queue_, [&] {
    served_->release();
    isReleased = true;
  });
  // The queues' threads may have ended before the session.
  if (!isReleased) served_->release();
}

void KWinContextMenuKeys::take(std::function<void()> pressed) {
  x_->take(pressed);
  pressed_ = std::move(pressed);
  guard_->ensureRunning();
  if (!queue_) {
    queue_ = SerialQueue::make("vistrel.menu-keys", QualityOfService::userInteractive);
    served_ = std::make_shared<Served>(*queue_, [this] {
      mainQueue().async([this] {
        if (const auto handler = pressed_) handler();
      });
    });
  }
  queue_->async([served = served_] { served->take(); });
}

void KWinContextMenuKeys::release() {
  x_->release();
  pressed_ = nullptr;
  if (queue_) queue_->async([served = served_] { served->release(); });
}

}  // namespace vistrel::platform::linux_desktop
