#include "platform/simulated/SimulatedCapture.h"

#include <algorithm>
#include <utility>

namespace vistrel::platform::simulated {
namespace {

const Error notPermitted{"The person has not allowed screen recording."};

class SimulatedImageContext : public ImageContext {
 public:
  explicit SimulatedImageContext(std::shared_ptr<const std::atomic<bool>> fails)
      : fails_(std::move(fails)) {}

  std::shared_ptr<const Image> createImage(
      const std::shared_ptr<const PixelBuffer>& buffer) override {
    const auto pixels = std::dynamic_pointer_cast<const HostPixelBuffer>(buffer);
    if (*fails_ || !pixels || pixels->bytes().empty()) return nullptr;
    return std::make_shared<SimulatedImage>(pixels);
  }

 private:
  const std::shared_ptr<const std::atomic<bool>> fails_;
};

}  // namespace

void SimulatedCapture::setAccess(bool preflight, bool request) {
  const std::scoped_lock lock(mutex_);
  preflight_ = preflight;
  request_ = request;
}

int SimulatedCapture::preflightCount() const {
  const std::scoped_lock lock(mutex_);
  return preflightCount_;
}

int SimulatedCapture::requestCount() const {
  const std::scoped_lock lock(mutex_);
  return requestCount_;
}

bool SimulatedCapture::preflightScreenCaptureAccess() {
  const std::scoped_lock lock(mutex_);
  ++preflightCount_;
  return preflight_;
}

bool SimulatedCapture::requestScreenCaptureAccess() {
  const std::scoped_lock lock(mutex_);
  ++requestCount_;
  return request_;
}

bool SimulatedCapture::isPermitted() const { return preflight_ || (requestCount_ > 0 && request_); }

SimulatedCapture::SourceWindow* SimulatedCapture::find(WindowID id) {
  const auto found = std::find_if(windows_.begin(), windows_.end(),
                                  [id](const SourceWindow& w) { return w.record->windowID == id; });
  return found == windows_.end() ? nullptr : &*found;
}

WindowID SimulatedCapture::openWindow(ShareableWindow window) {
  const std::scoped_lock lock(mutex_);
  if (window.windowID == 0) window.windowID = nextID_++;
  const WindowID id = window.windowID;
  windows_.push_back({std::make_shared<const ShareableWindow>(std::move(window)), nullptr});
  return id;
}

void SimulatedCapture::changeWindow(WindowID id,
                                    const std::function<void(ShareableWindow&)>& change) {
  {
    const std::scoped_lock lock(mutex_);
    SourceWindow* window = find(id);
    if (window == nullptr) return;
    ShareableWindow changed = *window->record;
    change(changed);
    window->record = std::make_shared<const ShareableWindow>(std::move(changed));
  }
  showPictureOf(id);
}

void SimulatedCapture::closeWindow(WindowID id) {
  {
    const std::scoped_lock lock(mutex_);
    std::erase_if(windows_, [id](const SourceWindow& w) { return w.record->windowID == id; });
  }
  showPictureOf(id);
}

std::vector<WindowRecord> SimulatedCapture::windows() const {
  const std::scoped_lock lock(mutex_);
  return listed({});
}

void SimulatedCapture::paintWindow(WindowID id, Pixels picture) {
  {
    const std::scoped_lock lock(mutex_);
    if (SourceWindow* window = find(id)) window->picture = std::move(picture);
  }
  showPictureOf(id);
}

void SimulatedCapture::showPictureOf(WindowID id) {
  Pixels picture;
  std::vector<std::shared_ptr<StreamTap>> streams;
  {
    const std::scoped_lock lock(mutex_);
    const SourceWindow* window = find(id);
    if (window != nullptr && window->record->isOnScreen) picture = window->picture;
    streams = streams_;
  }
  for (const auto& stream : streams) {
    if (stream->windowID() == id) stream->showPicture(picture);
  }
}

void SimulatedCapture::failContent(std::optional<Error> error) {
  const std::scoped_lock lock(mutex_);
  contentError_ = std::move(error);
}

std::vector<ContentRequest> SimulatedCapture::contentRequests() const {
  const std::scoped_lock lock(mutex_);
  return contentRequests_;
}

std::vector<WindowRecord> SimulatedCapture::listed(const ContentRequest& request) const {
  std::vector<WindowRecord> records;
  for (const SourceWindow& window : windows_) {
    const ShareableWindow& facts = *window.record;
    if (request.listedWindows == ListedWindows::onScreen && !facts.isOnScreen) continue;
    const bool isOfDesktop = facts.windowLayer < 0;
    if (request.desktopWindows == DesktopWindows::excluded && isOfDesktop) continue;
    records.push_back(window.record);
  }
  return records;
}

void SimulatedCapture::getShareableContent(DesktopWindows desktopWindows,
                                           ListedWindows listedWindows,
                                           ShareableContentCompletion completion) {
  journal_.add("getShareableContent");
  const ContentRequest request{desktopWindows, listedWindows};
  std::shared_ptr<const ShareableContent> content;
  std::optional<Error> error;
  {
    const std::scoped_lock lock(mutex_);
    contentRequests_.push_back(request);
    error = isPermitted() ? contentError_ : notPermitted;
    if (!error)
      content = std::make_shared<const ShareableContent>(ShareableContent{listed(request)});
  }
  answers_.answer(Request::content,
                  [content = std::move(content), error = std::move(error),
                   completion = std::move(completion)] { completion(content, error); });
}

void SimulatedCapture::scriptStreams(StreamScript script) {
  const std::scoped_lock lock(mutex_);
  script_ = std::move(script);
}

std::vector<std::shared_ptr<StreamTap>> SimulatedCapture::streams() const {
  const std::scoped_lock lock(mutex_);
  return streams_;
}

std::shared_ptr<StreamTap> SimulatedCapture::lastStream() const {
  const std::scoped_lock lock(mutex_);
  return streams_.empty() ? nullptr : streams_.back();
}

std::shared_ptr<Stream> SimulatedCapture::makeStream(const ContentFilter& filter,
                                                     const StreamConfiguration& configuration,
                                                     std::weak_ptr<StreamDelegate> delegate) {
  const WindowID id = filter.desktopIndependentWindow->windowID;
  std::shared_ptr<StreamTap> tap;
  {
    const std::scoped_lock lock(mutex_);
    StreamScript script = script_;
    if (!isPermitted() && !script.startFails) script.startFails = notPermitted;
    tap = std::make_shared<StreamTap>(id, configuration, std::move(script), std::move(delegate),
                                      answers_, journal_);
    streams_.push_back(tap);
  }
  auto stream = std::make_shared<SimulatedStream>(tap);
  tap->setStream(stream);
  showPictureOf(id);
  return stream;
}

void SimulatedCapture::failImages(bool fail) { *imagesFail_ = fail; }

std::vector<ImageContextOptions> SimulatedCapture::imageContexts() const {
  const std::scoped_lock lock(mutex_);
  return imageContexts_;
}

std::shared_ptr<ImageContext> SimulatedCapture::makeImageContext(
    const ImageContextOptions& options) {
  const std::scoped_lock lock(mutex_);
  imageContexts_.push_back(options);
  return std::make_shared<SimulatedImageContext>(imagesFail_);
}

}  // namespace vistrel::platform::simulated
