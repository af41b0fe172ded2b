#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/simulated/SimulatedBackend.h"
#include "platform/simulated/SimulatedCapture.h"

namespace vistrel::platform::simulated {
namespace {

using testing::ElementsAre;
using enum StreamCall::Kind;

const PixelBGRA red{.blue = 0, .green = 0, .red = 255, .alpha = 255};

struct Sink : StreamOutputHandler, StreamDelegate {
  void streamDidOutputSampleBuffer(Stream&, const SampleBuffer& sample,
                                   StreamOutputType type) override {
    samples.push_back(sample.imageBuffer());
    types.push_back(type);
  }
  void streamDidStopWithError(Stream&, const Error& error) override {
    errors.push_back(error.localizedDescription);
  }
  std::vector<Pixels> samples;
  std::vector<StreamOutputType> types;
  std::vector<std::string> errors;
};

class SimulatedCaptureTest : public testing::Test {
 protected:
  WindowRecord recordOf(WindowID id) {
    WindowRecord found;
    getShareableContent(DesktopWindows::included, ListedWindows::all,
                        [&found, id](const auto& content, const auto&) {
                          for (const auto& window : content->windows) {
                            if (window->windowID == id) found = window;
                          }
                        });
    backend_.turnMainQueue();
    return found;
  }

  std::shared_ptr<Stream> streamOf(WindowID id) {
    auto stream = makeStream({recordOf(id)}, {.width = 8, .height = 8}, sink_);
    EXPECT_FALSE(stream->addStreamOutput(sink_, StreamOutputType::screen, queue_));
    return stream;
  }

  StreamCompletion note(const std::string& word) {
    return [this, word](const std::optional<Error>& error) {
      EXPECT_FALSE(mainQueue().isCurrent());
      heard_.push_back(error ? word + ": " + error->localizedDescription : word);
    };
  }

  SimulatedBackend backend_;
  SimulatedCapture& capture_ = backend_.screenCapture();
  std::shared_ptr<DispatchQueue> queue_ = makeSerialQueue("samples", QualityOfService::standard);
  std::shared_ptr<Sink> sink_ = std::make_shared<Sink>();
  std::vector<std::string> heard_;
  const WindowID window_ =
      capture_.openWindow({.title = "Window", .frame = rect(0, 0, 100, 80), .isOnScreen = true});
};

TEST_F(SimulatedCaptureTest, ListsWindowsAsTheyWereWhenAsked) {
  capture_.changeWindow(window_, [](ShareableWindow& window) { window.title = "Changed"; });
  capture_.answers().hold(Request::content);
  std::vector<std::string> titles;
  getShareableContent(DesktopWindows::included, ListedWindows::all,
                      [&titles](const auto& content, const auto&) {
                        titles.push_back(*content->windows.front()->title);
                      });
  capture_.closeWindow(window_);
  capture_.answers().release(Request::content);
  backend_.turnMainQueue();
  EXPECT_THAT(titles, ElementsAre("Changed"));
  EXPECT_EQ(recordOf(window_), nullptr);
}

TEST_F(SimulatedCaptureTest, LeavesOutWhatTheRequestExcludes) {
  capture_.openWindow({.title = "hidden", .isOnScreen = false});
  capture_.openWindow({.title = "desktop", .isOnScreen = true, .windowLayer = -1});
  const auto count = [this](DesktopWindows ofDesktop, ListedWindows which) {
    std::size_t windows = 0;
    getShareableContent(ofDesktop, which, [&windows](const auto& content, auto) {
      windows = content->windows.size();
    });
    backend_.turnMainQueue();
    return windows;
  };
  EXPECT_EQ(count(DesktopWindows::included, ListedWindows::all), 3U);
  EXPECT_EQ(count(DesktopWindows::included, ListedWindows::onScreen), 2U);
  EXPECT_EQ(count(DesktopWindows::excluded, ListedWindows::onScreen), 1U);
  EXPECT_EQ(capture_.contentRequests().size(), 3U);
}

TEST_F(SimulatedCaptureTest, AnswersWithAnErrorWhenToldOrNotAllowed) {
  std::vector<std::string> errors;
  const auto ask = [&] {
    getShareableContent(DesktopWindows::included, ListedWindows::onScreen,
                        [&errors](const auto& content, const auto& error) {
                          EXPECT_EQ(content, nullptr);
                          errors.push_back(error->localizedDescription);
                        });
    backend_.turnMainQueue();
  };
  capture_.failContent(Error{"scripted"});
  ask();
  capture_.failContent(std::nullopt);
  capture_.setAccess(false, false);
  ask();
  ASSERT_EQ(errors.size(), 2U);
  EXPECT_EQ(errors.front(), "scripted");
}

TEST_F(SimulatedCaptureTest, CountsPermissionCalls) {
  capture_.setAccess(false, true);
  EXPECT_FALSE(preflightScreenCaptureAccess());
  EXPECT_TRUE(requestScreenCaptureAccess());
  EXPECT_EQ(capture_.preflightCount(), 1);
  EXPECT_EQ(capture_.requestCount(), 1);
}

TEST_F(SimulatedCaptureTest, HeldAnswersComeInTheOrderTheTestChooses) {
  capture_.answers().hold(Request::content);
  for (const char* word : {"first", "second"}) {
    getShareableContent(DesktopWindows::included, ListedWindows::onScreen,
                        [this, word](const auto&, const auto&) { heard_.emplace_back(word); });
  }
  EXPECT_EQ(capture_.answers().heldCount(Request::content), 2U);
  capture_.answers().releaseOne(Request::content, 1);
  backend_.turnMainQueue();
  capture_.answers().releaseOne(Request::content);
  backend_.turnMainQueue();
  EXPECT_THAT(heard_, ElementsAre("second", "first"));
}

TEST_F(SimulatedCaptureTest, LateAnswersComeInVirtualTime) {
  capture_.answers().setDelay(Request::start, 2);
  const auto stream = streamOf(window_);
  stream->startCapture(note("started"));
  backend_.advance(1.9);
  EXPECT_TRUE(heard_.empty());
  backend_.advance(0.2);
  EXPECT_THAT(heard_, ElementsAre("started"));
}

TEST_F(SimulatedCaptureTest, StreamRecordsItsCalls) {
  const auto stream = streamOf(window_);
  stream->startCapture(note("started"));
  stream->updateConfiguration({.width = 16, .height = 16}, note("updated"));
  stream->stopCapture(note("stopped"));
  backend_.turnMainQueue();
  const auto tap = capture_.lastStream();
  EXPECT_THAT(tap->steps(), ElementsAre(addOutput, start, update, stop));
  EXPECT_EQ(tap->windowID(), window_);
  EXPECT_EQ(tap->calls()[1].configuration.width, 8);
  EXPECT_EQ(tap->configuration().width, 16);
  EXPECT_THAT(heard_, testing::UnorderedElementsAre("started", "updated", "stopped"));
}

TEST_F(SimulatedCaptureTest, PaintedWindowIsDeliveredAtStartAndOnEachChange) {
  const Pixels first = solidPixels(4, 4, red);
  const Pixels second = solidPixels(5, 5, red);
  capture_.paintWindow(window_, first);
  const auto stream = streamOf(window_);
  backend_.turnMainQueue();
  EXPECT_TRUE(sink_->samples.empty());
  stream->startCapture(note("started"));
  backend_.turnMainQueue();
  capture_.paintWindow(window_, second);
  backend_.turnMainQueue();
  EXPECT_THAT(sink_->samples, ElementsAre(first, second));
}

TEST_F(SimulatedCaptureTest, HiddenWindowIsDeliveredOnceItIsShownAgain) {
  const auto setOnScreen = [this](bool onScreen) {
    capture_.changeWindow(window_, [onScreen](ShareableWindow& w) { w.isOnScreen = onScreen; });
  };
  const auto stream = streamOf(window_);
  setOnScreen(false);
  stream->startCapture(note("started"));
  capture_.paintWindow(window_, solidPixels(4, 4, red));
  backend_.turnMainQueue();
  EXPECT_THAT(heard_, ElementsAre("started"));
  EXPECT_TRUE(sink_->samples.empty());
  setOnScreen(true);
  backend_.turnMainQueue();
  EXPECT_EQ(sink_->samples.size(), 1U);
}

TEST_F(SimulatedCaptureTest, NoSampleBeginsAfterTheStopsCompletion) {
  const auto stream = streamOf(window_);
  const auto tap = capture_.lastStream();
  stream->startCapture(note("started"));
  tap->deliver({.image = solidPixels(4, 4, red)});
  stream->stopCapture(note("stopped"));
  tap->deliver({.image = solidPixels(5, 5, red)});
  backend_.turnMainQueue();
  tap->deliver({.image = solidPixels(6, 6, red)});
  backend_.turnMainQueue();
  ASSERT_EQ(sink_->samples.size(), 1U);
  EXPECT_EQ(sink_->samples.front()->width(), 4);
}

TEST_F(SimulatedCaptureTest, DroppingTheStreamStopsItAndStillAnswers) {
  auto stream = streamOf(window_);
  const auto tap = capture_.lastStream();
  stream->startCapture(note("started"));
  EXPECT_TRUE(tap->isHeld());
  tap->deliver({.image = solidPixels(4, 4, red)});
  const std::weak_ptr<Sink> sink = sink_;
  sink_.reset();
  stream.reset();
  EXPECT_FALSE(tap->isHeld());
  EXPECT_TRUE(sink.expired());
  backend_.turnMainQueue();
  EXPECT_THAT(heard_, ElementsAre("started"));
  EXPECT_FALSE(tap->isRunning());
}

TEST_F(SimulatedCaptureTest, FailsAsScripted) {
  capture_.scriptStreams(
      {.addingOutputFails = Error{"no output"}, .startFails = Error{"no start"}});
  const auto stream = makeStream({recordOf(window_)}, {}, sink_);
  EXPECT_EQ(stream->addStreamOutput(sink_, StreamOutputType::screen, queue_)->localizedDescription,
            "no output");
  stream->startCapture(note("start"));
  backend_.turnMainQueue();
  EXPECT_THAT(heard_, ElementsAre("start: no start"));
  EXPECT_FALSE(capture_.lastStream()->isRunning());
}

TEST_F(SimulatedCaptureTest, SystemEndsAStreamAndTellsItsDelegate) {
  const auto stream = streamOf(window_);
  const auto tap = capture_.lastStream();
  stream->startCapture(note("started"));
  tap->endBySystem(Error{"gone"});
  backend_.turnMainQueue();
  EXPECT_THAT(sink_->errors, ElementsAre("gone"));
  tap->deliver({.image = solidPixels(4, 4, red)});
  backend_.turnMainQueue();
  EXPECT_TRUE(sink_->samples.empty());
}

TEST_F(SimulatedCaptureTest, MakesImagesOfReachableFramesUnlessToldToFail) {
  const auto context = makeImageContext({.useSoftwareRenderer = true});
  EXPECT_TRUE(capture_.imageContexts().front().useSoftwareRenderer);
  EXPECT_NE(context->createImage(solidPixels(4, 4, red)), nullptr);
  EXPECT_EQ(context->createImage(unreachablePixels(4, 4)), nullptr);
  capture_.failImages(true);
  EXPECT_EQ(context->createImage(solidPixels(4, 4, red)), nullptr);
}

TEST_F(SimulatedCaptureTest, FramesLieAsScripted) {
  EXPECT_TRUE(SimulatedSample({.image = blackPixels(2, 2)}).isValid());
  EXPECT_FALSE(SimulatedSample({.image = blackPixels(2, 2), .valid = false}).isValid());
  EXPECT_EQ(SimulatedSample({.image = nullptr}).imageBuffer(), nullptr);
  EXPECT_EQ(SimulatedSample({.status = std::nullopt}).frameStatus(), std::nullopt);
  EXPECT_EQ(SimulatedSample({.status = 1}).frameStatus(), 1);
  EXPECT_EQ(SimulatedSample({}).frameStatus(), 0);
}

}  // namespace
}  // namespace vistrel::platform::simulated
