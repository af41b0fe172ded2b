#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "platform/Backend.h"
#include "platform/ScreenCapture.h"
#include "platform/simulated/CallJournal.h"
#include "platform/simulated/ServiceAnswers.h"
#include "platform/simulated/SimulatedFrames.h"
#include "platform/simulated/SimulatedStream.h"

namespace vistrel::platform::simulated {

/// One question for the shareable content.
struct ContentRequest {
  DesktopWindows desktopWindows = DesktopWindows::included;
  ListedWindows listedWindows = ListedWindows::all;

  friend bool operator==(const ContentRequest&, const ContentRequest&) = default;
};

/// Windows of other programs, and the service that lists and streams them. Questions for the
/// content, and streams that start and stop, go into the journal. Any thread.
class SimulatedCapture : public ScreenCaptureBackend {
 public:
  SimulatedCapture(SimulatedQueue& serviceQueue, CallJournal& journal)
      : journal_(journal), answers_(serviceQueue) {}

  // Permission. Without it listing fails, as does starting a stream.

  /// What preflight and request answer from now on. At first both grant.
  void setAccess(bool preflight, bool request);
  int preflightCount() const;
  int requestCount() const;

  // Windows of other programs, in the service's order: the order in which they were opened.

  /// Gives the window a number when it has none.
  WindowID openWindow(ShareableWindow window);
  void changeWindow(WindowID id, const std::function<void(ShareableWindow&)>& change);
  void closeWindow(WindowID id);
  std::vector<WindowRecord> windows() const;
  /// What the window shows; its streams deliver it while it is on screen.
  void paintWindow(WindowID id, Pixels picture);

  // Answers. Content is as it was when it was asked for.

  ServiceAnswers& answers() { return answers_; }
  /// Listing answers with this error from now on, or with content again.
  void failContent(std::optional<Error> error);
  std::vector<ContentRequest> contentRequests() const;

  // Streams.

  /// What streams made from now on do.
  void scriptStreams(StreamScript script);
  /// Every stream that was ever made, in order.
  std::vector<std::shared_ptr<StreamTap>> streams() const;
  std::shared_ptr<StreamTap> lastStream() const;

  // Images.

  /// Making an image fails from now on, or works again.
  void failImages(bool fail);
  std::vector<ImageContextOptions> imageContexts() const;

  bool preflightScreenCaptureAccess() override;
  bool requestScreenCaptureAccess() override;
  void getShareableContent(DesktopWindows desktopWindows, ListedWindows listedWindows,
                           ShareableContentCompletion completion) override;
  std::shared_ptr<Stream> makeStream(const ContentFilter& filter,
                                     const StreamConfiguration& configuration,
                                     std::weak_ptr<StreamDelegate> delegate) override;
  std::shared_ptr<ImageContext> makeImageContext(const ImageContextOptions& options) override;

 private:
  struct SourceWindow {
    WindowRecord record;
    Pixels picture;
  };

  bool isPermitted() const;
  SourceWindow* find(WindowID id);
  std::vector<WindowRecord> listed(const ContentRequest& request) const;
  void showPictureOf(WindowID id);

  CallJournal& journal_;
  ServiceAnswers answers_;
  mutable std::mutex mutex_;  // guards everything below
  bool preflight_ = true;
  bool request_ = true;
  int preflightCount_ = 0;
  int requestCount_ = 0;
  WindowID nextID_ = 1001;
  std::vector<SourceWindow> windows_;
  std::optional<Error> contentError_;
  std::vector<ContentRequest> contentRequests_;
  StreamScript script_;
  std::vector<std::shared_ptr<StreamTap>> streams_;
  std::shared_ptr<std::atomic<bool>> imagesFail_ = std::make_shared<std::atomic<bool>>(false);
  std::vector<ImageContextOptions> imageContexts_;
};

}  // namespace vistrel::platform::simulated
