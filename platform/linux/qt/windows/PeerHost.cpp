#include "platform/linux/qt/windows/PeerHost.h"

#include <algorithm>
#include <cassert>
#include <utility>

#include "platform/linux/CurrentThread.h"

namespace vistrel::platform::linux_desktop {

HostedPeer::HostedPeer(Window& window, std::shared_ptr<PeerHost> host)
    : window_(window), host_(std::move(host)) {
  assert(isMainThread());
  host_->peers_.push_back(this);
  host_->windowsChanged_();
}

HostedPeer::~HostedPeer() {
  assert(isMainThread());
  std::erase(host_->peers_, this);
  host_->windowsChanged_();
}

std::vector<std::shared_ptr<Window>> PeerHost::openWindows() const {
  assert(isMainThread());
  std::vector<std::shared_ptr<Window>> windows;
  for (const HostedPeer* peer : peers_) {
    Window& window = peer->window();
    const bool isOrdinary = (window.styleMask() & styleTitled) != 0;
    if (isOrdinary && window.isVisible()) windows.push_back(window.shared_from_this());
  }
  return windows;
}

Window* PeerHost::keyWindow() const {
  assert(isMainThread());
  const auto key = std::find_if(peers_.begin(), peers_.end(),
                                [](const HostedPeer* peer) { return peer->hasKeyboard(); });
  return key == peers_.end() ? nullptr : &(*key)->window();
}

bool PeerHost::hasVisibleWindows() const {
  return !isHidden_ && std::any_of(peers_.begin(), peers_.end(), [](const HostedPeer* peer) {
    return peer->window().isVisible();
  });
}

void PeerHost::hide() {
  if (std::exchange(isHidden_, true)) return;
  for (HostedPeer* peer : peers_) peer->hideWithProgram();
}

void PeerHost::unhide() {
  if (!std::exchange(isHidden_, false)) return;
  for (HostedPeer* peer : peers_) {
    if (peer->window().isVisible()) peer->showWithProgram();
  }
}

void PeerHost::setFoundByIcon(bool isFound) {
  isFoundByIcon_ = isFound;
  if (!isHidden_) return;
  for (HostedPeer* peer : peers_) peer->hideWithProgram();
}

void PeerHost::screensDidChange() {
  for (HostedPeer* peer : peers_) peer->screensDidChange();
}

void PeerHost::saveFrames() {
  for (HostedPeer* peer : peers_) peer->saveFrame();
}

void PeerHost::close() {
  assert(isMainThread());
  isOpen_ = false;
  for (HostedPeer* peer : peers_) peer->retire();
}

}  // namespace vistrel::platform::linux_desktop
