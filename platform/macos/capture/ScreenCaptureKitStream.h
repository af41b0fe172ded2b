#pragma once

#import <ScreenCaptureKit/ScreenCaptureKit.h>
#include <atomic>
#include <memory>

#include "platform/ScreenCapture.h"

namespace vistrel::platform::macos {

/// What the callbacks of one stream reach. Held by the stream and by the object that the service
/// calls, which may outlive the stream for the length of a call.
struct StreamCallbacks {
  std::weak_ptr<Stream> stream;                  // set once, before the stream is handed out
  std::weak_ptr<StreamDelegate> delegate;        // never changes
  std::shared_ptr<StreamOutputHandler> handler;  // set before capture starts, then never changes
  std::atomic<bool> delivering = false;          // from the start until a stop has completed
};

/// An `SCStream` of one window.
class ScreenCaptureKitStream final : public Stream {
 public:
  static std::shared_ptr<Stream> make(const ContentFilter& filter,
                                      const StreamConfiguration& configuration,
                                      std::weak_ptr<StreamDelegate> delegate);
  ScreenCaptureKitStream(const ScreenCaptureKitStream&) = delete;
  ScreenCaptureKitStream& operator=(const ScreenCaptureKitStream&) = delete;
  ~ScreenCaptureKitStream() override;

  std::optional<Error> addStreamOutput(std::shared_ptr<StreamOutputHandler> handler,
                                       StreamOutputType type,
                                       std::shared_ptr<DispatchQueue> sampleHandlerQueue) override;
  void startCapture(StreamCompletion completion) override;
  void stopCapture(StreamCompletion completion) override;
  void updateConfiguration(const StreamConfiguration& configuration,
                           StreamCompletion completion) override;

 private:
  ScreenCaptureKitStream(const ContentFilter& filter, const StreamConfiguration& configuration,
                         std::weak_ptr<StreamDelegate> delegate);

  std::shared_ptr<StreamCallbacks> callbacks_;
  // The service promises to hold neither its outputs nor its delegate.
  id<SCStreamOutput, SCStreamDelegate> adaptor_;
  SCStream* stream_;
  std::shared_ptr<DispatchQueue> sampleHandlerQueue_;  // set before capture starts
  std::atomic<bool> started_ = false;                  // and not told to stop since
};

}  // namespace vistrel::platform::macos
