#include "platform/linux/wayland/portal/PickedWindows.h"

#include <algorithm>
#include <utility>

#include "platform/linux/WindowLayer.h"

namespace vistrel::platform::linux_desktop {
namespace {

/// Where nothing tells how large a window is.
constexpr PixelSize supposedSize{640, 480};

std::string statusAfter(PortalSession::Failure failure) {
  switch (failure) {
    case PortalSession::Failure::cancelled:
      return {};
    case PortalSession::Failure::refused:
      return "The desktop has refused to share the window.";
    case PortalSession::Failure::gone:
      return "No window was shared: xdg-desktop-portal has failed.";
  }
  return {};
}

constexpr const char* statusWithoutPipeWire =
    "The window cannot be mirrored: PipeWire, which brings its picture, cannot be reached.";

}  // namespace

PipeWireNode pickedNode(std::uint32_t node, int remote) {
  constexpr std::uint32_t most = 60;
  return {.id = node, .remote = remote, .mostFrames = most};
}

PickedWindows::PickedWindows(const std::shared_ptr<SerialQueue>& queue,
                             std::shared_ptr<const SharedScreenLayout> layout, double longestIdle,
                             std::function<void(PickingOffer offer)> offerChanged,
                             WindowsChanged windowsChanged)
    : queue_(queue),
      layout_(std::move(layout)),
      longestIdle_(longestIdle),
      windowsChanged_(std::move(windowsChanged)),
      portal_(std::make_shared<ScreenCastPortal>(queue, std::move(offerChanged))) {}

void PickedWindows::pick(std::string parentWindow, Picked picked) {
  portal_->start(
      {.parentWindow = std::move(parentWindow), .restoreToken = {}}, whenClosed(),
      [this, weak = weak_from_this(), picked = std::move(picked)](
          const std::shared_ptr<PortalSession>& session, const PortalSession::Result& result) {
        if (!weak.lock()) return;
        if (const auto* const failure = std::get_if<PortalSession::Failure>(&result)) {
          return picked(nullptr, statusAfter(*failure));
        }
        started(session, std::get<PortalSession::Started>(result), picked);
      });
}

void PickedWindows::started(const std::shared_ptr<PortalSession>& session,
                            const PortalSession::Started& start, const Picked& picked) {
  session->openRemote([this, weak = weak_from_this(), session, start,
                       picked](const SharedDescriptor& remote) {
    const auto queue = queue_.lock();
    if (!weak.lock() || !queue) return;
    if (!remote) return picked(nullptr, statusWithoutPipeWire);
    firstFrame_ =
        std::make_unique<FirstFrame>(queue, pickedNode(start.node, *remote),
                                     [this, session, start, picked](std::optional<PixelSize> size) {
                                       const auto done = std::exchange(firstFrame_, nullptr);
                                       if (!done->isConnected())
                                         return picked(nullptr, statusWithoutPipeWire);
                                       add(session, start, size.value_or(supposedSize), picked);
                                     });
  });
}

void PickedWindows::add(const std::shared_ptr<PortalSession>& session,
                        const PortalSession::Started& start, PixelSize size, const Picked& picked) {
  auto record = std::make_shared<ShareableWindow>();
  const auto name = "Picked window " + std::to_string(++picks_);
  record->windowID = ids_.idOf(name);
  record->title = name;
  // Where it lies nobody tells.
  record->frame = layout_->get()->monitors().front().toPoints(rectOf(size));
  record->frame.origin = {};
  record->isOnScreen = true;
  record->windowLayer = layerOrdinary;
  windows_.push_back({.record = record,
                      .session = session->isOpen() ? session : nullptr,
                      .node = start.node,
                      .restoreToken = start.restoreToken,
                      .streams = {}});
  publish();
  endLater(windows_.back());
  picked(std::move(record), {});
}

PickedWindows::Window* PickedWindows::find(WindowID window) {
  const auto found = std::find_if(windows_.begin(), windows_.end(), [&](const Window& each) {
    return each.record->windowID == window;
  });
  return found == windows_.end() ? nullptr : &*found;
}

void PickedWindows::open(WindowID window, int stream, StreamRequest::Occasion occasion, Tell tell) {
  auto* const found = find(window);
  if (found == nullptr) return tell(0, nullptr);
  if (!found->session && !found->isReturning && occasion != StreamRequest::Occasion::wish) {
    return tell(0, nullptr);
  }
  found->streams.push_back({stream, true, std::move(tell)});
  if (found->session) return connect(*found, found->streams.back());
  if (!found->isReturning) bringBack(*found);
}

void PickedWindows::connect(Window& window, const Stream& stream) {
  window.session->openRemote([node = window.node, tell = stream.tell](SharedDescriptor remote) {
    tell(node, std::move(remote));
  });
}

void PickedWindows::bringBack(Window& window) {
  window.isReturning = true;
  portal_->start(
      {.parentWindow = {}, .restoreToken = std::exchange(window.restoreToken, {})}, whenClosed(),
      [this, weak = weak_from_this(), id = window.record->windowID](
          const std::shared_ptr<PortalSession>& session, const PortalSession::Result& result) {
        auto* const found = weak.lock() ? find(id) : nullptr;
        if (found == nullptr) return;
        found->isReturning = false;
        const auto* const start = std::get_if<PortalSession::Started>(&result);
        if (start == nullptr) return endStreams(*found);
        found->session = session;
        found->node = start->node;
        found->restoreToken = start->restoreToken;
        publish();
        for (const auto& each : found->streams) connect(*found, each);
        endLater(*found);
      });
}

void PickedWindows::setWanted(WindowID window, int stream, bool isWanted) {
  auto* const found = find(window);
  if (found == nullptr) return;
  for (auto& each : found->streams) {
    if (each.number == stream) each.isWanted = isWanted;
  }
  endLater(*found);
}

void PickedWindows::release(WindowID window, int stream) {
  auto* const found = find(window);
  if (found == nullptr) return;
  found->streams.remove_if([&](const Stream& each) { return each.number == stream; });
  endLater(*found);
}

/// Unless somebody wants a stream of it by then.
void PickedWindows::endLater(Window& window) {
  const auto queue = queue_.lock();
  if (!queue || !window.session || isWanted(window)) return;
  queue->asyncAt(
      monotonicNow() + longestIdle_,
      [this, weak = weak_from_this(), id = window.record->windowID, idleTime = ++window.idleTimes] {
        if (weak.lock()) endIfIdle(id, idleTime);
      });
}

void PickedWindows::endIfIdle(WindowID window, int idleTime) {
  auto* const found = find(window);
  if (found == nullptr || !found->session || isWanted(*found) || found->idleTimes != idleTime)
    return;
  found->session.reset();
  endStreams(*found);
  publish();
}

PortalSession::Closed PickedWindows::whenClosed() {
  return [this, weak = weak_from_this()](const PortalSession& session) {
    if (weak.lock()) sessionHasEnded(session);
  };
}

void PickedWindows::sessionHasEnded(const PortalSession& session) {
  const auto found = std::find_if(windows_.begin(), windows_.end(), [&](const Window& each) {
    return each.session.get() == &session;
  });
  if (found == windows_.end()) return;
  found->session.reset();
  endStreams(*found);
  publish();
}

void PickedWindows::endStreams(Window& window) {
  for (const auto& each : std::exchange(window.streams, {})) each.tell(0, nullptr);
}

bool PickedWindows::isWanted(const Window& window) {
  return std::any_of(window.streams.begin(), window.streams.end(),
                     [](const Stream& each) { return each.isWanted; });
}

void PickedWindows::publish() const {
  std::vector<WindowRecord> shared;
  std::vector<WindowRecord> all;
  for (const auto& each : windows_) {
    all.push_back(each.record);
    if (each.session) shared.push_back(each.record);
  }
  windowsChanged_(std::move(shared), std::move(all));
}

}  // namespace vistrel::platform::linux_desktop
