#include <atomic>
#include <mutex>
#include <optional>
#include <stdexcept>

#include "tests/contract/ContractTest.h"

namespace vistrel::contract {
namespace {

using platform::Error;
using platform::FrameStatus;
using platform::PixelBGRA;
using platform::SampleBuffer;
using platform::Stream;
using platform::StreamConfiguration;
using platform::StreamOutputType;

/// The colours in the middle of a frame's four quarters.
std::optional<Quadrants> quadrantsOf(const platform::PixelBuffer& frame) {
  constexpr int side = 5;
  std::vector<PixelBGRA> samples;
  const bool readable = frame.visitSampleGrid(side, side, [&samples](PixelBGRA pixel) {
    samples.push_back(pixel);
    return true;
  });
  if (!readable || samples.size() != side * side) return std::nullopt;
  return Quadrants{samples[side + 1], samples[side + 3], samples[3 * side + 1],
                   samples[3 * side + 3]};
}

bool similar(const Quadrants& a, const Quadrants& b) {
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (!testing::Value(a[i], IsColor(b[i]))) return false;
  }
  return true;
}

/// What a stream delivered, for reading from any thread.
class Sink : public platform::StreamOutputHandler, public platform::StreamDelegate {
 public:
  explicit Sink(std::weak_ptr<platform::DispatchQueue> queue) : queue_(std::move(queue)) {}

  void streamDidOutputSampleBuffer(Stream&, const SampleBuffer& sample,
                                   StreamOutputType type) override {
    const auto queue = queue_.lock();
    const std::scoped_lock lock(mutex_);
    ++samples_;
    ranElsewhere_ = ranElsewhere_ || !queue || !queue->isCurrent();
    beganAfterStop_ = beganAfterStop_ || stopped_;
    if (type != StreamOutputType::screen || !sample.isValid() || !sample.imageBuffer()) return;
    lastStatus_ = sample.frameStatus();
    lastColors_ = quadrantsOf(*sample.imageBuffer());
  }
  void streamDidStopWithError(Stream&, const Error&) override {}

  int samples() const { return read(samples_); }
  bool ranElsewhere() const { return read(ranElsewhere_); }
  bool beganAfterStop() const { return read(beganAfterStop_); }
  std::optional<Quadrants> lastColors() const { return read(lastColors_); }
  std::optional<std::int64_t> lastStatus() const { return read(lastStatus_); }
  bool shows(const Quadrants& colors) const {
    const auto shown = lastColors();
    return shown && similar(*shown, colors);
  }
  void markStopped() {
    const std::scoped_lock lock(mutex_);
    stopped_ = true;
  }

 private:
  template <class Value>
  Value read(const Value& value) const {
    const std::scoped_lock lock(mutex_);
    return value;
  }

  const std::weak_ptr<platform::DispatchQueue> queue_;
  mutable std::mutex mutex_;  // guards everything below
  int samples_ = 0;
  bool ranElsewhere_ = false;
  bool stopped_ = false;
  bool beganAfterStop_ = false;
  std::optional<Quadrants> lastColors_;
  std::optional<std::int64_t> lastStatus_;
};

/// Counts one request's completions.
struct Completions {
  std::atomic<int> count = 0;
  std::atomic<int> failures = 0;
  std::atomic<bool> onMain = false;
};

platform::StreamCompletion counting(const std::shared_ptr<Completions>& completions) {
  return [completions](const std::optional<Error>& error) {
    if (error) ++completions->failures;
    if (platform::mainQueue().isCurrent()) completions->onMain = true;
    ++completions->count;
  };
}

class StreamContract : public ContractTest {
 protected:
  std::shared_ptr<Stream> streamOf(const SourceWindow& source) {
    const auto record = listed(source.id());
    if (!record) throw std::runtime_error("the source is not listed");
    auto stream = platform::makeStream({.desktopIndependentWindow = record},
                                       {.width = static_cast<std::int64_t>(record->frame.width()),
                                        .height = static_cast<std::int64_t>(record->frame.height()),
                                        .minimumFrameInterval = {1, 30},
                                        .queueDepth = 6,
                                        .showsCursor = false,
                                        .scalesToFit = true},
                                       sink_);
    EXPECT_FALSE(stream->addStreamOutput(sink_, StreamOutputType::screen, queue_));
    return stream;
  }

  bool arrived(const std::shared_ptr<Completions>& completions) {
    return turnUntil([&completions] { return completions->count > 0; });
  }

  void start(Stream& stream) {
    const auto started = std::make_shared<Completions>();
    stream.startCapture(counting(started));
    ASSERT_TRUE(arrived(started));
    EXPECT_EQ(started->failures, 0);
    EXPECT_FALSE(started->onMain);
  }

  void stop(Stream& stream) {
    const auto stopped = std::make_shared<Completions>();
    stream.stopCapture(counting(stopped));
    ASSERT_TRUE(arrived(stopped));
    EXPECT_FALSE(stopped->onMain);
  }

  bool eventuallyShows(const Quadrants& colors) {
    return turnUntil([this, &colors] { return sink_->shows(colors); });
  }

  const std::shared_ptr<platform::DispatchQueue> queue_ =
      platform::makeSerialQueue("samples", platform::QualityOfService::userInteractive);
  const std::shared_ptr<Sink> sink_ = std::make_shared<Sink>(queue_);
};

TEST_F(StreamContract, DeliversThePictureOfAllFourQuarters) {
  const auto source = bed_->openSource({.colors = fourColors});
  const auto stream = streamOf(*source);
  start(*stream);
  ASSERT_TRUE(turnUntil([this] { return sink_->lastColors().has_value(); }));
  ASSERT_TRUE(eventuallyShows(fourColors));
  EXPECT_FALSE(sink_->ranElsewhere());
  stop(*stream);
}

TEST_F(StreamContract, DeliversCompleteFrames) {
  const auto source = bed_->openSource({.colors = fourColors});
  const auto stream = streamOf(*source);
  start(*stream);
  ASSERT_TRUE(eventuallyShows(fourColors));
  const auto complete = static_cast<std::int64_t>(FrameStatus::complete);
  EXPECT_EQ(sink_->lastStatus().value_or(complete), complete);
  stop(*stream);
}

TEST_F(StreamContract, FollowsTheSourcesChanges) {
  const auto source = bed_->openSource({.colors = fourColors});
  const auto stream = streamOf(*source);
  start(*stream);
  ASSERT_TRUE(eventuallyShows(fourColors));
  source->paint(otherColors);
  EXPECT_TRUE(eventuallyShows(otherColors));
  source->paint(fourColors);
  EXPECT_TRUE(eventuallyShows(fourColors));
  stop(*stream);
}

TEST_F(StreamContract, FollowsASourceThatIsResizedAndMoved) {
  const auto source = bed_->openSource({.size = {400, 300}, .colors = fourColors});
  const auto stream = streamOf(*source);
  start(*stream);
  ASSERT_TRUE(eventuallyShows(fourColors));
  source->resize({300, 350});
  source->moveBy(20, 10);
  source->paint(otherColors);
  EXPECT_TRUE(eventuallyShows(otherColors));
  stop(*stream);
}

TEST_F(StreamContract, StartsOnAHiddenSourceAndDeliversOnceItIsShown) {
  const auto source = bed_->openSource({.colors = fourColors});
  source->hide();
  const auto stream = streamOf(*source);
  start(*stream);
  EXPECT_EQ(sink_->lastColors(), std::nullopt);
  source->show();
  source->paint(fourColors);
  EXPECT_TRUE(eventuallyShows(fourColors));
  stop(*stream);
}

TEST_F(StreamContract, BeginsNoSampleAfterTheStopsCompletion) {
  const auto source = bed_->openSource({.colors = fourColors});
  const auto stream = streamOf(*source);
  start(*stream);
  ASSERT_TRUE(eventuallyShows(fourColors));
  source->paint(otherColors);
  const auto stopped = std::make_shared<Completions>();
  stream->stopCapture([stopped, sink = sink_, count = counting(stopped)](const auto& error) {
    sink->markStopped();
    count(error);
  });
  source->paint(fourColors);
  ASSERT_TRUE(arrived(stopped));
  source->paint(otherColors);
  listed(source->id());  // time for what should not come
  EXPECT_FALSE(sink_->beganAfterStop());
}

TEST_F(StreamContract, AnswersEveryRequestOnce) {
  const auto source = bed_->openSource({.colors = fourColors});
  const auto stream = streamOf(*source);
  const auto started = std::make_shared<Completions>();
  const auto updated = std::make_shared<Completions>();
  const auto stopped = std::make_shared<Completions>();
  const auto stoppedAgain = std::make_shared<Completions>();
  const auto updatedLate = std::make_shared<Completions>();
  const auto all = {started, updated, stopped, stoppedAgain, updatedLate};
  StreamConfiguration larger{.width = 800, .height = 600, .minimumFrameInterval = {1, 30}};
  stream->startCapture(counting(started));
  stream->updateConfiguration(larger, counting(updated));
  stream->stopCapture(counting(stopped));
  stream->stopCapture(counting(stoppedAgain));
  stream->updateConfiguration(larger, counting(updatedLate));
  for (const auto& completions : all) EXPECT_TRUE(arrived(completions));
  listed(source->id());  // time for second answers
  for (const auto& completions : all) {
    EXPECT_EQ(completions->count, 1);
    EXPECT_FALSE(completions->onMain);
  }
}

TEST_F(StreamContract, AnswersAlsoWhenTheStreamIsDropped) {
  const auto source = bed_->openSource({.colors = fourColors});
  auto stream = streamOf(*source);
  const auto started = std::make_shared<Completions>();
  const auto stopped = std::make_shared<Completions>();
  stream->startCapture(counting(started));
  stream->stopCapture(counting(stopped));
  stream.reset();
  EXPECT_TRUE(arrived(started));
  EXPECT_TRUE(arrived(stopped));
  listed(source->id());
  EXPECT_EQ(started->count, 1);
  EXPECT_EQ(stopped->count, 1);
}

TEST_F(StreamContract, StopsWhenItIsDropped) {
  const auto source = bed_->openSource({.colors = fourColors});
  auto stream = streamOf(*source);
  start(*stream);
  ASSERT_TRUE(eventuallyShows(fourColors));
  stream.reset();
  std::atomic<bool> quiet = false;
  queue_->async([&quiet] { quiet = true; });
  ASSERT_TRUE(turnUntil([&quiet] { return quiet.load(); }));
  const int before = sink_->samples();
  source->paint(otherColors);
  listed(source->id());
  EXPECT_EQ(sink_->samples(), before);
}

TEST_F(StreamContract, AnswersWhenItsSourceIsClosed) {
  const auto source = bed_->openSource({.colors = fourColors});
  const auto stream = streamOf(*source);
  start(*stream);
  ASSERT_TRUE(eventuallyShows(fourColors));
  source->close();
  listed(source->id());
  EXPECT_TRUE(sink_->shows(fourColors));
  stop(*stream);
}

TEST_F(StreamContract, AnswersAStartOnASourceThatIsGone) {
  const auto source = bed_->openSource({.colors = fourColors});
  const auto stream = streamOf(*source);
  source->close();
  const auto started = std::make_shared<Completions>();
  stream->startCapture(counting(started));
  EXPECT_TRUE(arrived(started));
  stop(*stream);
  EXPECT_EQ(started->count, 1);
}

}  // namespace
}  // namespace vistrel::contract
