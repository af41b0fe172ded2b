#pragma once

#include <memory>
#include <set>
#include <utility>

#include "platform/Backend.h"
#include "platform/linux/X11Desktop.h"
#include "platform/linux/qt/SavedFrames.h"

namespace vistrel::platform::linux_desktop {

class PeerHost;

/// A peer that can outlive the toolkit, since some windows live until the process ends.
class HostedPeer : public WindowPeer {
 public:
  explicit HostedPeer(std::shared_ptr<PeerHost> host);
  HostedPeer(const HostedPeer&) = delete;
  HostedPeer& operator=(const HostedPeer&) = delete;
  ~HostedPeer() override;

  /// Gives up everything of the toolkit and of the display server.
  virtual void retire() = 0;
  /// Monitors have come, gone, moved or changed their size or scale.
  virtual void screensDidChange() = 0;

 protected:
  PeerHost& host() const { return *host_; }

 private:
  const std::shared_ptr<PeerHost> host_;
};

/// What peers need of their surroundings, for as long as there are any. Main thread.
class PeerHost {
 public:
  PeerHost(X11Desktop& desktop, SavedFrames savedFrames)
      : desktop_(desktop), savedFrames_(std::move(savedFrames)) {}

  /// False once the event loop has ended: windows are not shown any more.
  bool isOpen() const { return isOpen_; }
  /// Only while open.
  X11Desktop& desktop() const { return desktop_; }
  const SavedFrames& savedFrames() const { return savedFrames_; }

  void screensDidChange();
  /// Retires all peers, for good.
  void close();

 private:
  friend class HostedPeer;

  X11Desktop& desktop_;
  const SavedFrames savedFrames_;
  std::set<HostedPeer*> peers_;
  bool isOpen_ = true;
};

}  // namespace vistrel::platform::linux_desktop
