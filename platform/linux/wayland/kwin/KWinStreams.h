#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/SerialQueue.h"
#include "platform/linux/wayland/compositor/WaylandConnection.h"
#include "platform/linux/wayland/stream/StreamOffer.h"

struct zkde_screencast_stream_unstable_v1;
struct zkde_screencast_unstable_v1;

namespace vistrel::platform::linux_desktop {

class KWinStreams;

/// KWin's stream of one window. On its queue only.
class KWinStream final : public StreamOffer {
 public:
  KWinStream(std::shared_ptr<KWinStreams> streams, zkde_screencast_stream_unstable_v1* stream);
  ~KWinStream() override;

  std::optional<PipeWireNode> node() const override { return node_; }
  bool hasEnded() const override { return hasEnded_; }
  void setOnChange(std::function<void()> changed) override { changed_ = std::move(changed); }
  void awaitAnswer() override;

 private:
  friend class KWinStreams;

  const std::shared_ptr<KWinStreams> streams_;
  zkde_screencast_stream_unstable_v1* const stream_;
  std::function<void()> changed_;
  std::optional<PipeWireNode> node_;
  bool hasEnded_ = false;
  bool hasNews_ = false;
};

/// Has KWin stream windows of all programs (zkde_screencast_unstable_v1), over one connection for
/// each queue, which is served there. On its queue only.
class KWinStreams : public std::enable_shared_from_this<KWinStreams> {
 public:
  /// How that window is asked for on `queue`, on which this is called; none where it cannot be.
  static std::optional<StreamRequest> request(const std::shared_ptr<SerialQueue>& queue,
                                              const std::string& uuid);
  /// That of the queue that this is called on. Null when no compositor answers, and when it does
  /// not offer streams to this program.
  static std::shared_ptr<KWinStreams> ofQueue(const std::shared_ptr<SerialQueue>& queue);
  KWinStreams(const KWinStreams&) = delete;
  KWinStreams& operator=(const KWinStreams&) = delete;
  ~KWinStreams();

  /// The window's content without its decoration and shadow, with the pointer's place beside it.
  std::unique_ptr<StreamOffer> stream(const std::string& uuid);

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
