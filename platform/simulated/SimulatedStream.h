#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "platform/ScreenCapture.h"
#include "platform/simulated/CallJournal.h"
#include "platform/simulated/ServiceAnswers.h"
#include "platform/simulated/SimulatedFrames.h"

namespace vistrel::platform::simulated {

/// One call that a stream received.
struct StreamCall {
  enum class Kind { addOutput, start, stop, update };

  Kind kind;
  StreamConfiguration configuration;                 // in force after the call
  StreamOutputType type = StreamOutputType::screen;  // of addOutput
};

/// What a stream is to do when asked, fixed when it is made.
struct StreamScript {
  /// Is called when an output is being added, by whichever thread adds it.
  Block whenAddingOutput;
  std::optional<Error> addingOutputFails;
  std::optional<Error> startFails;
};

/// The service's end of one stream: what a test scripts and reads. Outlives the stream. Any thread.
class StreamTap : public std::enable_shared_from_this<StreamTap> {
 public:
  StreamTap(WindowID windowID, const StreamConfiguration& configuration, StreamScript script,
            std::weak_ptr<StreamDelegate> delegate, ServiceAnswers& answers, CallJournal& journal);

  WindowID windowID() const { return windowID_; }
  std::vector<StreamCall> calls() const;
  std::vector<StreamCall::Kind> steps() const;
  StreamConfiguration configuration() const;
  std::shared_ptr<DispatchQueue> sampleHandlerQueue() const;
  /// Whether the stream still exists.
  bool isHeld() const;
  /// Whether it was started and not stopped since.
  bool isRunning() const;

  /// Hands a frame to the stream's handler, on the handler's queue, whatever the type it was added
  /// for; nothing once the stream has stopped or is gone.
  void deliver(Frame frame, StreamOutputType type = StreamOutputType::screen);
  /// Delivers the picture of the captured window from now on: once running, and on each call.
  void showPicture(Pixels picture);
  /// The system ends the stream and tells its delegate.
  void endBySystem(const Error& error);

  // For the stream.

  void setStream(std::weak_ptr<Stream> stream);
  std::optional<Error> addOutput(std::shared_ptr<StreamOutputHandler> handler,
                                 StreamOutputType type, std::shared_ptr<DispatchQueue> queue);
  void start(StreamCompletion completion);
  void stop(StreamCompletion completion);
  void update(const StreamConfiguration& configuration, StreamCompletion completion);
  void release();

 private:
  void record(StreamCall::Kind kind, StreamOutputType type = StreamOutputType::screen);
  void output(const SampleBuffer& sample, StreamOutputType type);
  void didStart();
  /// Runs `then` once no further sample can begin.
  void endDelivery(Block then);

  const WindowID windowID_;
  const StreamScript script_;
  const std::weak_ptr<StreamDelegate> delegate_;
  ServiceAnswers& answers_;
  CallJournal& journal_;

  mutable std::mutex mutex_;  // guards everything below
  StreamConfiguration configuration_;
  std::vector<StreamCall> calls_;
  std::weak_ptr<Stream> stream_;
  std::shared_ptr<StreamOutputHandler> handler_;
  std::shared_ptr<DispatchQueue> queue_;
  Pixels picture_;
  bool running_ = false;
  bool ended_ = false;
};

/// A stream whose every word goes to its tap.
class SimulatedStream : public Stream {
 public:
  explicit SimulatedStream(std::shared_ptr<StreamTap> tap) : tap_(std::move(tap)) {}
  ~SimulatedStream() override { tap_->release(); }

  std::optional<Error> addStreamOutput(std::shared_ptr<StreamOutputHandler> handler,
                                       StreamOutputType type,
                                       std::shared_ptr<DispatchQueue> queue) override;
  void startCapture(StreamCompletion completion) override;
  void stopCapture(StreamCompletion completion) override;
  void updateConfiguration(const StreamConfiguration& configuration,
                           StreamCompletion completion) override;

 private:
  const std::shared_ptr<StreamTap> tap_;
};

}  // namespace vistrel::platform::simulated
