#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <vector>

#include "platform/linux/SerialQueue.h"
#include "platform/linux/wayland/kwin/KWinScripts.h"
#include "platform/linux/wayland/kwin/WorkAreas.h"
#include "platform/linux/x11/server/Connection.h"

namespace vistrel::platform::linux_desktop {

/// Follows what KWin leaves of each output. It tells X clients only that something about that has
/// changed, by writing `_NET_WORKAREA` anew; a script is asked what, on a queue of this object's
/// own with a connection of its own.
class WorkAreaWatch : public std::enable_shared_from_this<WorkAreaWatch> {
 public:
  /// Null when the display refuses. `changed` is called on the queue whenever they have become
  /// others, the first time once KWin has told of them; until the queues' threads end.
  static std::shared_ptr<WorkAreaWatch> start(std::function<void()> changed);
  WorkAreaWatch(const WorkAreaWatch&) = delete;
  WorkAreaWatch& operator=(const WorkAreaWatch&) = delete;

  /// None until KWin has told of them. Any thread.
  std::vector<WorkArea> areas() const;

 private:
  WorkAreaWatch(std::unique_ptr<Connection> connection, std::function<void()> changed);

  void serve();
  void handle(const xcb_generic_event_t& event);
  void refresh();

  const std::shared_ptr<SerialQueue> queue_;
  const std::unique_ptr<Connection> connection_;
  const std::function<void()> changed_;
  KWinScripts scripts_;
  bool isStale_ = true;
  mutable std::mutex mutex_;
  std::vector<WorkArea> areas_;  // guarded by mutex_
};

}  // namespace vistrel::platform::linux_desktop
