#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/SerialQueue.h"
#include "platform/linux/wayland/compositor/WaylandConnection.h"

struct zkde_screencast_stream_unstable_v1;
struct zkde_screencast_unstable_v1;

namespace vistrel::platform::linux_desktop {

class KWinStreams;

/// KWin's stream of one window, for as long as this lives. On its queue only.
class KWinStream {
 public:
  KWinStream(std::shared_ptr<KWinStreams> streams, zkde_screencast_stream_unstable_v1* stream);
  KWinStream(const KWinStream&) = delete;
  KWinStream& operator=(const KWinStream&) = delete;
  ~KWinStream();

  /// The node of PipeWire that shows the window; none before KWin has answered.
  const std::optional<std::uint32_t>& node() const { return node_; }
  /// There is no such window, it is closed, or KWin cannot stream it (any more).
  bool hasEnded() const { return hasEnded_; }
  /// To be called after either has changed, last of all: it may destroy the stream.
  void setOnChange(std::function<void()> changed) { changed_ = std::move(changed); }
  /// Waits until either is known, a second at most.
  void awaitAnswer();

 private:
  friend class KWinStreams;

  const std::shared_ptr<KWinStreams> streams_;
  zkde_screencast_stream_unstable_v1* const stream_;
  std::function<void()> changed_;
  std::optional<std::uint32_t> node_;
  bool hasEnded_ = false;
  bool hasNews_ = false;
};

/// Has KWin stream windows of all programs (zkde_screencast_unstable_v1), over one connection for
/// each queue, which is served there. On its queue only.
class KWinStreams : public std::enable_shared_from_this<KWinStreams> {
 public:
  /// That of the queue that this is called on. Null when no compositor answers, and when it does
  /// not offer streams to this program.
  static std::shared_ptr<KWinStreams> ofQueue(const std::shared_ptr<SerialQueue>& queue);
  KWinStreams(const KWinStreams&) = delete;
  KWinStreams& operator=(const KWinStreams&) = delete;
  ~KWinStreams();

  /// The window's content without its decoration and shadow, with the pointer's place beside it.
  std::unique_ptr<KWinStream> stream(const std::string& uuid);

 private:
  friend class KWinStream;

  KWinStreams(const std::shared_ptr<SerialQueue>& queue,
              std::unique_ptr<WaylandConnection> connection,
              zkde_screencast_unstable_v1* screencast);
  void serve();

  const std::weak_ptr<SerialQueue> queue_;
  const std::unique_ptr<WaylandConnection> connection_;
  zkde_screencast_unstable_v1* const screencast_;
  std::vector<KWinStream*> running_;
};

}  // namespace vistrel::platform::linux_desktop
