#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/linux/wayland/portal/PortalWindows.h"

namespace vistrel::platform::linux_desktop {

/// A person who picks windows in the portal's dialog, and what they are told. Waits for what it
/// needs by a generous deadline.
class PickingPerson {
 public:
  explicit PickingPerson(double longestIdle = 60);

  const std::shared_ptr<PortalWindows>& windows() const { return windows_; }
  void askPortal();
  bool eventuallyOffers(PickingOffer offer) const;
  /// Has the dialog opened, for a window as the portal names one, and does not wait for its end.
  void openDialog(const std::string& parentWindow);
  /// The window that has the keyboard. What the person is told once that is over.
  std::string pickFocused();
  /// What was told of the last dialog; none while it is open.
  std::optional<std::string> status() const { return told_->status.load(); }
  /// The last one that was picked, or null.
  WindowRecord window() const { return told_->window.load(); }

 private:
  struct Told {
    Guarded<PickingOffer> offer;
    Guarded<WindowRecord> window;
    Guarded<std::optional<std::string>> status;
  };

  const std::shared_ptr<PortalWindows> windows_;
  const std::shared_ptr<Told> told_ = std::make_shared<Told>();
};

}  // namespace vistrel::platform::linux_desktop
