#pragma once

#include <memory>
#include <mutex>

#include "platform/ScreenCapture.h"
#include "platform/linux/SerialQueue.h"
#include "platform/linux/x11/stream/MirrorWorker.h"

namespace vistrel::platform::linux_desktop {

/// A stream of one window. All its work is done on the queue that its handler was added with; what
/// is asked of it is done there in the order in which it was asked. Any thread.
class CaptureStream : public Stream, public std::enable_shared_from_this<CaptureStream> {
 public:
  CaptureStream(WindowID window, OpenSource open, const StreamConfiguration& configuration,
                std::weak_ptr<StreamDelegate> delegate);
  ~CaptureStream() override;

  std::optional<Error> addStreamOutput(std::shared_ptr<StreamOutputHandler> handler,
                                       StreamOutputType type,
                                       std::shared_ptr<DispatchQueue> sampleHandlerQueue) override;
  void startCapture(StreamCompletion completion) override;
  void stopCapture(StreamCompletion completion) override;
  void updateConfiguration(const StreamConfiguration& configuration,
                           StreamCompletion completion) override;

 private:
  struct Output {
    std::shared_ptr<StreamOutputHandler> handler;
    std::shared_ptr<SerialQueue> queue;
  };

  Output output() const;
  /// The output's queue; one for this occasion while there is no output.
  std::shared_ptr<SerialQueue> workQueue() const;
  std::optional<Error> start(const std::shared_ptr<SerialQueue>& queue);
  Capture::Receiver makeReceiver();

  const WindowID window_;
  const OpenSource open_;
  const std::weak_ptr<StreamDelegate> delegate_;
  mutable std::mutex mutex_;
  Output output_;                      // guarded by mutex_
  StreamConfiguration configuration_;  // the queue's, once the stream has been handed to it
};

}  // namespace vistrel::platform::linux_desktop
