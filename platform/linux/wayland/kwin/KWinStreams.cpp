#include "platform/linux/wayland/kwin/KWinStreams.h"

#include <algorithm>
#include <poll.h>
#include <utility>
#include <zkde-screencast-unstable-v1.h>

#include "platform/linux/Trace.h"

namespace vistrel::platform::linux_desktop {
KWinStream::KWinStream(std::shared_ptr<KWinStreams> streams,
                       zkde_screencast_stream_unstable_v1* stream)
    : streams_(std::move(streams)), stream_(stream) {
  static constexpr zkde_screencast_stream_unstable_v1_listener listener{
      [](void* self, zkde_screencast_stream_unstable_v1*) {
        static_cast<KWinStream*>(self)->hasEnded_ = true;
        static_cast<KWinStream*>(self)->hasNews_ = true;
      },
      [](void* self, zkde_screencast_stream_unstable_v1*, std::uint32_t node) {
        static_cast<KWinStream*>(self)->node_ = PipeWireNode{.id = node};
        static_cast<KWinStream*>(self)->hasNews_ = true;
      },
      [](void* self, zkde_screencast_stream_unstable_v1*, const char* error) {
        trace(TraceTopic::capture, [&] { return std::string("KWin streams no window: ") + error; });
        static_cast<KWinStream*>(self)->hasEnded_ = true;
        static_cast<KWinStream*>(self)->hasNews_ = true;
      }};
  zkde_screencast_stream_unstable_v1_add_listener(stream_, &listener, this);
  streams_->running_.push_back(this);
}

KWinStream::~KWinStream() {
  std::erase(streams_->running_, this);
  zkde_screencast_stream_unstable_v1_close(stream_);
  wl_display_flush(streams_->connection_->display());
}

void KWinStream::awaitAnswer() {
  constexpr double longest = 1;
  const double deadline = monotonicNow() + longest;
  while (!node_ && !hasEnded_ && !streams_->connection_->isLost()) {
    const double left = deadline - monotonicNow();
    if (left <= 0) return;
    wl_display_flush(streams_->connection_->display());
    pollfd answer{.fd = streams_->connection_->descriptor(), .events = POLLIN, .revents = 0};
    poll(&answer, 1, static_cast<int>(left * 1000) + 1);
    streams_->connection_->serve();
  }
}

std::optional<StreamRequest> KWinStreams::request(const std::shared_ptr<SerialQueue>& queue,
                                                  const std::string& uuid) {
  auto streams = uuid.empty() ? nullptr : ofQueue(queue);
  if (!streams) return std::nullopt;
  return StreamRequest{
      .ask = [streams = std::move(streams), uuid](StreamRequest::Occasion /*occasion*/) {
        return streams->stream(uuid);
      }};
}

std::shared_ptr<KWinStreams> KWinStreams::ofQueue(const std::shared_ptr<SerialQueue>& queue) {
  // A queue is one thread.
  static thread_local std::weak_ptr<KWinStreams> current;
  if (auto streams = current.lock(); streams && !streams->connection_->isLost()) return streams;
  auto connection = WaylandConnection::open();
  if (!connection) return nullptr;
  constexpr std::uint32_t newestKnown = 3;
  auto* const screencast = connection->bind<zkde_screencast_unstable_v1>(
      zkde_screencast_unstable_v1_interface, newestKnown);
  if (screencast == nullptr) return nullptr;
  std::shared_ptr<KWinStreams> streams(new KWinStreams(queue, std::move(connection), screencast));
  // What watches may be called once more after it has been given up.
  queue->watch(streams->connection_->descriptor(), [weak = std::weak_ptr(streams)] {
    if (const auto strong = weak.lock()) strong->serve();
  });
  current = streams;
  return streams;
}

KWinStreams::KWinStreams(const std::shared_ptr<SerialQueue>& queue,
                         std::unique_ptr<WaylandConnection> connection,
                         zkde_screencast_unstable_v1* screencast)
    : queue_(queue), connection_(std::move(connection)), screencast_(screencast) {}

KWinStreams::~KWinStreams() {
  if (const auto queue = queue_.lock()) queue->unwatch(connection_->descriptor());
  zkde_screencast_unstable_v1_destroy(screencast_);
}

std::unique_ptr<StreamOffer> KWinStreams::stream(const std::string& uuid) {
  auto* const stream = zkde_screencast_unstable_v1_stream_window(
      screencast_, uuid.c_str(), ZKDE_SCREENCAST_UNSTABLE_V1_POINTER_METADATA);
  return std::make_unique<KWinStream>(shared_from_this(), stream);
}

void KWinStreams::serve() {
  connection_->serve();
  if (connection_->isLost()) {
    // The queue would be woken for ever. X's server goes with the compositor, and the program.
    if (const auto queue = queue_.lock()) queue->unwatch(connection_->descriptor());
    for (auto* const each : running_) each->hasNews_ = each->hasEnded_ = true;
  }
  // One that is told may take others along.
  for (auto next = running_.begin(); next != running_.end();) {
    if (!std::exchange((*next)->hasNews_, false)) {
      ++next;
      continue;
    }
    const auto changed = (*next)->changed_;
    if (changed) changed();
    next = running_.begin();
  }
}

}  // namespace vistrel::platform::linux_desktop
