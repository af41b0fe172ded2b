#include "platform/linux/wayland/portal/ScreenCastPortal.h"

#include <string_view>
#include <utility>

#include "platform/linux/Trace.h"

namespace vistrel::platform::linux_desktop {
namespace {

/// How long the portal may take to say what it offers, in seconds; it may have to be started first.
constexpr double patience = 5;

PortalOffer readProperties(sd_bus_message& properties) {
  PortalOffer offer;
  forEachEntry(properties, [&](std::string_view name) {
    std::uint32_t* const value = name == "version"                ? &offer.version
                                 : name == "AvailableSourceTypes" ? &offer.sourceTypes
                                 : name == "AvailableCursorModes" ? &offer.cursorModes
                                                                  : nullptr;
    return value != nullptr && sd_bus_message_read(&properties, "v", "u", value) > 0;
  });
  return offer;
}

}  // namespace

std::string pickingStatus(PickingOffer offer) {
  switch (offer) {
    case PickingOffer::asked:
    case PickingOffer::windows:
      return {};
    case PickingOffer::noWindows:
      return "Other windows cannot be mirrored: this desktop lets programs share whole screens "
             "only.";
    case PickingOffer::noAnswer:
      return "Other windows cannot be mirrored: xdg-desktop-portal does not answer.";
    case PickingOffer::noPortal:
      return "Other windows cannot be mirrored: this desktop has no xdg-desktop-portal for sharing "
             "windows.";
  }
  return {};
}

ScreenCastPortal::ScreenCastPortal(const std::shared_ptr<SerialQueue>& queue,
                                   std::function<void(PickingOffer offer)> changed)
    : queue_(queue), changed_(std::move(changed)) {}

void ScreenCastPortal::ask() {
  const auto queue = queue_.lock();
  if (!queue) return;
  if (!bus_ || bus_->isLost()) {
    bus_ = PortalBus::connect(queue);
    if (!bus_) return set(PickingOffer::noPortal);
    portalsLife_ = bus_->listenToPortalsLife([this](PortalBus::PortalsLife change) {
      if (change == PortalBus::PortalsLife::ended) set(PickingOffer::noPortal);
      // One that has ended may be started by the question.
      askForProperties();
    });
  }
  askForProperties();
}

void ScreenCastPortal::askForProperties() {
  const auto queue = queue_.lock();
  if (!queue) return;
  const int question = ++questions_;
  bus_->call(
      desktopPath, "org.freedesktop.DBus.Properties", "GetAll",
      [](sd_bus_message& call) { sd_bus_message_append(&call, "s", screenCast); },
      [this, question, weak = weak_from_this()](const PortalBus::Reply& reply) {
        if (weak.lock() && question == questions_) answered(reply);
      });
  queue->asyncAt(monotonicNow() + patience, [this, question, weak = weak_from_this()] {
    if (weak.lock() && question == questions_) set(PickingOffer::noAnswer);
  });
}

/// An answer that comes late counts as well.
void ScreenCastPortal::answered(const PortalBus::Reply& reply) {
  ++questions_;
  if (reply.message == nullptr) return set(PickingOffer::noPortal);
  properties_ = readProperties(*reply.message);
  const bool offersWindows = (properties_.sourceTypes & PortalOffer::windows) != 0;
  set(properties_.version == 0 ? PickingOffer::noPortal
      : offersWindows          ? PickingOffer::windows
                               : PickingOffer::noWindows);
}

void ScreenCastPortal::set(PickingOffer offer) {
  if (std::exchange(offer_, offer) == offer) return;
  trace(TraceTopic::start, [&] {
    return offer == PickingOffer::windows ? "the portal has windows picked" : pickingStatus(offer);
  });
  changed_(offer);
}

void ScreenCastPortal::start(
    PortalSession::Wish wish, PortalSession::Closed closed,
    std::function<void(std::shared_ptr<PortalSession>, const PortalSession::Result&)> completion) {
  if (!bus_ || bus_->isLost()) ask();
  const auto queue = queue_.lock();
  if (!bus_ && queue) {
    return queue->async([completion = std::move(completion)] {
      completion(nullptr, PortalSession::Failure::gone);
    });
  }
  const auto session = std::make_shared<PortalSession>(bus_, properties_, std::move(closed));
  session->start(std::move(wish), [session = session.get(), completion = std::move(completion)](
                                      const PortalSession::Result& result) {
    completion(session->shared_from_this(), result);
  });
}

}  // namespace vistrel::platform::linux_desktop
