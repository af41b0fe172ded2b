#include "platform/linux/qt/PeerHost.h"

#include <utility>

namespace vistrel::platform::linux_desktop {

HostedPeer::HostedPeer(std::shared_ptr<PeerHost> host) : host_(std::move(host)) {
  host_->peers_.insert(this);
}

HostedPeer::~HostedPeer() { host_->peers_.erase(this); }

void PeerHost::screensDidChange() {
  for (HostedPeer* peer : peers_) peer->screensDidChange();
}

void PeerHost::close() {
  isOpen_ = false;
  for (HostedPeer* peer : peers_) peer->retire();
}

}  // namespace vistrel::platform::linux_desktop
