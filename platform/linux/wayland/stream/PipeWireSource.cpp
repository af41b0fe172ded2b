#include "platform/linux/wayland/stream/PipeWireSource.h"

#include <utility>

#include "platform/linux/Trace.h"
#include "platform/linux/x11/source/CursorOverlay.h"

namespace vistrel::platform::linux_desktop {

namespace {

StreamFrame partOf(const StreamFrame& frame, const PixelRect& part) {
  auto cut = frame;
  cut.layout.crop = moved(part, frame.layout.crop.x, frame.layout.crop.y);
  cut.place = moved(part, frame.place.x, frame.place.y);
  return cut;
}

}  // namespace

std::unique_ptr<CaptureSource> PipeWireSource::open(const CapturingMirror& mirror, WindowID window,
                                                    StreamRequest request) {
  std::unique_ptr<PipeWireSource> source(new PipeWireSource(mirror, window, std::move(request)));
  if (!source->ask(StreamRequest::Occasion::wish)) return nullptr;
  source->offered_->awaitAnswer();
  source->answered();
  if (source->isGone_) return nullptr;
  return source;
}

PipeWireSource::PipeWireSource(const CapturingMirror& mirror, WindowID window,
                               StreamRequest request)
    : connection_(mirror.connection),
      look_(mirror.look),
      queue_(mirror.queue),
      window_(window),
      request_(std::move(request)),
      transfer_(mirror.connection) {}

bool PipeWireSource::ask(StreamRequest::Occasion occasion) {
  hasFrameOfStream_ = false;
  offered_ = request_.ask(occasion);
  if (!offered_) return false;
  offered_->setOnChange([this, alive = std::weak_ptr(alive_)] {
    if (!alive.lock()) return;
    answered();
    lookAgain();
  });
  return true;
}

void PipeWireSource::askAgain() {
  // It may have been renewed meanwhile.
  if (offered_ || ask(StreamRequest::Occasion::ending)) return;
  giveUp();
  lookAgain();
}

void PipeWireSource::callAt(double seconds, void (PipeWireSource::*what)()) {
  const auto queue = queue_.lock();
  if (!queue) return;
  queue->asyncAt(seconds, [this, what, alive = std::weak_ptr(alive_)] {
    if (alive.lock()) (this->*what)();
  });
}

void PipeWireSource::askAgainAfter(double seconds) {
  stream_.reset();
  offered_.reset();
  callAt(monotonicNow() + seconds, &PipeWireSource::askAgain);
}

void PipeWireSource::answered() {
  if (isGone_ || !offered_) return;
  if (offered_->hasEnded()) return streamEnded();
  if (stream_ || !offered_->node()) return;
  const auto queue = queue_.lock();
  if (!queue) return;
  stream_ = PipeWireStream::connect(queue, *offered_->node(), copy_,
                                    [this, alive = std::weak_ptr(alive_)] {
                                      if (alive.lock()) arrived();
                                    });
  if (!stream_) return streamEnded();
  if (isResting_) stream_->setActive(false);
}

void PipeWireSource::arrived() {
  hasPointerNews_ |= stream_->takePointerNews();
  if (auto frame = stream_->takeFrame()) receive(*std::move(frame));
  if (stream_->hasEnded()) streamEnded();
  lookAgain();
}

/// Last of all: it may destroy this.
void PipeWireSource::lookAgain() const {
  const auto look = look_;
  look();
}

void PipeWireSource::receive(StreamFrame frame) {
  if (request_.hasShadow) {
    const PixelRows rows{frame.pixels(), frame.layout.stride};
    frame = partOf(frame, shadow_.windowIn(rows, frame.size()));
  }
  hasFrameOfStream_ = true;
  failures_ = 0;
  hasLostPipeWire_ = false;
  // A stream that goes on begins with a frame, whether its window has changed meanwhile or not.
  if (frame.isFirst && differencesOf(frame).empty()) return;
  newest_ = std::move(frame);
  hasNewFrame_ = true;
}

/// A window's end and the loss of PipeWire look alike, and come from either side first: whether the
/// window is streamed again tells them apart.
void PipeWireSource::streamEnded() {
  constexpr double pause = 1;
  if (!PipeWireStream::isReachable()) {
    hasLostPipeWire_ = true;
    return askAgainAfter(pause);
  }
  // The compositor may be slower than we are to notice that there is PipeWire again.
  const int mostFailures = hasLostPipeWire_ ? 10 : 1;
  if (!hasFrameOfStream_ && ++failures_ >= mostFailures) return giveUp();
  askAgainAfter(hasFrameOfStream_ ? 0 : pause);
}

void PipeWireSource::giveUp() {
  trace(TraceTopic::capture, [&] { return windowText(window_) + " is streamed no more"; });
  isGone_ = true;
  stream_.reset();
  offered_.reset();
}

void PipeWireSource::rest() {
  isResting_ = true;
  if (stream_) stream_->setActive(false);
  if (offered_) offered_->setWanted(false);
  pointerImage_ = nullptr;
  pointerLevels_ = nullptr;
}

void PipeWireSource::renew() {
  isResting_ = false;
  hasNewFrame_ = false;
  newest_.reset();
  pictured_.reset();
  if (!offered_ && !ask(StreamRequest::Occasion::wish)) return giveUp();
  offered_->setWanted(true);
  if (!stream_) return;
  stream_->setActive(false);
  stream_->setActive(true);
}

void PipeWireSource::setSeen(bool isSeen) {
  if (std::exchange(isSeen_, isSeen) != isSeen && isSeen) resume();
}

void PipeWireSource::resume() {
  if (stream_ && !isResting_) stream_->setActive(true);
}

void PipeWireSource::refresh() {
  if (!newest_ || (picture_ && picture_->size() == newest_->size())) return;
  auto canvas = makeOpaqueCanvas(connection_, newest_->size());
  hasRoom_ = canvas.has_value();
  if (!canvas) return;
  pictured_.reset();
  picture_ = std::make_shared<LivePicture>(
      LivePicture{std::move(canvas->pixmap), std::move(canvas->picture), rectOf(canvas->size), {}});
}

bool PipeWireSource::isViewable() const {
  return newest_ && picture_ && picture_->size() == newest_->size();
}

void PipeWireSource::askForChanges() {
  hasNewFrame_ = false;
  if (isSeen_ || !stream_ || !stream_->isActive()) return;
  stream_->setActive(false);
  callAt(monotonicNow() + unseenInterval, &PipeWireSource::resume);
}

std::vector<PixelRect> PipeWireSource::differencesOf(const StreamFrame& frame) const {
  const auto& crop = frame.layout.crop;
  if (!pictured_ || pictured_->memory != frame.memory || pictured_->layout.crop != crop) {
    return {rectOf(frame.size())};
  }
  std::vector<PixelRect> differences;
  for (const auto& each : copy_->changes()) {
    const auto inside = intersection(each, crop);
    if (!isEmpty(inside)) differences.push_back(moved(inside, -crop.x, -crop.y));
  }
  return differences;
}

void PipeWireSource::takeFrameOver() {
  if (!isViewable()) return;
  const auto differences = differencesOf(*newest_);
  if (differences.empty()) return;
  changes_.everything |= !pictured_;
  for (const auto& each : differences) {
    transfer_.put(*newest_, each, picture_->pixmap);
    changes_.rects.add(each);
  }
  copy_->forgetChanges();
  pictured_ = newest_;
  // The memory is written to again when the next frame comes.
  connection_.sync();
}

bool PipeWireSource::visitSampleGrid(int rows, int columns,
                                     const std::function<bool(PixelBGRA)>& visit) {
  if (!newest_) return false;
  const auto size = newest_->size();
  visitSampleGridInMemory({newest_->pixels(), size.width, size.height, newest_->layout.stride},
                          rows, columns, [&](PixelBGRA pixel) {
                            pixel.alpha = 0xff;
                            return visit(pixel);
                          });
  return true;
}

CursorMark PipeWireSource::pointerMark() {
  isPointerAsked_ = false;
  if (!stream_ || !stream_->pointerPlace() || !stream_->pointerImage() || !newest_) return {};
  const auto& image = stream_->pointerImage();
  if (image->pixels.empty()) return {};
  if (image != pointerImage_) {
    pointerLevels_ = cursorLevels(connection_, sizeOf(image->area), image->pixels.data());
    pointerImage_ = pointerLevels_ ? image : nullptr;
  }
  if (!pointerLevels_) return {};
  const auto& place = *stream_->pointerPlace();
  const auto area = moved(image->area, place.x - newest_->place.x, place.y - newest_->place.y);
  if (isEmpty(intersection(area, rectOf(newest_->size())))) return {};
  return {pointerLevels_, area};
}

}  // namespace vistrel::platform::linux_desktop
