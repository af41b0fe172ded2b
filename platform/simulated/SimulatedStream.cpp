#include "platform/simulated/SimulatedStream.h"

#include <utility>

namespace vistrel::platform::simulated {

StreamTap::StreamTap(WindowID windowID, const StreamConfiguration& configuration,
                     StreamScript script, std::weak_ptr<StreamDelegate> delegate,
                     ServiceAnswers& answers, CallJournal& journal)
    : windowID_(windowID),
      script_(std::move(script)),
      delegate_(std::move(delegate)),
      answers_(answers),
      journal_(journal),
      configuration_(configuration) {}

std::vector<StreamCall> StreamTap::calls() const {
  const std::scoped_lock lock(mutex_);
  return calls_;
}

std::vector<StreamCall::Kind> StreamTap::steps() const {
  std::vector<StreamCall::Kind> kinds;
  for (const StreamCall& call : calls()) kinds.push_back(call.kind);
  return kinds;
}

StreamConfiguration StreamTap::configuration() const {
  const std::scoped_lock lock(mutex_);
  return configuration_;
}

std::shared_ptr<DispatchQueue> StreamTap::sampleHandlerQueue() const {
  const std::scoped_lock lock(mutex_);
  return queue_;
}

bool StreamTap::isHeld() const {
  const std::scoped_lock lock(mutex_);
  return !stream_.expired();
}

bool StreamTap::isRunning() const {
  const std::scoped_lock lock(mutex_);
  return running_;
}

void StreamTap::setStream(std::weak_ptr<Stream> stream) {
  const std::scoped_lock lock(mutex_);
  stream_ = std::move(stream);
}

void StreamTap::record(StreamCall::Kind kind, StreamOutputType type) {
  calls_.push_back({.kind = kind, .configuration = configuration_, .type = type});
}

std::optional<Error> StreamTap::addOutput(std::shared_ptr<StreamOutputHandler> handler,
                                          StreamOutputType type,
                                          std::shared_ptr<DispatchQueue> queue) {
  if (script_.whenAddingOutput) script_.whenAddingOutput();
  const std::scoped_lock lock(mutex_);
  record(StreamCall::Kind::addOutput, type);
  if (script_.addingOutputFails) return script_.addingOutputFails;
  handler_ = std::move(handler);
  queue_ = std::move(queue);
  return std::nullopt;
}

void StreamTap::start(StreamCompletion completion) {
  journal_.add("Stream startCapture");
  {
    const std::scoped_lock lock(mutex_);
    record(StreamCall::Kind::start);
  }
  answers_.answer(Request::start, [self = shared_from_this(), completion = std::move(completion)] {
    if (!self->script_.startFails) self->didStart();
    completion(self->script_.startFails);
  });
}

void StreamTap::didStart() {
  Pixels picture;
  {
    const std::scoped_lock lock(mutex_);
    if (ended_) return;
    running_ = true;
    picture = picture_;
  }
  if (picture) deliver({.image = std::move(picture)});
}

void StreamTap::stop(StreamCompletion completion) {
  journal_.add("Stream stopCapture");
  {
    const std::scoped_lock lock(mutex_);
    record(StreamCall::Kind::stop);
    running_ = false;
  }
  endDelivery([self = shared_from_this(), completion = std::move(completion)] {
    self->answers_.answer(Request::stop, [completion] { completion(std::nullopt); });
  });
}

void StreamTap::endDelivery(Block then) {
  const auto end = [self = shared_from_this(), then = std::move(then)] {
    {
      const std::scoped_lock lock(self->mutex_);
      self->ended_ = true;
      self->running_ = false;
    }
    then();
  };
  // On the handler's own queue no sample can be between its beginning and its end.
  if (const auto queue = sampleHandlerQueue()) {
    queue->async(end);
  } else {
    end();
  }
}

void StreamTap::update(const StreamConfiguration& configuration, StreamCompletion completion) {
  {
    const std::scoped_lock lock(mutex_);
    configuration_ = configuration;
    record(StreamCall::Kind::update);
  }
  answers_.answer(Request::update,
                  [completion = std::move(completion)] { completion(std::nullopt); });
}

void StreamTap::release() {
  // What the handler holds goes outside the lock.
  std::shared_ptr<StreamOutputHandler> handler;
  std::shared_ptr<DispatchQueue> queue;
  const std::scoped_lock lock(mutex_);
  ended_ = true;
  running_ = false;
  handler.swap(handler_);
  queue.swap(queue_);
}

void StreamTap::deliver(Frame frame, StreamOutputType type) {
  const auto queue = sampleHandlerQueue();
  if (!queue) return;
  auto sample = std::make_shared<const SimulatedSample>(std::move(frame));
  queue->async([self = shared_from_this(), sample = std::move(sample), type] {
    self->output(*sample, type);
  });
}

void StreamTap::output(const SampleBuffer& sample, StreamOutputType type) {
  std::shared_ptr<Stream> stream;
  std::shared_ptr<StreamOutputHandler> handler;
  {
    const std::scoped_lock lock(mutex_);
    if (ended_) return;
    stream = stream_.lock();
    handler = handler_;
  }
  if (stream && handler) handler->streamDidOutputSampleBuffer(*stream, sample, type);
}

void StreamTap::showPicture(Pixels picture) {
  {
    const std::scoped_lock lock(mutex_);
    picture_ = picture;
    if (!running_) return;
  }
  if (picture) deliver({.image = std::move(picture)});
}

void StreamTap::endBySystem(const Error& error) {
  endDelivery([self = shared_from_this(), error] {
    std::shared_ptr<Stream> stream;
    {
      const std::scoped_lock lock(self->mutex_);
      stream = self->stream_.lock();
    }
    const auto delegate = self->delegate_.lock();
    if (stream && delegate) delegate->streamDidStopWithError(*stream, error);
  });
}

std::optional<Error> SimulatedStream::addStreamOutput(std::shared_ptr<StreamOutputHandler> handler,
                                                      StreamOutputType type,
                                                      std::shared_ptr<DispatchQueue> queue) {
  return tap_->addOutput(std::move(handler), type, std::move(queue));
}

void SimulatedStream::startCapture(StreamCompletion completion) {
  tap_->start(std::move(completion));
}

void SimulatedStream::stopCapture(StreamCompletion completion) {
  tap_->stop(std::move(completion));
}

void SimulatedStream::updateConfiguration(const StreamConfiguration& configuration,
                                          StreamCompletion completion) {
  tap_->update(configuration, std::move(completion));
}

}  // namespace vistrel::platform::simulated
