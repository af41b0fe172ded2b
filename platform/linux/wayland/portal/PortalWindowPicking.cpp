#include "platform/linux/wayland/portal/PortalWindowPicking.h"

#include <array>
#include <cassert>
#include <charconv>
#include <utility>

#include "platform/Dispatch.h"
#include "platform/linux/CurrentThread.h"

namespace vistrel::platform::linux_desktop {
namespace {

/// As the portal names windows of X ("Common Conventions", parent window identifiers).
std::string parentText(std::uint32_t window) {
  if (window == 0) return {};
  std::array<char, 8> digits{};
  const auto end = std::to_chars(digits.begin(), digits.end(), window, 16).ptr;
  return "x11:" + std::string(digits.begin(), end);
}

void tellChange(const std::function<void()>& changed) {
  if (changed) changed();
}

}  // namespace

PortalWindowPicking::PortalWindowPicking(std::shared_ptr<PortalWindows> windows)
    : windows_(std::move(windows)) {}

bool PortalWindowPicking::canPickInteractively() const {
  assert(isMainThread());
  return state_->offer == PickingOffer::windows;
}

std::string PortalWindowPicking::status() const {
  assert(isMainThread());
  const auto status = pickingStatus(state_->offer);
  return status.empty() ? state_->outcome : status;
}

void PortalWindowPicking::setOnChange(std::function<void()> changed) {
  assert(isMainThread());
  state_->changed = std::move(changed);
  windows_->askPortal([state = state_](PickingOffer offer) {
    mainQueue().async([state, offer] {
      state->offer = offer;
      state->outcome.clear();
      tellChange(state->changed);
    });
  });
}

void PortalWindowPicking::pickInteractively(std::uint32_t parent, Completion completion) {
  assert(isMainThread());
  if (std::exchange(state_->isOpen, true)) {
    return mainQueue().async([completion = std::move(completion)] { completion(nullptr); });
  }
  windows_->pick(parentText(parent), [state = state_, completion = std::move(completion)](
                                         WindowRecord window, const std::string& outcome) {
    mainQueue().async([state, completion, window = std::move(window), outcome] {
      state->isOpen = false;
      if (std::exchange(state->outcome, outcome) != outcome) tellChange(state->changed);
      completion(window);
    });
  });
}

}  // namespace vistrel::platform::linux_desktop
