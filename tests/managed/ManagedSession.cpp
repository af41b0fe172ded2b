#include "tests/managed/ManagedSession.h"

#include <algorithm>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <utility>

#include "platform/linux/SerialQueue.h"
#include "platform/linux/x11/X11Session.h"
#include "tests/support/Poll.h"

namespace vistrel::testbed {
namespace {

using platform::Error;
using platform::Instances;
using platform::linux_desktop::SerialQueue;
using platform::linux_desktop::WindowStreams;

/// The result of a call that answers on another thread.
template <class Value>
class Answer {
 public:
  void set(Value value) {
    const std::lock_guard lock(mutex_);
    value_ = std::move(value);
  }
  bool arrived() const {
    const std::lock_guard lock(mutex_);
    return value_.has_value();
  }
  Value value() const {
    const std::lock_guard lock(mutex_);
    return value_.value();
  }

 private:
  mutable std::mutex mutex_;
  std::optional<Value> value_;  // guarded by mutex_
};

template <class Value>
Value waitFor(const Answer<Value>& answer, const char* what) {
  if (!eventually([&] { return answer.arrived(); })) {
    throw std::runtime_error(std::string("no answer: ") + what);
  }
  return answer.value();
}

Picture wholePicture(const platform::PixelBuffer& buffer) {
  Picture picture(static_cast<int>(buffer.width()), static_cast<int>(buffer.height()));
  int i = 0;
  // One sample a pixel.
  buffer.visitSampleGrid(picture.height(), picture.width(), [&](platform::PixelBGRA pixel) {
    picture.at(i % picture.width(), i / picture.width()) = {pixel.red, pixel.green, pixel.blue};
    ++i;
    return true;
  });
  return i == picture.width() * picture.height() ? picture : Picture();
}

}  // namespace

class StreamedWindow::Receiver : public platform::StreamOutputHandler,
                                 public platform::StreamDelegate {
 public:
  Receiver(std::shared_ptr<platform::ImageContext> context, std::function<void()> beforeReading)
      : context_(std::move(context)), beforeReading_(std::move(beforeReading)) {}

  void streamDidOutputSampleBuffer(platform::Stream&, const platform::SampleBuffer& sample,
                                   platform::StreamOutputType) override {
    if (beforeReading_) {
      // By the answer the server has carried out all that the stream has asked of it.
      wholePicture(*sample.imageBuffer());
      beforeReading_();
    }
    auto picture = wholePicture(*sample.imageBuffer());
    auto image = context_->createImage(sample.imageBuffer());
    if (picture.width() == 0 || !image) {
      return;
    }
    const std::lock_guard lock(mutex_);
    sizes_.emplace(picture.width(), picture.height());
    picture_ = std::move(picture);
    image_ = std::move(image);
  }
  void streamDidStopWithError(platform::Stream&, const Error&) override {
    const std::lock_guard lock(mutex_);
    hasEnded_ = true;
  }

  std::shared_ptr<const platform::Image> image() const {
    const std::lock_guard lock(mutex_);
    return image_;
  }
  Picture picture() const {
    const std::lock_guard lock(mutex_);
    return picture_;
  }
  std::set<std::pair<int, int>> sizes() const {
    const std::lock_guard lock(mutex_);
    return sizes_;
  }
  bool hasEnded() const {
    const std::lock_guard lock(mutex_);
    return hasEnded_;
  }

 private:
  const std::shared_ptr<platform::ImageContext> context_;
  const std::function<void()> beforeReading_;
  mutable std::mutex mutex_;  // guards what follows
  Picture picture_;
  std::shared_ptr<const platform::Image> image_;
  std::set<std::pair<int, int>> sizes_;
  bool hasEnded_ = false;
};

StreamedWindow::StreamedWindow(WindowStreams& streams, const platform::WindowRecord& window,
                               std::function<void()> beforeReading)
    : receiver_(std::make_shared<Receiver>(streams.makeImageContext({}), std::move(beforeReading))),
      queue_(SerialQueue::make("test.samples", platform::QualityOfService::standard)),
      stream_(streams.makeStream({.desktopIndependentWindow = window},
                                 {.minimumFrameInterval = {1, 30}}, receiver_)) {
  if (stream_->addStreamOutput(receiver_, platform::StreamOutputType::screen, queue_)) {
    throw std::runtime_error("the stream refuses its output");
  }
  const auto started = std::make_shared<Answer<bool>>();
  stream_->startCapture([started](const std::optional<Error>& error) { started->set(!error); });
  if (!waitFor(*started, "start of a stream")) {
    throw std::runtime_error("the stream does not start");
  }
}

StreamedWindow::~StreamedWindow() {
  const auto stopped = std::make_shared<Answer<bool>>();
  stream_->stopCapture([stopped](const std::optional<Error>&) { stopped->set(true); });
  static_cast<void>(eventually([&] { return stopped->arrived(); }));
}

Picture StreamedWindow::picture() const { return receiver_->picture(); }
std::shared_ptr<const platform::Image> StreamedWindow::image() const { return receiver_->image(); }
std::set<std::pair<int, int>> StreamedWindow::sizes() const { return receiver_->sizes(); }
bool StreamedWindow::hasEnded() const { return receiver_->hasEnded(); }

ManagedSession::ManagedSession(const PrivateDisplay::Options& options) : display_(options) {
  display_.adoptEnvironment();
  providers_ = platform::linux_desktop::openX11Session(Instances::any).session;
  if (!providers_) {
    throw std::runtime_error("the backend does not connect");
  }
}

ManagedSession::~ManagedSession() { platform::linux_desktop::shutDownSerialQueues(); }

std::vector<platform::WindowRecord> ManagedSession::listed(platform::ListedWindows which) {
  using Content = std::shared_ptr<const platform::ShareableContent>;
  const auto answer = std::make_shared<Answer<Content>>();
  providers_->windowLister->request(
      platform::DesktopWindows::included, which,
      [answer](const Content& content, const std::optional<Error>&) { answer->set(content); });
  const auto content = waitFor(*answer, "the list of windows");
  return content ? content->windows : std::vector<platform::WindowRecord>{};
}

platform::WindowRecord ManagedSession::listed(xcb_window_t window, platform::ListedWindows which) {
  const auto windows = listed(which);
  const auto found = std::ranges::find(
      windows, window, [](const platform::WindowRecord& each) { return each->windowID; });
  return found == windows.end() ? nullptr : *found;
}

std::unique_ptr<StreamedWindow> ManagedSession::stream(xcb_window_t window,
                                                       std::function<void()> beforeReading) {
  const auto record = listed(window, platform::ListedWindows::all);
  if (!record) {
    throw std::runtime_error("the window is not listed");
  }
  return std::make_unique<StreamedWindow>(*providers_->windowStreams, record,
                                          std::move(beforeReading));
}

}  // namespace vistrel::testbed
