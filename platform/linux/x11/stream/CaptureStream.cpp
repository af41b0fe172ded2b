#include "platform/linux/x11/stream/CaptureStream.h"

#include <utility>

#include "platform/linux/Trace.h"

namespace vistrel::platform::linux_desktop {

CaptureStream::CaptureStream(WindowID window, OpenSource open,
                             const StreamConfiguration& configuration,
                             std::weak_ptr<StreamDelegate> delegate)
    : window_(window),
      open_(std::move(open)),
      delegate_(std::move(delegate)),
      configuration_(configuration) {}

CaptureStream::~CaptureStream() {
  const auto queue = output().queue;
  if (!queue) return;
  queue->async([queue, key = this] {
    if (const auto worker = MirrorWorker::existingOf(*queue)) worker->stopCapture(key);
  });
}

CaptureStream::Output CaptureStream::output() const {
  const std::lock_guard lock(mutex_);
  return output_;
}

std::shared_ptr<SerialQueue> CaptureStream::workQueue() const {
  auto queue = output().queue;
  return queue ? queue : SerialQueue::make("vistrel.stream", QualityOfService::standard);
}

std::optional<Error> CaptureStream::addStreamOutput(
    std::shared_ptr<StreamOutputHandler> handler, StreamOutputType type,
    std::shared_ptr<DispatchQueue> sampleHandlerQueue) {
  auto queue = std::dynamic_pointer_cast<SerialQueue>(std::move(sampleHandlerQueue));
  if (!handler || !queue) return Error{"Samples need a handler and a serial queue."};
  if (!queue->isRunning()) return Error{"The system has no thread for the mirror."};
  if (type != StreamOutputType::screen) return Error{"Windows are captured without sound."};
  const std::lock_guard lock(mutex_);
  if (output_.handler) return Error{"The stream has a handler already."};
  output_ = {std::move(handler), std::move(queue)};
  return std::nullopt;
}

void CaptureStream::startCapture(StreamCompletion completion) {
  const auto queue = workQueue();
  queue->async([self = shared_from_this(), queue, completion = std::move(completion)] {
    const auto failure = self->start(queue);
    trace(TraceTopic::capture, [&] {
      return windowText(self->window_) +
             (failure ? " cannot be captured: " + failure->localizedDescription : " is captured");
    });
    completion(failure);
  });
}

std::optional<Error> CaptureStream::start(const std::shared_ptr<SerialQueue>& queue) {
  if (!output().handler) return Error{"The stream has no handler."};
  const auto worker = MirrorWorker::of(queue);
  if (!worker) return Error{"The display server has no room for another mirror."};
  return worker->startCapture(this, window_, open_, configuration_, makeReceiver());
}

Capture::Receiver CaptureStream::makeReceiver() {
  const auto stream = weak_from_this();
  return {[stream](const SampleBuffer& sample) {
            const auto self = stream.lock();
            if (!self) return;
            const auto handler = self->output().handler;
            handler->streamDidOutputSampleBuffer(*self, sample, StreamOutputType::screen);
          },
          [stream](const Error& error) {
            const auto self = stream.lock();
            trace(TraceTopic::capture, [&] {
              return (self ? windowText(self->window_) : "a window") +
                     " is captured no more: " + error.localizedDescription;
            });
            const auto delegate = self ? self->delegate_.lock() : nullptr;
            if (delegate) delegate->streamDidStopWithError(*self, error);
          }};
}

void CaptureStream::stopCapture(StreamCompletion completion) {
  const auto queue = workQueue();
  queue->async([self = shared_from_this(), queue, completion = std::move(completion)] {
    if (const auto worker = MirrorWorker::existingOf(*queue)) worker->stopCapture(self.get());
    trace(TraceTopic::capture, [&] { return windowText(self->window_) + " is let go"; });
    completion(std::nullopt);
  });
}

void CaptureStream::updateConfiguration(const StreamConfiguration& configuration,
                                        StreamCompletion completion) {
  const auto queue = workQueue();
  queue->async(
      [self = shared_from_this(), queue, configuration, completion = std::move(completion)] {
        self->configuration_ = configuration;
        const auto worker = MirrorWorker::existingOf(*queue);
        auto* const capture = worker ? worker->captureOf(self.get()) : nullptr;
        if (capture) capture->setConfiguration(configuration);
        completion(std::nullopt);
      });
}

}  // namespace vistrel::platform::linux_desktop
