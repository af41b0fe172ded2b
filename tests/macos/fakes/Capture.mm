#include "tests/macos/fakes/CaptureFakes.h"

#include <algorithm>

#include "tests/macos/fakes/Recorder.h"
#include "tests/macos/fakes/State.h"
#include "tests/macos/fakes/World.h"

using namespace vistrel;

@interface VLPixelBuffer : NSObject {
 @public
  std::size_t _width;
  std::size_t _height;
  std::vector<std::uint8_t> _bytes;
  int _locks;
}
@end

@implementation VLPixelBuffer

- (void)dealloc {
  if (_locks != 0) fake::fail("a pixel buffer goes while its memory is locked");
}

@end

@interface VLSampleBuffer : NSObject {
 @public
  VLPixelBuffer* _picture;
  NSArray* _attachments;
}
@end

@implementation VLSampleBuffer
@end

/// A picture of the graphics library.
@interface VLImage : NSObject
@end

@implementation VLImage
@end

namespace {

/// Without keeping them.
std::vector<SCStream * __unsafe_unretained>& allStreams() {
  static auto* const streams = new std::vector<SCStream * __unsafe_unretained>;
  return *streams;
}

NSString* text(const std::string& text) { return [NSString stringWithUTF8String:text.c_str()]; }

NSError* makeError(const std::string& description) {
  NSError* const error = [[NSError alloc] init];
  error.localizedDescription = text(description);
  return error;
}

NSError* errorOrNil(const std::optional<std::string>& description) {
  return description ? makeError(*description) : nil;
}

SCWindow* serviceWindow(const fake::SourceWindow& source) {
  SCRunningApplication* const application = [[SCRunningApplication alloc] init];
  application.applicationName = text(source.application);
  application.processID = source.processID;
  SCWindow* const window = [[SCWindow alloc] init];
  window.windowID = source.id;
  window.title = text(source.title);
  window.frame = source.frame;
  window.owningApplication = application;
  window.windowLayer = source.layer;
  window.onScreen = source.isOnScreen;
  return window;
}

SCShareableContent* shareableContent(bool onScreenAlone) {
  NSMutableArray<SCWindow*>* const windows = [NSMutableArray array];
  for (const fake::SourceWindow& source : fake::world().desktop().windows) {
    if (source.isOnScreen || !onScreenAlone) [windows addObject:serviceWindow(source)];
  }
  SCShareableContent* const content = [[SCShareableContent alloc] init];
  content.windows = windows;
  return content;
}

/// What the service refuses everything with that takes the permission.
std::optional<std::string> refusal() {
  if (fake::world().desktop().isScreenCaptureAllowed) return std::nullopt;
  return "The user declined TCCs for application, window, display capture";
}

/// No page says which queue completion handlers run on, so that it is none of the program's.
void answerLater(dispatch_block_t answer) {
  fake::runLater(fake::serviceQueue(), fake::world().desktop().serviceSeconds, answer);
}

void answer(void (^handler)(NSError*), NSError* error) {
  answerLater(^{
    if (handler != nil) handler(error);
  });
}

/// Says why a call failed, if that says anything. A success may leave an error behind as well:
/// Error Handling Programming Guide, "Using and Creating Error Objects".
void leaveError(NSError** error, const std::optional<std::string>& failure) {
  if (error == nullptr) return;
  *error = makeError(failure.value_or("left behind by a success"));
  if (failure && failure->empty()) *error = nil;
}

VLPixelBuffer* makePixels(const fake::Frame& frame) {
  VLPixelBuffer* const pixels = [[VLPixelBuffer alloc] init];
  pixels->_width = frame.width;
  pixels->_height = frame.height;
  for (std::size_t i = 0; i < frame.width * frame.height; ++i) {
    const auto pixel = frame.pixelAt ? frame.pixelAt(i % frame.width, i / frame.width)
                                     : std::to_array(frame.pixel);
    pixels->_bytes.insert(pixels->_bytes.end(), pixel.begin(), pixel.end());
  }
  return pixels;
}

VLSampleBuffer* makeSample(const fake::Frame& frame) {
  VLSampleBuffer* const sample = [[VLSampleBuffer alloc] init];
  if (frame.hasPicture) sample->_picture = makePixels(frame);
  if (frame.status) {
    sample->_attachments =
        @[ @{SCStreamFrameInfoStatus : [NSNumber numberWithInteger:*frame.status]} ];
  }
  return sample;
}

VLPixelBuffer* pixelsOf(CVPixelBufferRef buffer) { return (__bridge VLPixelBuffer*)buffer; }
VLSampleBuffer* sampleOf(CMSampleBufferRef sample) { return (__bridge VLSampleBuffer*)sample; }

}  // namespace

@implementation SCShareableContent (VLBehaviour)

+ (void)getShareableContentExcludingDesktopWindows:(BOOL)excludesDesktop
                               onScreenWindowsOnly:(BOOL)onScreenAlone
                                 completionHandler:
                                     (void (^)(SCShareableContent*, NSError*))handler {
  fake::record(self, _cmd, excludesDesktop, onScreenAlone, handler);
  answerLater(^{
    auto& scripted = fake::world().desktop().listingError;
    NSError* const error = errorOrNil(scripted ? scripted : refusal());
    handler(error == nil ? shareableContent(onScreenAlone) : nil, error);
  });
}

@end

@implementation SCContentFilter (VLBehaviour)

- (instancetype)initWithDesktopIndependentWindow:(SCWindow*)window {
  self = [super init];
  fake::record(self, _cmd, window);
  self.window = window;
  return self;
}

@end

@implementation SCStream (VLBehaviour)

- (instancetype)initWithFilter:(SCContentFilter*)filter
                 configuration:(SCStreamConfiguration*)configuration
                      delegate:(id<SCStreamDelegate>)delegate {
  self = [super init];
  fake::record(self, _cmd, filter, configuration, delegate);
  self.filter = filter;
  self.configuration = configuration;
  self.delegate = delegate;
  allStreams().push_back(self);
  return self;
}

- (void)dealloc {
  std::erase(allStreams(), self);
}

- (BOOL)addStreamOutput:(id<SCStreamOutput>)output
                   type:(SCStreamOutputType)type
     sampleHandlerQueue:(dispatch_queue_t)queue
                  error:(NSError**)error {
  fake::record(self, _cmd, output, type, queue, error);
  const auto& failure = fake::world().desktop().outputError;
  leaveError(error, failure);
  if (failure) return NO;
  self.output = output;
  self.sampleHandlerQueue = queue;
  return YES;
}

- (void)startCaptureWithCompletionHandler:(void (^)(NSError*))handler {
  fake::record(self, _cmd, handler);
  const auto& scripted = fake::world().desktop().startError;
  NSError* const error = errorOrNil(scripted ? scripted : refusal());
  self.isCapturing = error == nil;
  answer(handler, error);
}

- (void)stopCaptureWithCompletionHandler:(void (^)(NSError*))handler {
  fake::record(self, _cmd, handler);
  NSError* const error = self.isCapturing ? nil : makeError("The stream is not running");
  self.isCapturing = NO;
  answer(handler, error);
}

- (void)updateConfiguration:(SCStreamConfiguration*)configuration
          completionHandler:(void (^)(NSError*))handler {
  fake::record(self, _cmd, configuration, handler);
  self.configuration = configuration;
  answer(handler, nil);
}

@end

@implementation CIImage (VLBehaviour)

+ (CIImage*)imageWithCVPixelBuffer:(CVPixelBufferRef)buffer {
  VLPixelBuffer* const pixels = pixelsOf(buffer);
  CIImage* const image = [[CIImage alloc] init];
  image.buffer = pixels;
  image.extent = {{0, 0},
                  {static_cast<CGFloat>(pixels->_width), static_cast<CGFloat>(pixels->_height)}};
  return image;
}

@end

@implementation CIContext (VLBehaviour)

- (CGImageRef)createCGImage:(CIImage*)image fromRect:(CGRect)rect {
  fake::record(self, _cmd, image, rect);
  return (__bridge_retained CGImageRef)[[VLImage alloc] init];
}

@end

namespace vistrel::fake {

CVPixelBufferRef makePicture(const Frame& frame) {
  return (__bridge_retained CVPixelBufferRef)makePixels(frame);
}

std::vector<SCStream*> streams() { return {allStreams().begin(), allStreams().end()}; }

void enqueue(SCStream* stream, const Frame& frame) {
  if (!stream.isCapturing) return;
  @autoreleasepool {
    VLSampleBuffer* const sample = makeSample(frame);
    // The queue asked for, with the output that is there when the sample's turn comes: SCStream,
    // addStreamOutput:type:sampleHandlerQueue:error:. No page says that a stop takes back what
    // waits there.
    runLater(stream.sampleHandlerQueue, 0, ^{
      [stream.output stream:stream
          didOutputSampleBuffer:(__bridge CMSampleBufferRef)sample
                         ofType:SCStreamOutputTypeScreen];
    });
  }
}

void deliver(SCStream* stream, const Frame& frame) {
  enqueue(stream, frame);
  turn();
}

void stopWithError(SCStream* stream, const std::string& description) {
  stream.isCapturing = NO;
  runLater(serviceQueue(), 0, ^{
    [stream.delegate stream:stream didStopWithError:makeError(description)];
  });
  turn();
}

}  // namespace vistrel::fake

extern "C" {

bool CGPreflightScreenCaptureAccess() { return fake::world().desktop().isScreenCaptureAllowed; }

/// Asks the person the first time, which is what the scenario sets, and answers what holds.
bool CGRequestScreenCaptureAccess() {
  fake::note("CGRequestScreenCaptureAccess");
  return fake::world().desktop().isScreenCaptureAllowed;
}

CMTime CMTimeMake(int64_t value, int32_t timescale) { return {value, timescale, 1, 0}; }

Boolean CMSampleBufferIsValid(CMSampleBufferRef /*sample*/) { return 1; }

CVImageBufferRef CMSampleBufferGetImageBuffer(CMSampleBufferRef sample) {
  return (__bridge CVImageBufferRef)sampleOf(sample)->_picture;
}

CFArrayRef CMSampleBufferGetSampleAttachmentsArray(CMSampleBufferRef sample, Boolean /*create*/) {
  return (__bridge CFArrayRef)sampleOf(sample)->_attachments;
}

OSType CVPixelBufferGetPixelFormatType(CVPixelBufferRef /*buffer*/) {
  return kCVPixelFormatType_32BGRA;
}

size_t CVPixelBufferGetWidth(CVPixelBufferRef buffer) { return pixelsOf(buffer)->_width; }
size_t CVPixelBufferGetHeight(CVPixelBufferRef buffer) { return pixelsOf(buffer)->_height; }
size_t CVPixelBufferGetBytesPerRow(CVPixelBufferRef buffer) { return pixelsOf(buffer)->_width * 4; }

CVReturn CVPixelBufferLockBaseAddress(CVPixelBufferRef buffer, CVPixelBufferLockFlags /*flags*/) {
  ++pixelsOf(buffer)->_locks;
  return kCVReturnSuccess;
}

CVReturn CVPixelBufferUnlockBaseAddress(CVPixelBufferRef buffer, CVPixelBufferLockFlags /*flags*/) {
  if (--pixelsOf(buffer)->_locks < 0) fake::fail("a pixel buffer is unlocked that is not locked");
  return kCVReturnSuccess;
}

/// To be called between locking and unlocking: CVPixelBufferLockBaseAddress.
void* CVPixelBufferGetBaseAddress(CVPixelBufferRef buffer) {
  if (pixelsOf(buffer)->_locks == 0) fake::fail("memory of a pixel buffer is read without a lock");
  return pixelsOf(buffer)->_bytes.data();
}
}
