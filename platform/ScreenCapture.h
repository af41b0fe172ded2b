#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Dispatch.h"
#include "platform/Geometry.h"
#include "platform/Image.h"

namespace vistrel::platform {

/// The window server's number for a window.
using WindowID = std::uint32_t;

/// Why the system could not do something, in words for a person.
struct Error {
  std::string localizedDescription;
};

/// Whether the program may list and capture windows of others, without asking a person. Main
/// thread.
bool preflightScreenCaptureAccess();
/// Asks a person for that permission where the system does so; answers whether it is granted now.
/// Main thread.
bool requestScreenCaptureAccess();

/// A program that owns windows, as seen when the list was made.
struct SharedApplication {
  std::string applicationName;  // as a person knows it
  std::int32_t processID = -1;
};

/// A window as it was when the list was made. Never changed, shared by reference.
struct ShareableWindow {
  WindowID windowID = 0;
  std::optional<std::string> title;  // UTF-8
  /// Points; global display space: origin at the top-left of the primary display, y downwards.
  Rect frame;
  std::shared_ptr<const SharedApplication> owningApplication;  // null when unknown
  bool isOnScreen = false;
  std::int64_t windowLayer = 0;  // 0 for ordinary windows

  /// Of the owning application; `unknown` where that is not known.
  std::string applicationNameOr(const char* unknown) const {
    return owningApplication ? owningApplication->applicationName : unknown;
  }
};
using WindowRecord = std::shared_ptr<const ShareableWindow>;

struct ShareableContent {
  std::vector<WindowRecord> windows;
};

/// Either content or an error is missing from the answer.
using ShareableContentCompletion = std::function<void(
    std::shared_ptr<const ShareableContent> content, std::optional<Error> error)>;

/// Whether the windows of the desktop itself, such as its wallpaper, are listed.
enum class DesktopWindows { included, excluded };

/// Which windows are listed by where they are.
enum class ListedWindows { all, onScreen };

/// Asks for the windows that can be captured. The completion comes exactly once, on a queue of the
/// service's choosing, never on the main thread and never from within this call; it also comes when
/// the display server is lost. The service needs nothing from the main thread, so the main thread
/// may wait for it. Any thread.
void getShareableContent(DesktopWindows desktopWindows, ListedWindows listedWindows,
                         ShareableContentCompletion completion);

/// A time as a fraction of seconds.
struct MediaTime {
  std::int64_t value = 0;
  std::int32_t timescale = 1;

  friend bool operator==(const MediaTime&, const MediaTime&) = default;
};

/// How frames are to be delivered.
struct StreamConfiguration {
  std::int64_t width = 0;   // pixels; where the server hands out its own picture, a ceiling
  std::int64_t height = 0;  // pixels
  MediaTime minimumFrameInterval;
  int queueDepth = 3;
  bool showsCursor = false;
  bool scalesToFit = false;
  PixelFormat pixelFormat = pixelFormat32BGRA;

  friend bool operator==(const StreamConfiguration&, const StreamConfiguration&) = default;
};

/// What to capture: one window alone, wherever it is and whatever lies over it.
struct ContentFilter {
  /// As listed by the backend that is to capture it, which may keep more in a record than it shows.
  WindowRecord desktopIndependentWindow;
};

/// Raw values are those of SCFrameStatus.
enum class FrameStatus : std::int64_t {
  complete = 0,
  idle = 1,
  blank = 2,
  suspended = 3,
  started = 4,
  stopped = 5,
};

/// One delivery of a stream. Immutable.
class SampleBuffer {
 public:
  virtual ~SampleBuffer() = default;
  virtual bool isValid() const = 0;
  /// The `FrameStatus`, or a value beyond those, that the buffer's first attachments carry. None
  /// where there are no attachments, no status among them, or one that is no integer.
  virtual std::optional<std::int64_t> frameStatus() const = 0;
  /// Null for samples without a picture.
  virtual std::shared_ptr<const PixelBuffer> imageBuffer() const = 0;
};

/// Raw value is that of SCStreamOutputType.
enum class StreamOutputType { screen = 0, audio = 1 };

class Stream;

/// Takes a stream's samples.
class StreamOutputHandler {
 public:
  virtual ~StreamOutputHandler() = default;
  /// Runs on the queue that was given with the handler.
  virtual void streamDidOutputSampleBuffer(Stream& stream, const SampleBuffer& sample,
                                           StreamOutputType type) = 0;
};

/// Hears of a stream that the system ended by itself.
class StreamDelegate {
 public:
  virtual ~StreamDelegate() = default;
  virtual void streamDidStopWithError(Stream& stream, const Error& error) = 0;
};

using StreamCompletion = std::function<void(std::optional<Error> error)>;

/// Frames of one window. Any thread.
///
/// Order: every completion comes exactly once, never on the main thread, also after a stop and when
/// the display server is lost. No sample begins after a stop's completion. What a handler has
/// posted to the main queue before that may still arrive. The stream holds its handler strongly and
/// its delegate weakly. Dropping the last reference stops it.
class Stream {
 public:
  virtual ~Stream() = default;

  /// None when the handler was added. Once, before capture starts; the queue is one of this
  /// backend's serial ones.
  virtual std::optional<Error> addStreamOutput(
      std::shared_ptr<StreamOutputHandler> handler, StreamOutputType type,
      std::shared_ptr<DispatchQueue> sampleHandlerQueue) = 0;
  virtual void startCapture(StreamCompletion completion) = 0;
  virtual void stopCapture(StreamCompletion completion) = 0;
  virtual void updateConfiguration(const StreamConfiguration& configuration,
                                   StreamCompletion completion) = 0;
};

/// Any thread.
std::shared_ptr<Stream> makeStream(const ContentFilter& filter,
                                   const StreamConfiguration& configuration,
                                   std::weak_ptr<StreamDelegate> delegate);

}  // namespace vistrel::platform
