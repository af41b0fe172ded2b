#include "platform/linux/wayland/kwin/WorkAreaWatch.h"

#include <string>
#include <utility>

#include "platform/linux/Trace.h"
#include "platform/linux/x11/server/Events.h"

namespace vistrel::platform::linux_desktop {
namespace {

/// How long KWin may take to tell, in seconds: nobody waits for it.
constexpr double patience = 10;

}  // namespace

std::shared_ptr<WorkAreaWatch> WorkAreaWatch::start(std::function<void()> changed) {
  auto connection = Connection::open();
  if (!connection) return nullptr;
  std::shared_ptr<WorkAreaWatch> areas(
      new WorkAreaWatch(std::move(connection), std::move(changed)));
  areas->queue_->async([weak = std::weak_ptr(areas)] {
    const auto strong = weak.lock();
    if (!strong) return;
    strong->queue_->watch(strong->connection_->descriptor(), [weak] {
      if (const auto watched = weak.lock()) watched->serve();
    });
  });
  return areas;
}

WorkAreaWatch::WorkAreaWatch(std::unique_ptr<Connection> connection, std::function<void()> changed)
    : queue_(SerialQueue::make("vistrel.work-areas", QualityOfService::standard)),
      connection_(std::move(connection)),
      changed_(std::move(changed)) {
  forgive(connection_->xcb(),
          connection_->selectEvents(connection_->root(), XCB_EVENT_MASK_PROPERTY_CHANGE |
                                                             XCB_EVENT_MASK_STRUCTURE_NOTIFY));
  // From before KWin is first asked on.
  connection_->sync();
}

std::vector<WorkArea> WorkAreaWatch::areas() const {
  const std::lock_guard lock(mutex_);
  return areas_;
}

void WorkAreaWatch::serve() {
  if (connection_->isLost()) return queue_->unwatch(connection_->descriptor());
  connection_->serve([this](const xcb_generic_event_t& event) { handle(event); },
                     [this] {
                       if (std::exchange(isStale_, false)) refresh();
                     });
}

void WorkAreaWatch::handle(const xcb_generic_event_t& event) {
  isStale_ =
      isStale_ || typeOf(event) == XCB_CONFIGURE_NOTIFY ||
      (typeOf(event) == XCB_PROPERTY_NOTIFY &&
       eventAs<xcb_property_notify_event_t>(event).atom == connection_->atom("_NET_WORKAREA"));
}

void WorkAreaWatch::refresh() {
  const auto told = scripts_.run(scriptThatTellsWorkAreas, monotonicNow() + patience);
  if (!told) return;
  auto current = parseWorkAreas(*told);
  {
    const std::lock_guard lock(mutex_);
    if (current == std::exchange(areas_, current)) return;
  }
  trace(TraceTopic::monitors,
        [&] { return "KWin tells the work areas of outputs: " + std::to_string(current.size()); });
  changed_();
}

}  // namespace vistrel::platform::linux_desktop
