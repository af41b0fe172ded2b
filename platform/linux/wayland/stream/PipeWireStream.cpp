#include "platform/linux/wayland/stream/PipeWireStream.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <fcntl.h>
#include <spa/param/buffers.h>
#include <spa/param/video/format-utils.h>
#include <string>
#include <utility>

#include "platform/linux/Trace.h"

namespace vistrel::platform::linux_desktop {
namespace {

/// How long a stream that was resumed may take to its first frame, in seconds; they take 20 to 60
/// ms.
constexpr double usualDelay = 0.1;

/// And one that was connected, which may have to wait for the session manager.
constexpr double untilFirstFrame = 0.5;

/// How long nothing comes of a stream that rests, in seconds.
constexpr double rest = 0.5;

/// No stream has fewer: so many have to be under way before one is lacking.
constexpr int fewestBuffers = 3;

/// What PipeWire needs once in a process.
void initializePipeWire() {
  static const bool isInitialized = [] {
    pw_init(nullptr, nullptr);
    return true;
  }();
  static_cast<void>(isInitialized);
}

/// Room for what is told to PipeWire at one time.
class PodRoom {
 public:
  PodRoom() { spa_pod_builder_init(&builder_, bytes_.data(), bytes_.size()); }
  spa_pod_builder& builder() { return builder_; }

 private:
  alignas(8) std::array<std::uint8_t, 2048> bytes_{};
  spa_pod_builder builder_{};
};

/// Where windows are KWin's any other maximum than 0/1 has KWin 5.27 limit by a timer that does not
/// stop: sources that stand still arrive as 35 frames a second.
const spa_pod* offeredFormats(spa_pod_builder& builder, std::uint32_t mostFrames) {
  constexpr auto longest = static_cast<std::uint32_t>(longestStreamedSide);
  const spa_rectangle usual{1920, 1080};
  const spa_rectangle least{1, 1};
  const spa_rectangle most{longest, longest};
  const spa_fraction unlimited{0, 1};
  const spa_fraction fastest{mostFrames, 1};
  spa_pod_frame frame{};
  spa_pod_builder_push_object(&builder, &frame, SPA_TYPE_OBJECT_Format, SPA_PARAM_EnumFormat);
  spa_pod_builder_add(
      &builder, SPA_FORMAT_mediaType, SPA_POD_Id(SPA_MEDIA_TYPE_video), SPA_FORMAT_mediaSubtype,
      SPA_POD_Id(SPA_MEDIA_SUBTYPE_raw), SPA_FORMAT_VIDEO_format,
      SPA_POD_CHOICE_ENUM_Id(3, SPA_VIDEO_FORMAT_BGRx, SPA_VIDEO_FORMAT_BGRx,
                             SPA_VIDEO_FORMAT_BGRA),
      SPA_FORMAT_VIDEO_size, SPA_POD_CHOICE_RANGE_Rectangle(&usual, &least, &most),
      SPA_FORMAT_VIDEO_framerate, SPA_POD_Fraction(&unlimited), SPA_FORMAT_VIDEO_maxFramerate,
      SPA_POD_CHOICE_RANGE_Fraction(&fastest, &unlimited, &fastest), 0);
  return static_cast<const spa_pod*>(spa_pod_builder_pop(&builder, &frame));
}

const spa_pod* wantedBuffers(spa_pod_builder& builder) {
  spa_pod_frame frame{};
  spa_pod_builder_push_object(&builder, &frame, SPA_TYPE_OBJECT_ParamBuffers, SPA_PARAM_Buffers);
  // With six KWin 5.27.5 now and then never tells the pointer's picture.
  spa_pod_builder_add(&builder, SPA_PARAM_BUFFERS_buffers,
                      SPA_POD_CHOICE_RANGE_Int(4, fewestBuffers, 8), SPA_PARAM_BUFFERS_dataType,
                      SPA_POD_CHOICE_FLAGS_Int(1 << SPA_DATA_MemFd), 0);
  return static_cast<const spa_pod*>(spa_pod_builder_pop(&builder, &frame));
}

/// As much as whoever streams wants to tell, within those sizes.
const spa_pod* wantedMeta(spa_pod_builder& builder, std::uint32_t type, int least, int most) {
  spa_pod_frame frame{};
  spa_pod_builder_push_object(&builder, &frame, SPA_TYPE_OBJECT_ParamMeta, SPA_PARAM_Meta);
  spa_pod_builder_add(&builder, SPA_PARAM_META_type, SPA_POD_Id(type), SPA_PARAM_META_size,
                      SPA_POD_CHOICE_RANGE_Int(least, least, most), 0);
  return static_cast<const spa_pod*>(spa_pod_builder_pop(&builder, &frame));
}

/// Of a pointer's meta with a picture of that side.
constexpr int pointerMetaSize(int side) {
  return static_cast<int>(sizeof(spa_meta_cursor) + sizeof(spa_meta_bitmap)) + side * side * 4;
}

bool isUnderstood(const spa_video_info_raw& info) {
  constexpr auto longest = static_cast<std::uint32_t>(longestStreamedSide);
  return (info.format == SPA_VIDEO_FORMAT_BGRx || info.format == SPA_VIDEO_FORMAT_BGRA) &&
         info.size.width > 0 && info.size.width <= longest && info.size.height > 0 &&
         info.size.height <= longest;
}

/// Over a duplicate of `remote`, unless that is -1. Null when it cannot be reached.
pw_core* connectCore(pw_context* context, int remote) {
  if (remote < 0) return pw_context_connect(context, nullptr, 0);
  const int own = fcntl(remote, F_DUPFD_CLOEXEC, 0);
  // PipeWire closes it, also where it fails.
  return own < 0 ? nullptr : pw_context_connect_fd(context, own, nullptr, 0);
}

/// In memory that somebody else may write to meanwhile.
template <class T>
T readOnce(T& shared) {
  return std::atomic_ref<T>(shared).load(std::memory_order_relaxed);
}

std::optional<PixelRect> cropOf(spa_buffer& buffer) {
  auto* const meta = static_cast<spa_meta_region*>(
      spa_buffer_find_meta_data(&buffer, SPA_META_VideoCrop, sizeof(spa_meta_region)));
  if (meta == nullptr) return std::nullopt;
  auto& region = meta->region;
  // One without a size says nothing.
  const PixelRect crop{readOnce(region.position.x), readOnce(region.position.y),
                       static_cast<int>(readOnce(region.size.width)),
                       static_cast<int>(readOnce(region.size.height))};
  return crop.width == 0 || crop.height == 0 ? std::nullopt : std::optional(crop);
}

}  // namespace

void PipeWireStream::Close::operator()(pw_loop* loop) const {
  pw_loop_leave(loop);
  pw_loop_destroy(loop);
}

bool PipeWireStream::isReachable() {
  initializePipeWire();
  const std::unique_ptr<pw_loop, Close> loop(pw_loop_new(nullptr));
  pw_loop_enter(loop.get());
  const std::unique_ptr<pw_context, Close> context(pw_context_new(loop.get(), nullptr, 0));
  if (!context) return false;
  const std::unique_ptr<pw_core, Close> core(pw_context_connect(context.get(), nullptr, 0));
  return core != nullptr;
}

std::unique_ptr<PipeWireStream> PipeWireStream::connect(const std::shared_ptr<SerialQueue>& queue,
                                                        const PipeWireNode& node,
                                                        std::shared_ptr<FrameCopy> copy,
                                                        std::function<void()> changed) {
  std::unique_ptr<PipeWireStream> stream(
      new PipeWireStream(queue, std::move(copy), std::move(changed)));
  if (!stream->connectTo(node)) return nullptr;
  return stream;
}

PipeWireStream::PipeWireStream(const std::shared_ptr<SerialQueue>& queue,
                               std::shared_ptr<FrameCopy> copy, std::function<void()> changed)
    : queue_(queue), copy_(std::move(copy)), changed_(std::move(changed)) {}

PipeWireStream::~PipeWireStream() {
  const auto queue = queue_.lock();
  if (queue && loop_) queue->unwatch(pw_loop_get_fd(loop_.get()));
  // PipeWire tells what is on its way even while it destroys a stream.
  if (stream_) spa_hook_remove(&listener_);
}

bool PipeWireStream::connectTo(const PipeWireNode& node) {
  initializePipeWire();
  loop_.reset(pw_loop_new(nullptr));
  if (!loop_) return false;
  pw_loop_enter(loop_.get());
  if (const auto queue = queue_.lock()) {
    // What watches may be called once more after it has been given up.
    queue->watch(pw_loop_get_fd(loop_.get()), [this, alive = std::weak_ptr(alive_)] {
      if (alive.lock()) serve();
    });
  }
  context_.reset(pw_context_new(loop_.get(), nullptr, 0));
  if (!context_) return false;
  core_.reset(connectCore(context_.get(), node.remote));
  if (!core_) return false;
  stream_.reset(pw_stream_new(core_.get(), "Vistrel",
                              pw_properties_new(PW_KEY_MEDIA_TYPE, "Video", PW_KEY_MEDIA_CATEGORY,
                                                "Capture", PW_KEY_MEDIA_ROLE, "Screen", nullptr)));
  if (!stream_) return false;
  pw_stream_add_listener(stream_.get(), &listener_, &streamEvents(), this);
  PodRoom room;
  const spa_pod* formats = offeredFormats(room.builder(), node.mostFrames);
  // Memory is mapped by ourselves, once it has been looked at.
  const auto flags =
      static_cast<pw_stream_flags>(PW_STREAM_FLAG_AUTOCONNECT | PW_STREAM_FLAG_DONT_RECONNECT);
  // mutter 43 now and then loses the first frame.
  wakeAfter(untilFirstFrame);
  return pw_stream_connect(stream_.get(), PW_DIRECTION_INPUT, node.id, flags, &formats, 1) >= 0;
}

const pw_stream_events& PipeWireStream::streamEvents() {
  static const pw_stream_events events = [] {
    pw_stream_events result{};
    result.version = PW_VERSION_STREAM_EVENTS;
    result.state_changed = [](void* self, pw_stream_state /*former*/, pw_stream_state state,
                              const char* error) {
      static_cast<PipeWireStream*>(self)->stateChanged(state, error);
    };
    result.param_changed = [](void* self, std::uint32_t id, const spa_pod* parameter) {
      if (id != SPA_PARAM_Format || parameter == nullptr) return;
      static_cast<PipeWireStream*>(self)->formatChanged(parameter);
    };
    result.add_buffer = [](void* self, pw_buffer* buffer) {
      static_cast<PipeWireStream*>(self)->add(buffer);
    };
    result.remove_buffer = [](void* self, pw_buffer* buffer) {
      static_cast<PipeWireStream*>(self)->buffers_.erase(buffer);
    };
    result.process = [](void* self) { static_cast<PipeWireStream*>(self)->process(); };
    return result;
  }();
  return events;
}

void PipeWireStream::serve() {
  while (pw_loop_iterate(loop_.get(), 0) > 0) continue;
  tellNews();
}

void PipeWireStream::tellNews() {
  if (!std::exchange(hasNews_, false)) return;
  const auto changed = changed_;
  changed();
}

void PipeWireStream::end(const char* reason) {
  if (std::exchange(hasEnded_, true)) return;
  hasNews_ = true;
  trace(TraceTopic::capture, [&] {
    return std::string("a stream has ended: ") + (reason == nullptr ? "its source went" : reason);
  });
}

void PipeWireStream::stateChanged(pw_stream_state state, const char* error) {
  if (state == PW_STREAM_STATE_UNCONNECTED || state == PW_STREAM_STATE_ERROR) end(error);
}

void PipeWireStream::formatChanged(const spa_pod* format) {
  spa_video_info_raw info{};
  std::uint32_t type = 0;
  std::uint32_t subtype = 0;
  if (spa_format_parse(format, &type, &subtype) < 0 || type != SPA_MEDIA_TYPE_video ||
      subtype != SPA_MEDIA_SUBTYPE_raw || spa_format_video_raw_parse(format, &info) < 0 ||
      !isUnderstood(info)) {
    return end("its pixels are of no known format");
  }
  const bool isAnother = size_.has_value();
  size_ = {static_cast<int>(info.size.width), static_cast<int>(info.size.height)};
  askForBuffers();
  constexpr double untilBuffersAreThere = 0.03;
  // One frame of the new size may come before nothing does.
  if (isAnother && isActive_) wakeAfter(untilBuffersAreThere, Wake::whatever);
}

/// KWin 5.27 sends nothing after a change of size until the stream is paused and resumed, sometimes
/// nothing after it was resumed soon after a pause, and sometimes nothing ever again.
void PipeWireStream::wakeAfter(double seconds, Wake when) {
  const auto queue = queue_.lock();
  if (!queue) return;
  awaitsFrame_ = true;
  constexpr double longest = 1;
  const double nextDelay = std::min(2 * seconds, longest);
  queue->asyncAt(monotonicNow() + seconds,
                 [this, when, nextDelay, wait = ++awaited_, alive = std::weak_ptr(alive_)] {
                   if (!alive.lock() || wait != awaited_) return;
                   if (awaitsFrame_ || when == Wake::whatever) wake(nextDelay);
                 });
}

void PipeWireStream::wake(double nextDelay) {
  if (hasEnded_ || !isActive_) return;
  constexpr int mostWakes = 3;
  if (lastFrame_ > 0 && ++wakes_ > mostWakes) {
    end("it cannot be woken");
    return tellNews();
  }
  restart();
  wakeAfter(nextDelay);
}

void PipeWireStream::restart() {
  pw_stream_set_active(stream_.get(), false);
  pw_stream_set_active(stream_.get(), true);
  begin();
}

void PipeWireStream::begin() {
  hasBegun_ = true;
  buffersInARow_ = 0;
}

void PipeWireStream::askForBuffers() {
  PodRoom room;
  auto& builder = room.builder();
  std::array<const spa_pod*, 3> wanted{
      wantedBuffers(builder),
      wantedMeta(builder, SPA_META_VideoCrop, sizeof(spa_meta_region), sizeof(spa_meta_region)),
      wantedMeta(builder, SPA_META_Cursor, pointerMetaSize(1),
                 pointerMetaSize(longestPointerSide))};
  pw_stream_update_params(stream_.get(), wanted.data(), wanted.size());
}

void PipeWireStream::add(pw_buffer* buffer) {
  std::shared_ptr<const SharedMemory> memory;
  if (buffer->buffer->n_datas > 0) {
    const auto& data = buffer->buffer->datas[0];
    const auto end = std::uint64_t{data.mapoffset} + data.maxsize;
    if (data.type == SPA_DATA_MemFd && data.chunk != nullptr) {
      memory = SharedMemory::map(static_cast<int>(data.fd), end);
    }
  }
  if (!memory) {
    trace(TraceTopic::capture, [] { return "a stream's buffer is in no memory that may be read"; });
  }
  buffers_[buffer] = std::move(memory);
}

void PipeWireStream::process() {
  while (auto* const buffer = pw_stream_dequeue_buffer(stream_.get())) {
    const auto found = buffers_.find(buffer);
    if (found != buffers_.end()) take(*found);
    pw_stream_queue_buffer(stream_.get(), buffer);
    countBuffer();
  }
}

void PipeWireStream::take(const Buffers::value_type& buffer) {
  readPointer(*buffer.first->buffer);
  const auto frame = frameIn(buffer);
  auto copied = frame ? copy_->update(*frame) : std::nullopt;
  if (!copied) return;
  frame_ = std::move(copied);
  lastFrame_ = monotonicNow();
  hasBegun_ = false;
  awaitsFrame_ = false;
  wakes_ = 0;
  hasNews_ = true;
}

void PipeWireStream::readPointer(const spa_buffer& buffer) {
  const auto* const meta = spa_buffer_find_meta(&buffer, SPA_META_Cursor);
  if (meta == nullptr || meta->data == nullptr) return;
  auto news = readPointerMeta({static_cast<const std::uint8_t*>(meta->data), meta->size});
  if (news.place == pointerPlace_ && !news.image) return;
  pointerPlace_ = news.place;
  if (news.image) pointerImage_ = std::make_shared<const PointerImage>(*std::move(news.image));
  hasPointerNews_ = true;
  hasNews_ = true;
  lastPointerNews_ = monotonicNow();
}

/// Compositors drop what finds no free buffer, be it the last change before a window stands still,
/// and KWin 5.27 sometimes fails to tell that the pointer has left. A frame, which tells both, is
/// asked for once the stream rests.
void PipeWireStream::countBuffer() {
  const double now = monotonicNow();
  buffersInARow_ = now - lastBuffer_ < rest ? buffersInARow_ + 1 : 1;
  lastBuffer_ = now;
  if (mayLackSomething()) checkLater();
}

bool PipeWireStream::mayLackSomething() const {
  return buffersInARow_ >= fewestBuffers || lastPointerNews_ > lastFrame_;
}

void PipeWireStream::checkLater() {
  const auto queue = queue_.lock();
  if (!queue || std::exchange(awaitsRest_, true)) return;
  queue->asyncAt(lastBuffer_ + rest, [this, alive = std::weak_ptr(alive_)] {
    if (alive.lock()) check();
  });
}

void PipeWireStream::check() {
  awaitsRest_ = false;
  if (hasEnded_ || !isActive_ || !mayLackSomething()) return;
  if (monotonicNow() - lastBuffer_ < rest / 2) return checkLater();
  restart();
  wakeAfter(usualDelay);
}

std::optional<StreamFrame> PipeWireStream::frameIn(const Buffers::value_type& buffer) const {
  const auto& [described, memory] = buffer;
  if (!memory || !size_) return std::nullopt;
  const auto& data = described->buffer->datas[0];
  // Buffers that tell of the pointer alone have a size of 0 and are marked as corrupted.
  const auto bytes = readOnce(data.chunk->size);
  if (bytes == 0 || (readOnce(data.chunk->flags) & SPA_CHUNK_FLAG_CORRUPTED) != 0) {
    return std::nullopt;
  }
  const auto layout =
      layoutOf({.size = *size_,
                .readable = memory->size(),
                .offset = std::uint64_t{data.mapoffset} + readOnce(data.chunk->offset),
                .bytes = bytes,
                .stride = readOnce(data.chunk->stride),
                .crop = cropOf(*described->buffer)});
  if (!layout) {
    trace(TraceTopic::capture, [] { return "a stream's frame leads out of its memory"; });
    return std::nullopt;
  }
  return StreamFrame{memory, *layout, layout->crop, hasBegun_};
}

void PipeWireStream::setActive(bool active) {
  if (hasEnded_ || isActive_ == active) return;
  isActive_ = active;
  pw_stream_set_active(stream_.get(), active);
  if (!active) return;
  begin();
  wakeAfter(usualDelay);
}

}  // namespace vistrel::platform::linux_desktop
