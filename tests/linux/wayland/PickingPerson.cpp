#include "tests/linux/wayland/PickingPerson.h"

#include <utility>

#include "tests/support/Poll.h"

namespace vistrel::platform::linux_desktop {

using testbed::eventually;

PickingPerson::PickingPerson(double longestIdle)
    : windows_(
          std::make_shared<PortalWindows>(std::make_shared<SharedScreenLayout>(), longestIdle)) {}

void PickingPerson::askPortal() {
  windows_->askPortal([told = told_](PickingOffer offer) { told->offer.store(offer); });
}

bool PickingPerson::eventuallyOffers(PickingOffer offer) const {
  return eventually([&] { return told_->offer.load() == offer; });
}

void PickingPerson::openDialog(const std::string& parentWindow) {
  told_->status.store(std::nullopt);
  windows_->pick(parentWindow, [told = told_](WindowRecord window, const std::string& status) {
    told->window.store(std::move(window));
    told->status.store(status);
  });
}

std::string PickingPerson::pickFocused() {
  askPortal();
  if (!eventuallyOffers(PickingOffer::windows)) return "nothing is offered";
  openDialog("");
  return eventually([&] { return status().has_value(); }) ? *status() : "nothing";
}

}  // namespace vistrel::platform::linux_desktop
