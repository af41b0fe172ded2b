#include <atomic>

#include "platform/linux/x11/source/SourceWindow.h"
#include "platform/linux/x11/stream/MirrorWorker.h"
#include "tests/hostile/HostileTest.h"

namespace vistrel::hostile {
namespace {

using namespace platform::linux_desktop;

/// What one stream has given.
struct Output : platform::StreamOutputHandler, platform::StreamDelegate {
  void streamDidOutputSampleBuffer(platform::Stream& /*stream*/,
                                   const platform::SampleBuffer& sample,
                                   platform::StreamOutputType /*type*/) override {
    width = sample.imageBuffer()->width();
  }
  void streamDidStopWithError(platform::Stream& /*stream*/,
                              const platform::Error& /*error*/) override {
    ++ends;
  }

  std::atomic<std::int64_t> width = 0;  // of the last frame
  std::atomic<int> ends = 0;
};

/// A stream that runs.
struct Running {
  std::shared_ptr<Output> output = std::make_shared<Output>();
  std::shared_ptr<CaptureStream> stream;

  void stop() const {
    stream->stopCapture([](const auto&) {});
  }
  bool hasWidth(int width) const {
    return testbed::eventually([&] { return output->width == width; });
  }
};

/// Several streams on the queue of one mirror.
class Streams : public HostileTest {
 protected:
  Running start(const RawSource& source) {
    Running running;
    running.stream = std::make_shared<CaptureStream>(
        source.id(), openSourceWindow, TestMirror::usualConfiguration(), running.output);
    running.stream->addStreamOutput(running.output, platform::StreamOutputType::screen, queue_);
    running.stream->startCapture([](const auto&) {});
    return running;
  }

  const std::shared_ptr<SerialQueue> queue_ =
      SerialQueue::make("mirror", platform::QualityOfService::userInteractive);
};

TEST_F(Streams, GoOnWhenTheirConnectionIsThrownOutWhoeverNoticesFirst) {
  RawSource source(connection_, {.area = {20, 20, 200, 160}});
  const auto first = start(source);
  ASSERT_TRUE(first.hasWidth(200));
  asyncAndWait(*queue_, [&] {
    auto& doomed = MirrorWorker::of(queue_)->connection();
    const xcb_window_t window = xcb_generate_id(doomed.xcb());
    xcb_create_window(doomed.xcb(), XCB_COPY_FROM_PARENT, window, doomed.root(), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    doomed.sync();
    xcb_kill_client(connection_.get(), window);
    connection_.sync();
    doomed.sync();
    ASSERT_TRUE(doomed.isLost());
    EXPECT_NE(MirrorWorker::of(queue_), nullptr);
  });
  source.resize(210, 160);
  EXPECT_TRUE(first.hasWidth(210));
  EXPECT_EQ(first.output->ends, 0);
  EXPECT_TRUE(start(source).hasWidth(210));
}

TEST_F(Streams, OfOneWindowLeaveItToThoseThatGoOn) {
  RawSource source(connection_, {.area = {20, 20, 200, 160}});
  const RawSource other(connection_, {.area = {300, 300, 100, 80}});
  const auto first = start(source);
  const auto second = start(source);
  ASSERT_TRUE(first.hasWidth(200) && second.hasWidth(200));
  first.stop();
  const auto elsewhere = start(other);
  ASSERT_TRUE(elsewhere.hasWidth(100));
  source.resize(210, 160);
  EXPECT_TRUE(second.hasWidth(210));
}

TEST_F(Streams, OfOneWindowLeaveItToTheNextOne) {
  RawSource source(connection_, {.area = {20, 20, 200, 160}});
  const auto first = start(source);
  const auto second = start(source);
  ASSERT_TRUE(first.hasWidth(200) && second.hasWidth(200));
  first.stop();
  second.stop();
  const auto next = start(source);
  ASSERT_TRUE(next.hasWidth(200));
  source.resize(210, 160);
  EXPECT_TRUE(next.hasWidth(210));
}

}  // namespace
}  // namespace vistrel::hostile
