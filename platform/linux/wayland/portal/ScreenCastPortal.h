#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "platform/linux/wayland/portal/PortalSession.h"

namespace vistrel::platform::linux_desktop {

/// Whether the desktop's portal has a person pick windows.
enum class PickingOffer : std::uint8_t {
  asked,      // and not known yet
  windows,    // it does
  noWindows,  // whole screens at most
  noAnswer,
  noPortal,
};

/// What a person is told of that, in one sentence; nothing where all is well.
std::string pickingStatus(PickingOffer offer);

/// xdg-desktop-portal's ScreenCast, as the session bus has it. It is followed as it comes and goes.
/// On its queue only.
class ScreenCastPortal : public std::enable_shared_from_this<ScreenCastPortal> {
 public:
  /// `changed` is called after each change of what is offered.
  ScreenCastPortal(const std::shared_ptr<SerialQueue>& queue,
                   std::function<void(PickingOffer offer)> changed);

  /// Asks the portal what it offers, over another connection where the former one is lost.
  void ask();
  /// Starts a session of it; the completion comes once, later. As `PortalSession`.
  void start(PortalSession::Wish wish, PortalSession::Closed closed,
             std::function<void(std::shared_ptr<PortalSession> session,
                                const PortalSession::Result& result)>
                 completion);

 private:
  void askForProperties();
  void answered(const PortalBus::Reply& reply);
  void set(PickingOffer offer);

  const std::weak_ptr<SerialQueue> queue_;
  const std::function<void(PickingOffer offer)> changed_;
  std::shared_ptr<PortalBus> bus_;  // null before it is needed, and where there is none
  PortalBus::Subscription portalsLife_;
  PortalOffer properties_;
  PickingOffer offer_ = PickingOffer::asked;
  int questions_ = 0;  // so far
};

}  // namespace vistrel::platform::linux_desktop
