#include "platform/simulated/SimulatedApplication.h"

#include <utility>

namespace vistrel::platform::simulated {

void SimulatedApplication::setDelegate(std::weak_ptr<ApplicationDelegate> delegate) {
  delegate_ = std::move(delegate);
}

void SimulatedApplication::activateIgnoringOtherApps(bool ignoringOtherApps) {
  journal_.add("activateIgnoringOtherApps");
  activations_.push_back(ignoringOtherApps);
}

void SimulatedApplication::setMainMenu(std::shared_ptr<Menu> menu) {
  journal_.add("setMainMenu");
  mainMenu_ = std::move(menu);
}

void SimulatedApplication::finishLaunching() {
  ++finishLaunchingCount_;
  if (const auto delegate = delegate_.lock()) delegate->applicationDidFinishLaunching();
}

void SimulatedApplication::sendNextEvent(Date until) {
  waits_.push_back(until);
  dispatch_.turnMainUntil([] { return false; }, until.timeIntervalSince(now()));
}

void SimulatedApplication::run() {
  finishLaunching();
  dispatch_.turnMainQueue();
}

bool SimulatedApplication::clickIcon(bool hasVisibleWindows) {
  const auto delegate = delegate_.lock();
  return delegate != nullptr && delegate->applicationShouldHandleReopen(hasVisibleWindows);
}

std::shared_ptr<Menu> SimulatedApplication::openDockMenu() {
  const auto delegate = delegate_.lock();
  return delegate ? delegate->applicationDockMenu() : nullptr;
}

void SimulatedApplication::pickWindow(const WindowRecord& window) {
  if (const auto delegate = delegate_.lock()) delegate->applicationDidPickWindow(window);
}

}  // namespace vistrel::platform::simulated
