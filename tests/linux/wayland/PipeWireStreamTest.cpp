#include <array>
#include <cstring>
#include <gmock/gmock.h>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include "platform/linux/Trace.h"
#include "platform/linux/wayland/stream/PipeWireStream.h"
#include "tests/linux/wayland/StreamProducer.h"
#include "tests/support/Poll.h"
#include "tests/support/PrivateHome.h"
#include "tests/support/PrivatePipeWire.h"
#include "tests/support/SessionBus.h"

namespace vistrel::platform::linux_desktop {
namespace {

using testbed::eventually;
using testbed::StreamProducer;
using ::testing::AllOf;
using ::testing::HasSubstr;

/// A frame that has arrived, as it was then.
struct Arrived {
  PixelSize size;
  std::uint32_t firstPixel;
  std::uint32_t lastPixel;

  friend bool operator==(const Arrived&, const Arrived&) = default;
};

std::uint32_t pixelOf(const StreamFrame& frame, int x, int y) {
  std::uint32_t pixel = 0;
  std::memcpy(&pixel, frame.pixels() + std::ptrdiff_t{y} * frame.layout.stride + 4 * x, 4);
  return pixel;
}

const std::array impossibleOffers = {
    StreamProducer::Offer{.width = 0, .height = 0},
    StreamProducer::Offer{.width = 30000, .height = 30000},
    StreamProducer::Offer{.format = SPA_VIDEO_FORMAT_RGBA},
};

struct Lie {
  const char* name;
  StreamProducer::Frame frame;
};

/// Of pictures of 64 × 48.
const std::array lies = {
    Lie{"offset by a pixel", {.offset = 4}},
    Lie{"largest offset", {.offset = ~3U}},
    Lie{"offset within a pixel", {.offset = 2}},
    Lie{"one byte too few", {.bytes = 64 * 48 * 4 - 1}},
    Lie{"rows too long", {.stride = 65 * 4}},
    Lie{"longest rows", {.stride = 0x7ffffffc}},
    Lie{"rows too short", {.stride = 63 * 4}},
    Lie{"no rows", {.stride = 0}},
    Lie{"rows upwards", {.stride = -64 * 4}},
    Lie{"crop left of it", {.crop = SPA_REGION(-1, 0, 64, 48)}},
    Lie{"crop below it", {.crop = SPA_REGION(0, 1, 64, 48)}},
    Lie{"crop far right of it", {.crop = SPA_REGION(0x7fffffff, 0, 1, 1)}},
    Lie{"crop larger than it", {.crop = SPA_REGION(0, 0, 64, 49)}},
    Lie{"largest crop", {.crop = SPA_REGION(1, 1, ~0U, ~0U)}},
};

/// Whoever looks at a stream, on a queue as mirrors do. The test's thread.
class Receiver {
 public:
  explicit Receiver(const StreamProducer& producer) {
    asyncAndWait(*queue_, [&] {
      stream_ = PipeWireStream::connect(queue_, {.id = producer.node()},
                                        std::make_shared<FrameCopy>(), [this] { look(); });
    });
    if (!stream_) throw std::runtime_error("no PipeWire for a receiver");
  }
  ~Receiver() {
    asyncAndWait(*queue_, [&] {
      held_.reset();
      stream_.reset();
    });
  }
  Receiver(const Receiver&) = delete;
  Receiver& operator=(const Receiver&) = delete;

  /// How many frames have come that differ from the one before.
  std::size_t frames() {
    return onQueue([&] { return frames_; });
  }
  std::optional<Arrived> newest() {
    return onQueue([&] { return newest_; });
  }
  /// As it is now in the newest frame's memory.
  std::uint32_t heldPixel() {
    return onQueue([&] { return pixelOf(*held_, 0, 0); });
  }
  bool hasEnded() {
    return onQueue([&] { return stream_->hasEnded(); });
  }
  std::optional<PointerNews::Place> pointer() {
    return onQueue([&] { return stream_->pointerPlace(); });
  }
  /// Nothing of the stream is looked at during `work`.
  template <class Work>
  void beBusyWith(const Work& work) {
    asyncAndWait(*queue_, work);
  }
  /// The stream is given up once `work` is done, during which nothing of it is looked at.
  template <class Work>
  void giveUpAfter(const Work& work) {
    asyncAndWait(*queue_, [&] {
      work();
      stream_.reset();
    });
  }

 private:
  /// What it answers on the queue.
  template <class Question>
  std::invoke_result_t<Question> onQueue(const Question& question) {
    std::invoke_result_t<Question> answer{};
    asyncAndWait(*queue_, [&] { answer = question(); });
    return answer;
  }
  void look() {
    auto frame = stream_->takeFrame();
    if (!frame) return;
    held_ = std::move(frame);
    const auto size = held_->size();
    const Arrived arrived{size, pixelOf(*held_, 0, 0),
                          pixelOf(*held_, size.width - 1, size.height - 1)};
    if (newest_ != arrived) ++frames_;
    newest_ = arrived;
  }

  const std::shared_ptr<SerialQueue> queue_ =
      SerialQueue::make("receiver", QualityOfService::userInteractive);
  std::unique_ptr<PipeWireStream> stream_;
  std::optional<StreamFrame> held_;
  std::optional<Arrived> newest_;
  std::size_t frames_ = 0;
};

/// Streams through a PipeWire of their own.
class PipeWireStreamTest : public ::testing::Test {
 protected:
  static constexpr StreamProducer::Frame honest{.first = 0x100000};

  /// What is sent just after a stream has begun may be lost, so it is sent until there is an
  /// answer.
  template <class Condition>
  static bool sendUntil(StreamProducer& producer, const StreamProducer::Frame& frame,
                        const Condition& condition) {
    return eventually([&] {
      static_cast<void>(producer.send(frame));
      return condition();
    });
  }
  /// Whether a frame of that size arrives as it was sent.
  static bool arrives(StreamProducer& producer, const StreamProducer::Frame& frame,
                      Receiver& receiver, PixelSize size = {64, 48}) {
    const auto last = static_cast<std::uint32_t>((size.height - 1) * 256 + size.width - 1);
    const Arrived whole{size, frame.first, frame.first + last};
    return sendUntil(producer, frame, [&] { return receiver.newest() == whole; });
  }

  std::vector<std::string> environment() const {
    auto variables = home_.environment();
    variables.push_back("DBUS_SESSION_BUS_ADDRESS=" + bus_.address());
    return variables;
  }

  const testbed::PrivateHome home_;
  const testbed::SessionBus bus_{home_, home_.environment()};
  const testbed::PrivatePipeWire pipeWire_{home_, environment()};
  const bool isAdopted_ = (testbed::adoptEnvironment(environment()), true);
};

TEST_F(PipeWireStreamTest, BringsFramesAndWhatOfThemIsTheWindow) {
  StreamProducer producer({});
  Receiver receiver(producer);
  EXPECT_TRUE(arrives(producer, honest, receiver));
  const StreamProducer::Frame cropped{.first = 0x200000, .crop = SPA_REGION(8, 4, 20, 10)};
  const Arrived crop{{20, 10}, 0x200000 + 4 * 256 + 8, 0x200000 + 13 * 256 + 27};
  EXPECT_TRUE(sendUntil(producer, cropped, [&] { return receiver.newest() == crop; }));
  producer.change({.width = 100, .height = 30});
  EXPECT_TRUE(arrives(producer, honest, receiver, {100, 30}));
}

TEST_F(PipeWireStreamTest, LeavesOutFramesThatLeadOutOfTheirMemory) {
  StreamProducer producer({});
  Receiver receiver(producer);
  StreamProducer::Frame next = honest;
  ASSERT_TRUE(arrives(producer, next, receiver));
  for (int i = 0; const auto& lie : lies) {
    SCOPED_TRACE(lie.name);
    const auto before = receiver.frames();
    auto frame = lie.frame;
    frame.pointer = {++i, 7};
    // A frame that is left out tells where the pointer is nevertheless.
    ASSERT_TRUE(sendUntil(producer, frame, [&] {
      return receiver.pointer() == PointerNews::Place{i, 7};
    }));
    EXPECT_EQ(receiver.frames(), before);
    next.first += 0x10000;
    ASSERT_TRUE(arrives(producer, next, receiver));
  }
}

TEST_F(PipeWireStreamTest, ReadsWhatThereIsWhereMoreIsClaimed) {
  StreamProducer producer({});
  Receiver receiver(producer);
  EXPECT_TRUE(arrives(producer, {.first = 0x300000, .bytes = ~0U}, receiver));
}

TEST_F(PipeWireStreamTest, HasNothingFromMemoryThatCouldBeCutOrIsShorterThanClaimed) {
  for (const auto& offer : {StreamProducer::Offer{.canBeCut = true}, {.missing = 1}}) {
    StreamProducer producer(offer);
    Receiver receiver(producer);
    const auto sees = [&](const PointerNews::Place& place) {
      return sendUntil(producer, {.pointer = SPA_POINT(place.x, place.y)},
                       [&] { return receiver.pointer() == place; });
    };
    ASSERT_TRUE(sees({7, 7}));
    producer.cutMemory();
    ASSERT_TRUE(sees({8, 8}));
    EXPECT_EQ(receiver.frames(), 0);
    producer.change({.width = 20});
    EXPECT_TRUE(arrives(producer, honest, receiver, {20, 48}));
  }
}

TEST_F(PipeWireStreamTest, KeepsMemoryThatItsProducerTriesToCut) {
  StreamProducer producer({});
  Receiver receiver(producer);
  ASSERT_TRUE(arrives(producer, honest, receiver));
  producer.cutMemory();
  EXPECT_EQ(receiver.heldPixel(), honest.first);
  EXPECT_TRUE(arrives(producer, {.first = 0x200000}, receiver));
}

TEST_F(PipeWireStreamTest, BringsNothingOfAFormatThatCannotBeTaken) {
  for (const auto& offer : impossibleOffers) {
    const StreamProducer impossible(offer);
    Receiver inVain(impossible);
    // Whose turn is after the first one's.
    StreamProducer producer({});
    Receiver receiver(producer);
    EXPECT_TRUE(arrives(producer, honest, receiver));
    EXPECT_EQ(impossible.starts(), 0);
    EXPECT_EQ(inVain.frames(), 0);
  }
}

TEST_F(PipeWireStreamTest, StaysWhatItIsWhereItsNextFormatCannotBeTaken) {
  for (const auto& offer : impossibleOffers) {
    StreamProducer producer({});
    Receiver receiver(producer);
    ASSERT_TRUE(arrives(producer, honest, receiver));
    producer.change(offer);
    EXPECT_TRUE(arrives(producer, {.first = 0x200000}, receiver));
  }
}

TEST_F(PipeWireStreamTest, EndsWithItsSourceAndLeavesTheFramesThatAreHeld) {
  for (const auto end : {&StreamProducer::end, &StreamProducer::vanish}) {
    StreamProducer producer({});
    Receiver receiver(producer);
    ASSERT_TRUE(arrives(producer, honest, receiver));
    EXPECT_FALSE(receiver.hasEnded());
    (producer.*end)();
    EXPECT_TRUE(eventually([&] { return receiver.hasEnded(); }));
    EXPECT_EQ(receiver.heldPixel(), honest.first);
  }
}

TEST_F(PipeWireStreamTest, IsGivenUpWhileFramesAreOnTheirWay) {
  StreamProducer producer({});
  Receiver receiver(producer);
  ASSERT_TRUE(arrives(producer, honest, receiver));
  receiver.giveUpAfter([&] {
    // Until no buffer is left.
    EXPECT_TRUE(eventually([&] { return !producer.send(honest); }));
  });
  EXPECT_EQ(receiver.heldPixel(), honest.first);
}

TEST_F(PipeWireStreamTest, GoesOnAfterMoreFramesThanThereAreBuffersFor) {
  StreamProducer producer({});
  Receiver receiver(producer);
  ASSERT_TRUE(arrives(producer, honest, receiver));
  receiver.beBusyWith([&] { EXPECT_TRUE(eventually([&] { return !producer.send(honest); })); });
  EXPECT_TRUE(arrives(producer, {.first = 0x200000}, receiver));
}

TEST_F(PipeWireStreamTest, IsBegunAnewAtRestWhereItsLastFrameFoundNoBuffer) {
  StreamProducer producer({});
  Receiver receiver(producer);
  ASSERT_TRUE(arrives(producer, honest, receiver));
  const int before = producer.starts();
  receiver.beBusyWith([&] { EXPECT_TRUE(eventually([&] { return !producer.send(honest); })); });
  EXPECT_TRUE(eventually([&] { return producer.starts() > before; }));
  EXPECT_TRUE(arrives(producer, {.first = 0x200000}, receiver));
}

TEST_F(PipeWireStreamTest, IsWokenThreeTimesWhereNothingComesAfterAChangeOfSizeAndEndsThen) {
  StreamProducer producer({});
  Receiver receiver(producer);
  ASSERT_TRUE(arrives(producer, honest, receiver));
  const int before = producer.starts();
  producer.change({.width = 20});
  EXPECT_TRUE(eventually([&] { return receiver.hasEnded(); }));
  EXPECT_EQ(producer.starts() - before, 3);
}

TEST_F(PipeWireStreamTest, GoesOnHoweverOftenItHadToBeWokenTwice) {
  StreamProducer producer({});
  Receiver receiver(producer);
  ASSERT_TRUE(arrives(producer, honest, receiver));
  for (const int width : {20, 30, 40}) {
    const int before = producer.starts();
    producer.change({.width = static_cast<std::uint32_t>(width)});
    ASSERT_TRUE(eventually([&] { return producer.starts() == before + 2; }));
    ASSERT_TRUE(arrives(producer, honest, receiver, {width, 48}));
    EXPECT_FALSE(receiver.hasEnded());
  }
}

TEST_F(PipeWireStreamTest, IsTracedWhereItIsNotTrusted) {
  beginTrace("capture");
  ::testing::internal::CaptureStderr();
  for (const bool canBeCut : {false, true}) {
    StreamProducer producer({.canBeCut = canBeCut});
    Receiver receiver(producer);
    EXPECT_TRUE(sendUntil(producer, {.offset = 4, .pointer = SPA_POINT(7, 7)},
                          [&] { return receiver.pointer().has_value(); }));
    producer.end();
    EXPECT_TRUE(eventually([&] { return receiver.hasEnded(); }));
  }
  EXPECT_THAT(::testing::internal::GetCapturedStderr(),
              AllOf(HasSubstr("a stream's frame leads out of its memory\n"),
                    HasSubstr("a stream's buffer is in no memory that may be read\n"),
                    HasSubstr("a stream has ended: ")));
  beginTrace("");
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
