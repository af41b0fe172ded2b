#include "platform/macos/capture/ScreenCaptureKitStream.h"

#include <utility>

#include "platform/macos/Conversions.h"
#include "platform/macos/GrandCentralDispatch.h"
#include "platform/macos/capture/CoreMediaSampleBuffer.h"
#include "platform/macos/capture/ShareableWindowRecord.h"

using namespace vistrel::platform;

/// Takes the service's calls for one stream.
@interface VLStreamAdaptor : NSObject <SCStreamOutput, SCStreamDelegate>
- (instancetype)initWithCallbacks:(std::shared_ptr<const macos::StreamCallbacks>)callbacks;
@end

@implementation VLStreamAdaptor {
  std::shared_ptr<const macos::StreamCallbacks> _callbacks;
}

- (instancetype)initWithCallbacks:(std::shared_ptr<const macos::StreamCallbacks>)callbacks {
  self = [super init];
  if (self != nil) _callbacks = std::move(callbacks);
  return self;
}

- (void)stream:(SCStream*)__unused sender
    didOutputSampleBuffer:(CMSampleBufferRef)sampleBuffer
                   ofType:(SCStreamOutputType)type {
  @autoreleasepool {
    const auto stream = _callbacks->stream.lock();
    if (!stream || !_callbacks->delivering) return;
    _callbacks->handler->streamDidOutputSampleBuffer(
        *stream, macos::CoreMediaSampleBuffer(sampleBuffer), static_cast<StreamOutputType>(type));
  }
}

- (void)stream:(SCStream*)__unused sender didStopWithError:(NSError*)error {
  const auto stream = _callbacks->stream.lock();
  const auto delegate = _callbacks->delegate.lock();
  if (!stream || !delegate) return;
  delegate->streamDidStopWithError(*stream, macos::coreError(error).value_or(Error{}));
}

@end

namespace vistrel::platform::macos {

namespace {

SCStreamConfiguration* streamConfiguration(const StreamConfiguration& configuration) {
  SCStreamConfiguration* converted = [[SCStreamConfiguration alloc] init];
  converted.width = static_cast<size_t>(configuration.width);
  converted.height = static_cast<size_t>(configuration.height);
  converted.minimumFrameInterval = CMTimeMake(configuration.minimumFrameInterval.value,
                                              configuration.minimumFrameInterval.timescale);
  converted.queueDepth = configuration.queueDepth;
  converted.showsCursor = configuration.showsCursor;
  converted.scalesToFit = configuration.scalesToFit;
  converted.pixelFormat = configuration.pixelFormat;
  return converted;
}

SCContentFilter* contentFilter(const ContentFilter& filter) {
  return [[SCContentFilter alloc]
      initWithDesktopIndependentWindow:serviceWindow(*filter.desktopIndependentWindow)];
}

}  // namespace

std::shared_ptr<Stream> ScreenCaptureKitStream::make(const ContentFilter& filter,
                                                     const StreamConfiguration& configuration,
                                                     std::weak_ptr<StreamDelegate> delegate) {
  const std::shared_ptr<ScreenCaptureKitStream> stream(
      new ScreenCaptureKitStream(filter, configuration, std::move(delegate)));
  stream->callbacks_->stream = stream;
  return stream;
}

ScreenCaptureKitStream::ScreenCaptureKitStream(const ContentFilter& filter,
                                               const StreamConfiguration& configuration,
                                               std::weak_ptr<StreamDelegate> delegate)
    : callbacks_(std::make_shared<StreamCallbacks>()) {
  callbacks_->delegate = std::move(delegate);
  adaptor_ = [[VLStreamAdaptor alloc] initWithCallbacks:callbacks_];
  stream_ = [[SCStream alloc] initWithFilter:contentFilter(filter)
                               configuration:streamConfiguration(configuration)
                                    delegate:adaptor_];
}

ScreenCaptureKitStream::~ScreenCaptureKitStream() {
  if (started_) stopCapture([](const std::optional<Error>&) {});
}

std::optional<Error> ScreenCaptureKitStream::addStreamOutput(
    std::shared_ptr<StreamOutputHandler> handler, StreamOutputType type,
    std::shared_ptr<DispatchQueue> sampleHandlerQueue) {
  NSError* error = nil;
  if (![stream_ addStreamOutput:adaptor_
                           type:static_cast<SCStreamOutputType>(type)
             sampleHandlerQueue:systemQueue(*sampleHandlerQueue)
                          error:&error]) {
    // It may have failed without saying why.
    return coreError(error).value_or(Error{});
  }
  callbacks_->handler = std::move(handler);
  sampleHandlerQueue_ = std::move(sampleHandlerQueue);
  return std::nullopt;
}

// The blocks below hold the service's stream: without its owner it might go before it has answered.

void ScreenCaptureKitStream::startCapture(StreamCompletion completion) {
  started_ = true;
  callbacks_->delivering = true;
  SCStream* stream = stream_;
  [stream startCaptureWithCompletionHandler:^(NSError* error) {
    (void)stream;
    completion(coreError(error));
  }];
}

void ScreenCaptureKitStream::stopCapture(StreamCompletion completion) {
  started_ = false;
  SCStream* stream = stream_;
  const auto callbacks = callbacks_;
  const auto queue = sampleHandlerQueue_;
  [stream stopCaptureWithCompletionHandler:^(NSError* error) {
    (void)stream;
    const auto finish = [callbacks, completion, result = coreError(error)] {
      callbacks->delivering = false;
      completion(result);
    };
    if (!queue) return finish();
    // Samples may wait in the handler's queue still: the answer has to come after them.
    queue->async(finish);
  }];
}

void ScreenCaptureKitStream::updateConfiguration(const StreamConfiguration& configuration,
                                                 StreamCompletion completion) {
  SCStream* stream = stream_;
  [stream updateConfiguration:streamConfiguration(configuration)
            completionHandler:^(NSError* error) {
              (void)stream;
              completion(coreError(error));
            }];
}

}  // namespace vistrel::platform::macos
