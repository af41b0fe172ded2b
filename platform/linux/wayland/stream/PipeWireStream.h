#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <pipewire/pipewire.h>
#include <utility>

#include "platform/linux/SerialQueue.h"
#include "platform/linux/wayland/stream/FrameCopy.h"
#include "platform/linux/wayland/stream/PointerMeta.h"
#include "platform/linux/wayland/stream/SharedMemory.h"
#include "platform/linux/wayland/stream/StreamFrame.h"
#include "platform/linux/wayland/stream/StreamOffer.h"

namespace vistrel::platform::linux_desktop {

/// What a node of PipeWire shows, received on one queue without a lock: PipeWire's loop is served
/// there. Pixels are 32 bits each, blue first, alpha or nothing last. Neither the node nor what it
/// says is trusted. On its queue only.
class PipeWireStream {
 public:
  /// Frames are brought into `copy`, not null, one after the other. Null when PipeWire cannot be
  /// reached. `changed` is called on the queue after something below has changed, last of all: it
  /// may destroy the stream.
  static std::unique_ptr<PipeWireStream> connect(const std::shared_ptr<SerialQueue>& queue,
                                                 const PipeWireNode& node,
                                                 std::shared_ptr<FrameCopy> copy,
                                                 std::function<void()> changed);
  /// Whether PipeWire can be reached at this moment.
  static bool isReachable();
  PipeWireStream(const PipeWireStream&) = delete;
  PipeWireStream& operator=(const PipeWireStream&) = delete;
  ~PipeWireStream();

  /// Whether nothing comes any more: the node has gone, it shows what cannot be taken, it sent
  /// frames once and sends none however often it is asked, or PipeWire itself is gone.
  bool hasEnded() const { return hasEnded_; }
  /// Nothing is sent while it is not active, which costs nothing on either side. A stream that has
  /// become active sends a frame, be it the same as before.
  void setActive(bool active);
  bool isActive() const { return isActive_; }

  /// The newest frame since this was last asked; none when there is none.
  std::optional<StreamFrame> takeFrame() { return std::exchange(frame_, std::nullopt); }
  /// Whether anything was told of the pointer since this was last asked.
  bool takePointerNews() { return std::exchange(hasPointerNews_, false); }
  /// As of the newest buffer; none while the pointer is not over the window.
  const std::optional<PointerNews::Place>& pointerPlace() const { return pointerPlace_; }
  /// Another one after each change; null where there is none.
  const std::shared_ptr<const PointerImage>& pointerImage() const { return pointerImage_; }

 private:
  struct Close {
    void operator()(pw_loop* loop) const;
    void operator()(pw_context* context) const { pw_context_destroy(context); }
    void operator()(pw_core* core) const { pw_core_disconnect(core); }
    void operator()(pw_stream* stream) const { pw_stream_destroy(stream); }
  };
  /// The stream's, from their being added to their being removed, with their memory; null where
  /// there is none to be read.
  using Buffers = std::map<pw_buffer*, std::shared_ptr<const SharedMemory>>;

  PipeWireStream(const std::shared_ptr<SerialQueue>& queue, std::shared_ptr<FrameCopy> copy,
                 std::function<void()> changed);

  bool connectTo(const PipeWireNode& node);
  void serve();
  /// Last of all: it may destroy this.
  void tellNews();
  // What PipeWire tells.
  void stateChanged(pw_stream_state state, const char* error);
  void formatChanged(const spa_pod* format);
  void add(pw_buffer* buffer);
  void process();
  static const pw_stream_events& streamEvents();

  void end(const char* reason);
  /// Asks for the buffers and what is to be told with them.
  void askForBuffers();
  void take(const Buffers::value_type& buffer);
  void readPointer(const spa_buffer& buffer);
  /// None where there are no pixels in it, or none that may be read.
  std::optional<StreamFrame> frameIn(const Buffers::value_type& buffer) const;
  /// Pauses and resumes it after so many seconds, and again later, until there comes a frame; the
  /// first time also where one has come meanwhile, if so wanted.
  enum class Wake { whatever, withoutFrame };
  void wakeAfter(double seconds, Wake when = Wake::withoutFrame);
  void wake(double nextDelay);
  void restart();
  /// Its next frame is its first one.
  void begin();
  void countBuffer();
  /// Whether a change may have been lost, or the pointer's leaving.
  bool mayLackSomething() const;
  void checkLater();
  void check();

  const std::weak_ptr<SerialQueue> queue_;
  const std::shared_ptr<FrameCopy> copy_;
  const std::function<void()> changed_;
  const std::shared_ptr<const bool> alive_ = std::make_shared<const bool>(true);
  std::unique_ptr<pw_loop, Close> loop_;
  std::unique_ptr<pw_context, Close> context_;
  std::unique_ptr<pw_core, Close> core_;
  std::unique_ptr<pw_stream, Close> stream_;
  spa_hook listener_{};
  Buffers buffers_;
  std::optional<PixelSize> size_;  // as the format says; none before there is one
  std::optional<StreamFrame> frame_;
  std::optional<PointerNews::Place> pointerPlace_;
  std::shared_ptr<const PointerImage> pointerImage_;
  bool hasPointerNews_ = false;
  bool hasNews_ = false;  // for `changed`
  bool hasEnded_ = false;
  bool isActive_ = true;
  bool hasBegun_ = true;     // to be active, and no frame has come since
  bool awaitsRest_ = false;  // to be checked then
  double lastBuffer_ = 0;
  int buffersInARow_ = 0;  // without a rest between them, since it has begun
  double lastPointerNews_ = 0;
  double lastFrame_ = 0;      // 0 before the first one
  int wakes_ = 0;             // since then
  bool awaitsFrame_ = false;  // which there is to be, whether the window changes or not
  int awaited_ = 0;           // the number of the wait, for those that are over
};

}  // namespace vistrel::platform::linux_desktop
