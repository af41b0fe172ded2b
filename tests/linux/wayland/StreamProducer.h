#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <pipewire/pipewire.h>
#include <spa/param/video/raw.h>

namespace vistrel::testbed {

/// A program that streams pictures through PipeWire as a compositor does: a node of its own that
/// sends what it likes when it likes, in memory of its own. It can lie about all of it. PipeWire is
/// that of the environment. One thread.
class StreamProducer {
 public:
  /// What the stream is said to be.
  struct Offer {
    std::uint32_t width = 64;
    std::uint32_t height = 48;
    spa_video_format format = SPA_VIDEO_FORMAT_BGRx;
    /// Whether the memory is not sealed against being cut.
    bool canBeCut = false;
    /// How many bytes each buffer's memory has less than is said.
    std::uint32_t missing = 0;
  };
  /// What is said with one buffer. Where nothing is, what is true.
  struct Frame {
    /// The pixel at (x, y) is `first` + y * 256 + x.
    std::uint32_t first = 0;
    std::optional<std::uint32_t> offset = {};
    std::optional<std::uint32_t> bytes = {};
    std::optional<std::int32_t> stride = {};
    std::optional<spa_region> crop = {};
    /// Nowhere over the picture where there is none.
    std::optional<spa_point> pointer = {};
  };

  /// Returns once it can be connected to. Throws std::runtime_error where it cannot.
  explicit StreamProducer(const Offer& offer);
  ~StreamProducer();
  StreamProducer(const StreamProducer&) = delete;
  StreamProducer& operator=(const StreamProducer&) = delete;

  std::uint32_t node() const { return node_; }
  /// Streams something else from now on.
  void change(const Offer& offer);
  /// False while nobody takes it.
  [[nodiscard]] bool send(const Frame& frame);
  /// How often it has begun to be taken.
  int starts() const;
  /// Cuts the memory of all of its buffers, as far as that is possible.
  void cutMemory();
  /// The stream ends.
  void end();
  /// The program is gone at once, as when it is killed.
  void vanish();

 private:
  struct Close {
    void operator()(pw_thread_loop* loop) const { pw_thread_loop_destroy(loop); }
    void operator()(pw_context* context) const { pw_context_destroy(context); }
    void operator()(pw_core* core) const { pw_core_disconnect(core); }
    void operator()(pw_stream* stream) const { pw_stream_destroy(stream); }
  };
  class Lock;
  class Memory;

  // What PipeWire tells, on its thread.
  void stateChanged(pw_stream_state state);
  void formatChanged();
  void add(pw_buffer* buffer);
  static const pw_stream_events& events();

  std::unique_ptr<pw_thread_loop, Close> loop_;
  std::unique_ptr<pw_context, Close> context_;
  std::unique_ptr<pw_core, Close> core_;
  std::unique_ptr<pw_stream, Close> stream_;
  spa_hook listener_{};
  std::uint32_t node_ = SPA_ID_INVALID;
  // Under the loop's lock:
  Offer offer_;
  std::map<pw_buffer*, std::unique_ptr<Memory>> buffers_;
  pw_stream_state state_ = PW_STREAM_STATE_UNCONNECTED;
  int starts_ = 0;
};

}  // namespace vistrel::testbed
