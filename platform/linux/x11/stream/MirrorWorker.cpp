#include "platform/linux/x11/stream/MirrorWorker.h"

#include <algorithm>
#include <cassert>
#include <utility>

#include "platform/linux/x11/server/ClientRoom.h"

namespace vistrel::platform::linux_desktop {

namespace {

/// As many clients as others may still want to be; each mirror is one.
constexpr int leftForOthers = 16;

/// How often memory for a panel is looked for where the server had none, in seconds.
constexpr double lackingLook = 0.5;

/// How long panels stand still before they are shown once more, in seconds.
constexpr double rest = 1;

}  // namespace

std::shared_ptr<MirrorWorker> MirrorWorker::of(const std::shared_ptr<SerialQueue>& queue) {
  auto former = existingOf(*queue);
  if (former && !former->connection_->isLost()) return former;
  auto connection = Connection::open();
  if (!connection || !hasRoomForMoreThan(*connection, leftForOthers)) return nullptr;
  std::shared_ptr<MirrorWorker> worker(new MirrorWorker(queue, std::move(connection)));
  queue->watch(worker->connection_->descriptor(), [worker = worker.get()] { worker->serve(); });
  queue->attachment() = worker;
  if (former) former->handOverTo(*worker);
  return worker;
}

std::shared_ptr<MirrorWorker> MirrorWorker::existingOf(SerialQueue& queue) {
  return std::static_pointer_cast<MirrorWorker>(queue.attachment());
}

MirrorWorker::MirrorWorker(const std::shared_ptr<SerialQueue>& queue,
                           std::unique_ptr<Connection> connection)
    : queue_(queue),
      connection_(std::move(connection)),
      sleep_(*connection_),
      store_(*connection_) {}

std::optional<Error> MirrorWorker::startCapture(const void* key, WindowID window,
                                                const OpenSource& open,
                                                const StreamConfiguration& configuration,
                                                Capture::Receiver receiver) {
  assert(thread_.isCurrent());
  if (captureOf(key)) return Error{"The stream is running already."};
  if (!connection_->extensions().offersCapture) {
    return Error{"The display server does not offer capturing windows."};
  }
  auto source = openSource(window, open);
  if (!source) return Error{"The window is no longer there."};
  if (!hasRoomFor(*source)) {
    release(std::move(source));
    return Error{"The display server has no memory for a picture of the window."};
  }
  auto capture =
      std::make_shared<Capture>(*this, std::move(source), configuration, std::move(receiver));
  captures_.push_back({key, open, std::move(capture)});
  return std::nullopt;
}

bool MirrorWorker::hasRoomFor(const CaptureSource& source) {
  if (!source.hasRoom() || !source.picture()) return source.hasRoom();
  const auto leastOfACopy = halfLevel(source.picture()->size(), 1).size;
  return makeOpaqueCanvas(*connection_, leastOfACopy).has_value();
}

std::unique_ptr<CaptureSource> MirrorWorker::openSource(WindowID window, const OpenSource& open) {
  auto resting = std::move(restingSource_);
  if (!resting || resting->window() != window || resting->isGone()) {
    release(std::move(resting));
    auto queue = queue_.lock();
    if (!queue) return nullptr;
    const auto look = [worker = weak_from_this()] {
      if (const auto strong = worker.lock()) strong->serve();
    };
    return open({*connection_, look, std::move(queue)}, window);
  }
  resting->renew();
  return resting;
}

void MirrorWorker::release(std::unique_ptr<CaptureSource> source) {
  if (!source) return;
  const auto window = source->window();
  source.reset();
  // It has taken along what the connection listened to for others of the same window.
  const auto renewIfAffected = [window](CaptureSource& other) {
    if (other.window() == window) other.renew();
  };
  for (const auto& each : captures_) renewIfAffected(each.capture->source());
  if (restingSource_) renewIfAffected(*restingSource_);
}

Capture* MirrorWorker::captureOf(const void* key) {
  const auto found = std::find_if(captures_.begin(), captures_.end(),
                                  [&](const Running& each) { return each.key == key; });
  return found == captures_.end() ? nullptr : found->capture.get();
}

void MirrorWorker::stopCapture(const void* key) {
  assert(thread_.isCurrent());
  auto* const capture = captureOf(key);
  if (!capture) return;
  auto source = capture->takeSource();
  source->rest();
  std::erase_if(captures_, [&](const Running& each) { return each.key == key; });
  release(std::exchange(restingSource_, std::move(source)));
}

void MirrorWorker::comeBackAt(double seconds) {
  assert(thread_.isCurrent());
  if (comingBackAt_ && *comingBackAt_ <= seconds) return;
  const auto queue = queue_.lock();
  if (!queue) return;
  comingBackAt_ = seconds;
  queue->asyncAt(seconds, [worker = weak_from_this(), seconds] {
    const auto strong = worker.lock();
    // An earlier moment may have taken this one's place.
    if (!strong || strong->comingBackAt_ != seconds) return;
    strong->comingBackAt_.reset();
    strong->serve();
  });
}

void MirrorWorker::serve() {
  assert(thread_.isCurrent());
  const auto self = shared_from_this();  // when the connection is lost, another takes its place
  connection_->serve([this](const xcb_generic_event_t& event) { handle(event); },
                     [this] {
                       for (auto& each : panels_) showNextChrome(each);
                       for (const auto& each : captures_) each.capture->proceed();
                     });
  if (connection_->isLost()) lose();
}

void MirrorWorker::handle(const xcb_generic_event_t& event) {
  for (const auto& each : captures_) each.capture->handle(event);
  if (restingSource_) restingSource_->handle(event);
  for (auto& each : panels_) each.handle(event);
  sleep_.handle(event);
}

/// A server may throw out one connection alone: the mirror goes on over another.
void MirrorWorker::lose() {
  const auto queue = queue_.lock();
  if (!queue) return;
  if (onLost_) return onLost_();
  if (of(queue)) return;
  queue->unwatch(connection_->descriptor());
  for (const auto& each : std::exchange(captures_, {})) {
    each.capture->fail({"The connection to the display server was lost."});
  }
}

void MirrorWorker::handOverTo(MirrorWorker& heir) {
  if (const auto queue = queue_.lock()) queue->unwatch(connection_->descriptor());
  heir.setOnLost(onLost_);
  for (const auto& each : panels_) {
    heir.addPanel(each.window());
    if (const auto chrome = each.newestChrome()) heir.setChrome(each.window(), *chrome);
    heir.showPicture(each.window(), each.showsPicture());
  }
  panels_.clear();
  for (const auto& [key, open, capture] : std::exchange(captures_, {})) {
    const auto failure = heir.startCapture(key, capture->source().window(), open,
                                           capture->configuration(), capture->receiver());
    if (failure) capture->fail(*failure);
  }
}

std::shared_ptr<const Image> MirrorWorker::commit(WindowID source,
                                                  std::shared_ptr<const LivePicture> picture,
                                                  PictureChanges changes,
                                                  const CursorMark& cursor) {
  assert(thread_.isCurrent());
  auto queue = queue_.lock();
  if (!queue) return nullptr;
  // Another window's picture differs altogether.
  changes.everything |= store_.source() != picture.get();
  const auto sizes = pictureSizes(picture->size());
  const auto committed = store_.commit(std::move(picture), std::move(changes), cursor, sizes);
  if (!committed) return nullptr;
  for (auto& each : panels_) {
    each.pictureChanged(*committed);
    paint(each);
  }
  return std::make_shared<CommittedImage>(std::move(queue), source);
}

std::vector<PixelSize> MirrorWorker::pictureSizes(PixelSize source) const {
  std::vector<PixelSize> sizes;
  for (const auto& each : panels_) {
    if (const auto size = each.pictureSizeFor(source)) sizes.push_back(*size);
  }
  return sizes;
}

bool MirrorWorker::isPictureSeen() const {
  if (sleep_.isAsleep()) return false;
  const auto showsIt = [](const PanelPainter& each) {
    return each.isInSight() && each.pictureSizeFor({1, 1}).has_value();
  };
  return panels_.empty() || std::any_of(panels_.begin(), panels_.end(), showsIt);
}

const LivePicture* MirrorWorker::unchangedSource() {
  for (const auto& each : captures_) {
    if (each.capture->picture().get() != store_.source()) continue;
    if (each.capture->isUnchangedSinceCommit()) return store_.source();
  }
  return nullptr;
}

PanelPainter* MirrorWorker::panelOf(xcb_window_t window) {
  const auto found = std::find_if(panels_.begin(), panels_.end(), [&](const PanelPainter& each) {
    return each.window() == window;
  });
  return found == panels_.end() ? nullptr : &*found;
}

void MirrorWorker::addPanel(xcb_window_t window) {
  assert(thread_.isCurrent());
  panels_.emplace_back(*connection_, store_, window);
}

void MirrorWorker::removePanel(xcb_window_t window) {
  assert(thread_.isCurrent());
  panels_.remove_if([&](const PanelPainter& each) { return each.window() == window; });
  connection_->sync();
}

void MirrorWorker::setChrome(xcb_window_t window, AwaitedChrome chrome) {
  assert(thread_.isCurrent());
  auto* const panel = panelOf(window);
  if (!panel) return;
  panel->awaitChrome(std::move(chrome));
  showNextChrome(*panel);
}

void MirrorWorker::showNextChrome(PanelPainter& panel) {
  auto next = panel.takeNextChrome();
  if (!next) return;
  const auto formerSizes = pictureSizes(store_.size());
  if (!panel.setChrome(next->chrome)) {
    panel.putBack(*std::move(next));
    return comeBackAt(monotonicNow() + lackingLook);
  }
  const auto sizes = pictureSizes(store_.size());
  if (sizes != formerSizes) store_.prepareFor(sizes, unchangedSource());
  panel.pictureChanged({});
  paint(panel);
  // The window may be made as small as what it shows as soon as that is known.
  connection_->sync();
  next->shown();
}

void MirrorWorker::showPicture(xcb_window_t window, bool shows) {
  assert(thread_.isCurrent());
  auto* const panel = panelOf(window);
  if (!panel) return;
  panel->setShowsPicture(shows);
  paint(*panel);
}

void MirrorWorker::paint(PanelPainter& panel) {
  panel.paint();
  lastPaint_ = monotonicNow();
  if (!std::exchange(showsAgainAtRest_, true)) showAgainAt(lastPaint_ + rest);
}

void MirrorWorker::showAgainAt(double seconds) {
  const auto queue = queue_.lock();
  if (!queue) return;
  queue->asyncAt(seconds, [worker = weak_from_this()] {
    if (const auto strong = worker.lock()) strong->showAgainAtRest();
  });
}

/// mutter 43.8 on a busy machine may overlook what is drawn, above all right after a window's first
/// drawing and where windows change desktops, and shows what was there before until something is
/// drawn anew: with a still source, for good.
void MirrorWorker::showAgainAtRest() {
  if (monotonicNow() < lastPaint_ + rest) return showAgainAt(lastPaint_ + rest);
  showsAgainAtRest_ = false;
  for (auto& each : panels_) each.showAgain();
  serve();
}

}  // namespace vistrel::platform::linux_desktop
