#include "tests/linux/wayland/StreamProducer.h"

#include <array>
#include <fcntl.h>
#include <numeric>
#include <spa/param/buffers.h>
#include <spa/param/video/format-utils.h>
#include <stdexcept>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

#include "tests/support/FileDescriptor.h"
#include "tests/support/Poll.h"

namespace vistrel::testbed {
namespace {

constexpr std::uint32_t bytesPerPixel = 4;

std::uint32_t strideOf(const StreamProducer::Offer& offer) { return offer.width * bytesPerPixel; }
std::uint32_t bytesOf(const StreamProducer::Offer& offer) { return strideOf(offer) * offer.height; }

const spa_pod* formatOf(spa_pod_builder& builder, const StreamProducer::Offer& offer) {
  const spa_rectangle size{offer.width, offer.height};
  const spa_fraction unlimited{0, 1};
  const spa_fraction usual{60, 1};
  return static_cast<const spa_pod*>(spa_pod_builder_add_object(
      &builder, SPA_TYPE_OBJECT_Format, SPA_PARAM_EnumFormat, SPA_FORMAT_mediaType,
      SPA_POD_Id(SPA_MEDIA_TYPE_video), SPA_FORMAT_mediaSubtype, SPA_POD_Id(SPA_MEDIA_SUBTYPE_raw),
      SPA_FORMAT_VIDEO_format, SPA_POD_Id(offer.format), SPA_FORMAT_VIDEO_size,
      SPA_POD_Rectangle(&size), SPA_FORMAT_VIDEO_framerate, SPA_POD_Fraction(&unlimited),
      SPA_FORMAT_VIDEO_maxFramerate, SPA_POD_CHOICE_RANGE_Fraction(&usual, &unlimited, &usual)));
}

const spa_pod* metaOf(spa_pod_builder& builder, std::uint32_t type, std::size_t size) {
  return static_cast<const spa_pod*>(spa_pod_builder_add_object(
      &builder, SPA_TYPE_OBJECT_ParamMeta, SPA_PARAM_Meta, SPA_PARAM_META_type, SPA_POD_Id(type),
      SPA_PARAM_META_size, SPA_POD_Int(static_cast<int>(size))));
}

/// With a picture of one pixel, which is never sent.
constexpr std::size_t pointerMetaSize =
    sizeof(spa_meta_cursor) + sizeof(spa_meta_bitmap) + bytesPerPixel;

}  // namespace

class StreamProducer::Lock {
 public:
  explicit Lock(const StreamProducer& producer) : loop_(producer.loop_.get()) {
    pw_thread_loop_lock(loop_);
  }
  ~Lock() { pw_thread_loop_unlock(loop_); }
  Lock(const Lock&) = delete;
  Lock& operator=(const Lock&) = delete;

 private:
  pw_thread_loop* const loop_;
};

/// Of one buffer.
class StreamProducer::Memory {
 public:
  explicit Memory(const Offer& offer)
      : offer_(offer), descriptor_(memfd_create("stream", MFD_CLOEXEC | MFD_ALLOW_SEALING)) {
    if (ftruncate(descriptor(), bytesOf(offer) - std::int64_t{offer.missing}) != 0) {
      throw std::runtime_error("no memory for a producer's stream");
    }
    if (!offer.canBeCut) fcntl(descriptor(), F_ADD_SEALS, F_SEAL_SHRINK);
  }

  int descriptor() const { return descriptor_.get(); }
  /// What it was made for.
  const Offer& offer() const { return offer_; }
  void fill(std::uint32_t first) const {
    for (std::uint32_t y = 0; y < offer_.height; ++y) {
      std::vector<std::uint32_t> row(offer_.width);
      std::iota(row.begin(), row.end(), first + y * 256);
      static_cast<void>(pwrite(descriptor(), row.data(), strideOf(offer_), y * strideOf(offer_)));
    }
  }
  void cut() const { static_cast<void>(ftruncate(descriptor(), 0)); }

 private:
  const Offer offer_;
  const FileDescriptor descriptor_;
};

StreamProducer::StreamProducer(const Offer& offer) : offer_(offer) {
  pw_init(nullptr, nullptr);
  loop_.reset(pw_thread_loop_new("producer", nullptr));
  context_.reset(pw_context_new(pw_thread_loop_get_loop(loop_.get()), nullptr, 0));
  core_.reset(pw_context_connect(context_.get(), nullptr, 0));
  if (!core_) throw std::runtime_error("no PipeWire for a producer");
  stream_.reset(pw_stream_new(core_.get(), "producer", pw_properties_new(nullptr, nullptr)));
  pw_stream_add_listener(stream_.get(), &listener_, &events(), this);
  std::array<std::uint8_t, 1024> room{};
  spa_pod_builder builder{};
  spa_pod_builder_init(&builder, room.data(), room.size());
  const spa_pod* format = formatOf(builder, offer_);
  const auto flags =
      static_cast<pw_stream_flags>(PW_STREAM_FLAG_DRIVER | PW_STREAM_FLAG_ALLOC_BUFFERS);
  pw_stream_connect(stream_.get(), PW_DIRECTION_OUTPUT, PW_ID_ANY, flags, &format, 1);
  pw_thread_loop_start(loop_.get());
  const bool isThere = eventually([&] {
    const Lock lock(*this);
    node_ = pw_stream_get_node_id(stream_.get());
    return state_ == PW_STREAM_STATE_PAUSED && node_ != SPA_ID_INVALID;
  });
  if (!isThere) throw std::runtime_error("a producer's stream did not start");
}

StreamProducer::~StreamProducer() {
  pw_thread_loop_stop(loop_.get());
  stream_.reset();
}

const pw_stream_events& StreamProducer::events() {
  static const pw_stream_events events = [] {
    pw_stream_events result{};
    result.version = PW_VERSION_STREAM_EVENTS;
    result.state_changed = [](void* self, pw_stream_state /*former*/, pw_stream_state state,
                              const char* /*error*/) {
      static_cast<StreamProducer*>(self)->stateChanged(state);
    };
    result.param_changed = [](void* self, std::uint32_t id, const spa_pod* parameter) {
      if (id == SPA_PARAM_Format && parameter != nullptr) {
        static_cast<StreamProducer*>(self)->formatChanged();
      }
    };
    result.add_buffer = [](void* self, pw_buffer* buffer) {
      static_cast<StreamProducer*>(self)->add(buffer);
    };
    result.remove_buffer = [](void* self, pw_buffer* buffer) {
      static_cast<StreamProducer*>(self)->buffers_.erase(buffer);
    };
    return result;
  }();
  return events;
}

void StreamProducer::stateChanged(pw_stream_state state) {
  state_ = state;
  if (state == PW_STREAM_STATE_STREAMING) ++starts_;
}

void StreamProducer::formatChanged() {
  std::array<std::uint8_t, 1024> room{};
  spa_pod_builder builder{};
  spa_pod_builder_init(&builder, room.data(), room.size());
  std::array<const spa_pod*, 3> offered{
      static_cast<const spa_pod*>(spa_pod_builder_add_object(
          &builder, SPA_TYPE_OBJECT_ParamBuffers, SPA_PARAM_Buffers, SPA_PARAM_BUFFERS_buffers,
          SPA_POD_CHOICE_RANGE_Int(4, 2, 8), SPA_PARAM_BUFFERS_blocks, SPA_POD_Int(1),
          SPA_PARAM_BUFFERS_size, SPA_POD_Int(static_cast<int>(bytesOf(offer_))),
          SPA_PARAM_BUFFERS_stride, SPA_POD_Int(static_cast<int>(strideOf(offer_))),
          SPA_PARAM_BUFFERS_dataType, SPA_POD_CHOICE_FLAGS_Int(1 << SPA_DATA_MemFd))),
      metaOf(builder, SPA_META_VideoCrop, sizeof(spa_meta_region)),
      metaOf(builder, SPA_META_Cursor, pointerMetaSize)};
  pw_stream_update_params(stream_.get(), offered.data(), offered.size());
}

void StreamProducer::add(pw_buffer* buffer) {
  auto memory = std::make_unique<Memory>(offer_);
  auto& data = buffer->buffer->datas[0];
  data.type = SPA_DATA_MemFd;
  data.flags = SPA_DATA_FLAG_READWRITE;
  data.fd = memory->descriptor();
  data.mapoffset = 0;
  data.maxsize = bytesOf(offer_);
  buffers_[buffer] = std::move(memory);
}

void StreamProducer::change(const Offer& offer) {
  const Lock lock(*this);
  offer_ = offer;
  std::array<std::uint8_t, 1024> room{};
  spa_pod_builder builder{};
  spa_pod_builder_init(&builder, room.data(), room.size());
  const spa_pod* format = formatOf(builder, offer_);
  pw_stream_update_params(stream_.get(), &format, 1);
}

bool StreamProducer::send(const Frame& frame) {
  const Lock lock(*this);
  if (state_ != PW_STREAM_STATE_STREAMING) return false;
  auto* const buffer = pw_stream_dequeue_buffer(stream_.get());
  if (buffer == nullptr) return false;
  const auto& memory = *buffers_.at(buffer);
  memory.fill(frame.first);
  auto& sent = *buffer->buffer;
  auto& chunk = *sent.datas[0].chunk;
  chunk.offset = frame.offset.value_or(0);
  chunk.size = frame.bytes.value_or(bytesOf(memory.offer()));
  chunk.stride = frame.stride.value_or(static_cast<std::int32_t>(strideOf(memory.offer())));
  chunk.flags = SPA_CHUNK_FLAG_NONE;
  auto* const crop = static_cast<spa_meta_region*>(
      spa_buffer_find_meta_data(&sent, SPA_META_VideoCrop, sizeof(spa_meta_region)));
  if (crop != nullptr) {
    crop->region = frame.crop.value_or(spa_region{});
  }
  auto* const pointer = static_cast<spa_meta_cursor*>(
      spa_buffer_find_meta_data(&sent, SPA_META_Cursor, sizeof(spa_meta_cursor)));
  if (pointer != nullptr) {
    *pointer = {};
    pointer->id = frame.pointer ? 1 : SPA_ID_INVALID;
    pointer->position = frame.pointer.value_or(spa_point{});
  }
  pw_stream_queue_buffer(stream_.get(), buffer);
  pw_stream_trigger_process(stream_.get());
  return true;
}

int StreamProducer::starts() const {
  const Lock lock(*this);
  return starts_;
}

void StreamProducer::cutMemory() {
  const Lock lock(*this);
  for (const auto& [buffer, memory] : buffers_) memory->cut();
}

void StreamProducer::end() {
  const Lock lock(*this);
  pw_stream_disconnect(stream_.get());
}

void StreamProducer::vanish() {
  const Lock lock(*this);
  close(pw_core_steal_fd(core_.get()));
}

}  // namespace vistrel::testbed
