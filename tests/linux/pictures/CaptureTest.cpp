#include <algorithm>
#include <atomic>
#include <chrono>
#include <gtest/gtest.h>
#include <thread>
#include <utility>

#include "platform/linux/x11/source/SourceWindow.h"
#include "platform/linux/x11/stream/WindowFrames.h"
#include "tests/linux/pictures/MirrorInPanel.h"
#include "tests/support/InputDriver.h"
#include "tests/support/Poll.h"

namespace vistrel::platform::linux_desktop {
namespace {

constexpr testbed::Rect panelArea{20, 30, 100, 80};

/// Changes the source at that rate for more than a second, then once more; when that began.
double animate(testbed::TestWindow& source, double rate) {
  using Clock = std::chrono::steady_clock;
  const double began = monotonicNow();
  const auto start = Clock::now();
  const int changes = static_cast<int>(rate * 1.2);
  for (int i = 0; i < changes; ++i) {
    const auto level = static_cast<std::uint8_t>(50 + i % 200);
    source.paint({0, 0, 200, 160}, {level, level, 100});
    std::this_thread::sleep_until(start + std::chrono::duration<double>((i + 1) / rate));
  }
  source.paint({0, 0, 200, 160}, testbed::white);
  return began;
}

/// Has the source change while a frame is being taken, in such a way that the connection has read
/// of it before the queue waits for the connection.
class ChangesTheSource : public StreamOutputHandler {
 public:
  explicit ChangesTheSource(testbed::TestWindow& source) : source_(source) {}

  void streamDidOutputSampleBuffer(Stream&, const SampleBuffer& sample, StreamOutputType) override {
    if (++samples_ > changes) return;
    const auto askServer = [&] {
      sample.imageBuffer()->visitSampleGrid(2, 2, [](PixelBGRA) { return true; });
    };
    askServer();
    source_.paint({0, 0, 50, 50}, samples_ % 2 == 0 ? testbed::black : testbed::white);
    askServer();
  }
  int samples() const { return samples_; }

  static constexpr int changes = 10;

 private:
  testbed::TestWindow& source_;
  std::atomic<int> samples_ = 0;
};

TEST(Capture, NoticesWhatChangesWhileAFrameIsTaken) {
  const testbed::PrivateDisplay display{{.windowManager = testbed::WindowManager::none}};
  display.adoptEnvironment();
  testbed::TestWindow source(display.name(), {.managed = false});
  const auto queue = SerialQueue::make("mirror", QualityOfService::userInteractive);
  const auto handler = std::make_shared<ChangesTheSource>(source);
  const auto stream = std::make_shared<CaptureStream>(
      source.id(), openSourceWindow, StreamConfiguration{.minimumFrameInterval = {1, 30}},
      std::weak_ptr<StreamDelegate>());
  stream->addStreamOutput(handler, StreamOutputType::screen, queue);
  stream->startCapture([](const std::optional<Error>&) {});
  EXPECT_TRUE(testbed::eventually([&] { return handler->samples() > ChangesTheSource::changes; }));
}

/// A queue that knows how many timed blocks it has been given and has not run yet.
class CountingQueue final : public SerialQueue {
 public:
  bool isRunning() const override { return queue_->isRunning(); }
  const std::string& label() const override { return queue_->label(); }
  QualityOfService qualityOfService() const override { return queue_->qualityOfService(); }
  void async(Block block) override { queue_->async(std::move(block)); }
  bool isCurrent() const override { return queue_->isCurrent(); }
  void watch(int descriptor, std::function<void()> readable) override {
    queue_->watch(descriptor, std::move(readable));
  }
  void unwatch(int descriptor) override { queue_->unwatch(descriptor); }
  void asyncAt(double monotonicSeconds, Block block) override {
    ++*timed_;
    queue_->asyncAt(monotonicSeconds, [timed = timed_, block = std::move(block)] {
      --*timed;
      block();
    });
  }
  std::shared_ptr<void>& attachment() override { return queue_->attachment(); }

  int timed() const { return *timed_; }

 private:
  const std::shared_ptr<std::atomic<int>> timed_ = std::make_shared<std::atomic<int>>(0);
  const std::shared_ptr<SerialQueue> queue_ =
      SerialQueue::make("mirror", QualityOfService::userInteractive);
};

/// Counts the frames and takes them.
class TakesFrames : public StreamOutputHandler {
 public:
  void streamDidOutputSampleBuffer(Stream&, const SampleBuffer& sample, StreamOutputType) override {
    WindowImageContext().createImage(sample.imageBuffer());
    ++frames_;
  }
  int frames() const { return frames_; }

 private:
  std::atomic<int> frames_ = 0;
};

TEST(Capture, WaitsForNoMoreMomentsTheLongerThePointerRestsOverAFastSource) {
  constexpr testbed::Rect area{300, 100, 200, 160};
  const testbed::PrivateDisplay display{{.windowManager = testbed::WindowManager::none}};
  display.adoptEnvironment();
  const testbed::XConnection hand(display.name());
  testbed::InputDriver(hand).moveTo({400, 180});
  testbed::TestWindow source(display.name(), {.area = area, .managed = false});
  const auto queue = std::make_shared<CountingQueue>();
  const auto handler = std::make_shared<TakesFrames>();
  const auto stream = std::make_shared<CaptureStream>(
      source.id(), openSourceWindow,
      StreamConfiguration{.minimumFrameInterval = {1, 30}, .showsCursor = true},
      std::weak_ptr<StreamDelegate>());
  stream->addStreamOutput(handler, StreamOutputType::screen, queue);
  stream->startCapture([](const std::optional<Error>&) {});
  int most = 0;
  int changes = 0;
  EXPECT_TRUE(testbed::eventually([&] {
    const auto level = static_cast<std::uint8_t>(++changes % 200);
    source.paint({0, 0, 50, 50}, {level, level, level});
    most = std::max(most, queue->timed());
    return handler->frames() >= 60;
  }));
  EXPECT_LE(most, 12);
}

TEST(Capture, HandsOutNoMoreFramesInASecondThanAskedFor) {
  const testbed::PrivateDisplay display{{.windowManager = testbed::WindowManager::none}};
  display.adoptEnvironment();
  testbed::TestWindow source(display.name(), {.area = {300, 100, 200, 160}, .managed = false});
  Bitmap white(panelArea.width, panelArea.height);
  for (int y = 0; y < white.height(); ++y) {
    for (int x = 0; x < white.width(); ++x) white.at(x, y) = testbed::white;
  }
  for (const MediaTime interval : {MediaTime{1, 30}, {1, 12}}) {
    MirrorInPanel mirror(display,
                         {.source = source.id(), .panel = panelArea, .interval = interval});
    source.paint({0, 0, 200, 160}, testbed::white);
    ASSERT_TRUE(mirror.eventuallyShows(white));
    for (const double rate : {24.0, 30.0, 60.0, 1000.0}) {
      const auto before = mirror.frames().size();
      const double began = animate(source, rate);
      ASSERT_TRUE(mirror.eventuallyShows(white)) << "the newest change wins";
      // Frames are handed out after the first change has been asked for, and noted after that:
      // those noted within a second from it were handed out within it.
      const auto frames = mirror.frames();
      const auto inSecond =
          std::count_if(frames.begin() + static_cast<std::ptrdiff_t>(before), frames.end(),
                        [&](double each) { return each < began + 1; });
      EXPECT_LE(inSecond, interval.timescale) << rate;
      EXPECT_GT(frames.size(), before) << rate;
    }
  }
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
