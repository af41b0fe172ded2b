#include "platform/linux/x11/stream/X11PanelSurface.h"

#include <cassert>
#include <utility>

#include "platform/linux/CurrentThread.h"
#include "platform/linux/x11/stream/MirrorWorker.h"

namespace vistrel::platform::linux_desktop {

X11PanelSurface::X11PanelSurface(std::uint32_t window, std::shared_ptr<SerialQueue> homeQueue)
    : window_(window) {
  moveTo(std::move(homeQueue));
}

X11PanelSurface::~X11PanelSurface() { X11PanelSurface::detach(); }

void X11PanelSurface::post(std::function<void(MirrorWorker&)> work) const {
  if (!queue_) return;
  queue_->async([queue = queue_, work = std::move(work)] {
    // One that has lost its connection keeps for its heir what it is told.
    if (const auto worker = MirrorWorker::existingOf(*queue)) work(*worker);
  });
}

void X11PanelSurface::moveTo(std::shared_ptr<SerialQueue> queue) {
  leaveQueue();
  queue_ = std::move(queue);
  source_.reset();
  queue_->async([queue = queue_, window = window_, chrome = chrome_] {
    const auto worker = MirrorWorker::of(queue);
    if (!worker) return;
    worker->addPanel(window);
    if (chrome) worker->setChrome(window, *chrome);
  });
}

void X11PanelSurface::setChrome(PanelChrome chrome, std::function<void()> shown) {
  assert(isMainThread());
  auto isShown = [attached = std::weak_ptr(attached_), shown = std::move(shown)] {
    if (!shown) return;
    mainQueue().async([attached, shown] {
      if (attached.lock()) shown();
    });
  };
  chrome_ = {std::make_shared<const PanelChrome>(std::move(chrome)), std::move(isShown)};
  post([window = window_, chrome = *chrome_](MirrorWorker& worker) {
    worker.setChrome(window, chrome);
  });
}

std::shared_ptr<const PanelChrome> X11PanelSurface::chrome() const {
  return chrome_ ? chrome_->chrome : nullptr;
}

void X11PanelSurface::setContents(std::shared_ptr<const Image> image) {
  assert(isMainThread());
  const auto committed = std::dynamic_pointer_cast<const CommittedImage>(image);
  if (committed && committed->queue() != queue_) moveTo(committed->queue());
  const bool shows = committed != nullptr;
  const auto former = std::exchange(
      source_, shows ? std::optional<std::uint32_t>(committed->source()) : std::nullopt);
  // A picture that is shown is painted with each commit.
  if (former.has_value() == shows) return;
  post([window = window_, shows](MirrorWorker& worker) { worker.showPicture(window, shows); });
}

void X11PanelSurface::detach() {
  assert(isMainThread());
  attached_.reset();
  leaveQueue();
}

void X11PanelSurface::leaveQueue() {
  const auto queue = std::exchange(queue_, nullptr);
  if (!queue) return;
  asyncAndWait(*queue, [queue, window = window_] {
    if (const auto worker = MirrorWorker::existingOf(*queue)) worker->removePanel(window);
  });
}

}  // namespace vistrel::platform::linux_desktop
