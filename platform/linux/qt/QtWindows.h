#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "platform/Backend.h"
#include "platform/linux/qt/space/ScreenList.h"
#include "platform/linux/qt/windows/PeerHost.h"
#include "platform/linux/session/Session.h"

namespace vistrel::platform::linux_desktop {

/// Windows, screens, the pointer, controls' sizes and alerts of the toolkit.
class QtWindows final : public WindowBackend {
 public:
  /// `session` outlives it.
  explicit QtWindows(const Session& session);

  std::unique_ptr<WindowPeer> makePeer(Window& window, bool isPanel) override;
  std::vector<Screen> screens() override { return screens_.all(); }
  std::optional<Screen> mainScreen() override { return screens_.main(); }
  Window* keyWindow() override { return host_->keyWindow(); }
  Point mouseLocation() override;
  Size intrinsicContentSize(const Control& control) override;
  int runModal(const Alert& alert) override;

  PeerHost& host() { return *host_; }
  /// Takes all windows off the screen, for good; objects that show them may live on.
  void finish();

 private:
  const Session& session_;
  std::shared_ptr<PeerHost> host_;
  ScreenList screens_;
};

}  // namespace vistrel::platform::linux_desktop
