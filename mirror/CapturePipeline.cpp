#include <algorithm>
#include <cassert>
#include <utility>

#include "mirror/BlankTest.h"
#include "mirror/FrameAcceptance.h"
#include "mirror/Freshness.h"
#include "mirror/LiveDotColors.h"
#include "mirror/WindowMirrorHUDController.h"

namespace vistrel {

using platform::Error;
using platform::ShareableContent;
using platform::WindowRecord;

namespace {

WindowRecord windowWithID(const ShareableContent& content, platform::WindowID windowID) {
  const auto& windows = content.windows;
  const auto found = std::find_if(windows.begin(), windows.end(), [&](const WindowRecord& window) {
    return window->windowID == windowID;
  });
  return found == windows.end() ? nullptr : *found;
}

platform::StreamConfiguration streamConfiguration(CaptureSize size) {
  return {.width = size.width,
          .height = size.height,
          .minimumFrameInterval = {.value = 1, .timescale = 30},
          .queueDepth = 6,
          .showsCursor = true,
          .scalesToFit = true,
          .pixelFormat = platform::pixelFormat32BGRA};
}

}  // namespace

void WindowMirrorHUDController::startCapture() {
  // The panel's screen is main's to ask; the service answers elsewhere.
  platform::getShareableContent(
      platform::DesktopWindows::included, platform::ListedWindows::all,
      [weak = weak_from_this(), scale = panel_->backingScaleFactor()](
          const std::shared_ptr<const ShareableContent>& content, const std::optional<Error>&) {
        if (const auto self = ifOpen(weak)) self->receiveShareableContent(content.get(), scale);
      });
}

void WindowMirrorHUDController::receiveShareableContent(const ShareableContent* content,
                                                        double backingScale) {
  const WindowRecord source = content != nullptr ? windowWithID(*content, windowID_) : nullptr;
  if (!source) return showStatusOnMain("Source window is no longer available.");
  const CaptureSize size = initialCaptureSize(source->frame.size, backingScale);
  captureSize_.store(size);
  startStream(source, size);
}

void WindowMirrorHUDController::startStream(const WindowRecord& source, CaptureSize size) {
  auto output = std::make_shared<StreamOutput>(
      [weak = weak_from_this()](const platform::SampleBuffer& sample) {
        if (const auto self = ifOpen(weak)) self->handleSample(sample);
      });
  auto stream =
      platform::makeStream({.desktopIndependentWindow = source}, streamConfiguration(size), output);
  if (stream->addStreamOutput(output, platform::StreamOutputType::screen, sampleQueue_)) {
    return showStatusOnMain("Couldn't attach to the window stream.");
  }
  stream_.store(stream);
  streamOutput_.store(std::move(output));
  stream->startCapture([self = shared_from_this()](const std::optional<Error>& error) {
    platform::mainQueue().async([self, error] { self->streamDidStart(error); });
  });
  // `close` on main may have found no stream yet, or one that had not started.
  if (isClosed()) stopCapture();
}

void WindowMirrorHUDController::streamDidStart(const std::optional<Error>& error) {
  if (isClosed()) return;
  if (error) {
    showStatus("Screen Recording permission is required.\n" + error->localizedDescription);
  } else {
    views_.hideStatus();
  }
}

void WindowMirrorHUDController::showStatusOnMain(std::string text) {
  platform::mainQueue().async([weak = weak_from_this(), text = std::move(text)] {
    if (const auto self = ifOpen(weak)) self->showStatus(text);
  });
}

void WindowMirrorHUDController::stopCapture() {
  if (const auto stream = stream_.load()) stream->stopCapture([](const std::optional<Error>&) {});
  stream_.store(nullptr);
  streamOutput_.store(nullptr);
}

void WindowMirrorHUDController::handleSample(const platform::SampleBuffer& sample) {
  assert(sampleQueue_->isCurrent());
  if (!sample.isValid() || !isCompleteFrame(sample.frameStatus())) return;
  const auto frame = sample.imageBuffer();
  if (!frame) return;
  if (lastImage_.load() && isMostlyBlank(*frame)) return;
  auto image = ciContext_->createImage(frame);
  if (!image) return;
  platform::mainQueue().async([weak = weak_from_this(), image = std::move(image)] {
    if (const auto self = ifOpen(weak)) self->showFrame(image);
  });
}

void WindowMirrorHUDController::showFrame(std::shared_ptr<const platform::Image> image) {
  assert(platform::mainQueue().isCurrent());
  lastImage_.store(image);
  views_.showPicture(std::move(image));
  lastFrameAt_ = platform::now();
  views_.setLiveDot(liveState);
  views_.hideStatus();
}

void WindowMirrorHUDController::tickFreshness() {
  assert(platform::mainQueue().isCurrent());
  if (isStale(lastFrameAt_, platform::now())) views_.setLiveDot(staleState);
}

void WindowMirrorHUDController::updateCaptureResolutionIfNeeded() {
  assert(platform::mainQueue().isCurrent());
  const auto stream = stream_.load();
  const std::int64_t width = captureSize_.load().width;
  if (!stream || width < 1) return;
  const auto grown = grownCaptureSize(width, panel_->frame().width(), sourcePointSize_,
                                      panel_->backingScaleFactor());
  if (!grown) return;
  captureSize_.store(*grown);
  stream->updateConfiguration(streamConfiguration(*grown), [](const std::optional<Error>&) {});
}

}  // namespace vistrel
