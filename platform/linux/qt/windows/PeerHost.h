#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "platform/Backend.h"
#include "platform/Window.h"
#include "platform/linux/qt/menus/MainMenu.h"
#include "platform/linux/qt/menus/OpenWindows.h"
#include "platform/linux/qt/menus/PickEntry.h"
#include "platform/linux/qt/windows/SavedFrames.h"
#include "platform/linux/session/SharedScreenLayout.h"

namespace vistrel::platform::linux_desktop {

class PeerHost;

/// A peer that can outlive the toolkit, since some windows live until the process ends.
class HostedPeer : public WindowPeer {
 public:
  HostedPeer(Window& window, std::shared_ptr<PeerHost> host);
  HostedPeer(const HostedPeer&) = delete;
  HostedPeer& operator=(const HostedPeer&) = delete;
  ~HostedPeer() override;

  Window& window() const { return window_; }
  virtual bool hasKeyboard() const = 0;
  /// The whole program goes off the screen; the window may do more meanwhile.
  virtual void hideWithProgram() = 0;
  /// It is back, and the window is one that is to be seen.
  virtual void showWithProgram() = 0;
  /// Gives up everything of the toolkit and of the display server.
  virtual void retire() = 0;
  /// Monitors have come, gone, moved or changed their size or scale.
  virtual void screensDidChange() = 0;
  /// Writes a frame that is to be kept and is not written yet.
  virtual void saveFrame() {}

 protected:
  PeerHost& host() const { return *host_; }

  Window& window_;

 private:
  const std::shared_ptr<PeerHost> host_;
};

/// What peers need of their surroundings, for as long as there are any. Main thread.
class PeerHost : public OpenWindows {
 public:
  /// `pickEntry` is null where programs are told which windows there are.
  PeerHost(std::shared_ptr<const SharedScreenLayout> layout, SavedFrames savedFrames,
           std::shared_ptr<PickEntry> pickEntry)
      : layout_(std::move(layout)),
        savedFrames_(std::move(savedFrames)),
        pickEntry_(std::move(pickEntry)) {}

  /// False once the event loop has ended: windows are not shown any more.
  bool isOpen() const { return isOpen_; }
  /// By which frames and pixels are converted. Never null.
  std::shared_ptr<const ScreenLayout> layout() const { return layout_->get(); }
  const SavedFrames& savedFrames() const { return savedFrames_; }
  const std::shared_ptr<PickEntry>& pickEntry() const { return pickEntry_; }
  MainMenu& mainMenu() { return mainMenu_; }

  std::vector<std::shared_ptr<Window>> openWindows() const override;
  Window* keyWindow() const override;

  /// Whether any window is on the screen, or minimised.
  bool hasVisibleWindows() const;
  /// Takes every window off the screen until `unhide`. The ordinary ones stay in the desktop's
  /// taskbar unless the program is found by its icon.
  void hide();
  void unhide();
  /// Whether a person finds the program by its icon in a tray.
  void setFoundByIcon(bool isFound);
  bool isFoundByIcon() const { return isFoundByIcon_; }

  /// Called from now on whenever a window has been made or is about to be gone.
  void onWindowsChange(std::function<void()> changed) { windowsChanged_ = std::move(changed); }

  void screensDidChange();
  void saveFrames();
  /// Retires all peers, for good.
  void close();

 private:
  friend class HostedPeer;

  const std::shared_ptr<const SharedScreenLayout> layout_;
  const SavedFrames savedFrames_;
  const std::shared_ptr<PickEntry> pickEntry_;
  MainMenu mainMenu_{*this, pickEntry_};
  std::vector<HostedPeer*> peers_;  // the oldest first
  std::function<void()> windowsChanged_ = [] {};
  bool isOpen_ = true;
  bool isHidden_ = false;
  bool isFoundByIcon_ = false;
};

}  // namespace vistrel::platform::linux_desktop
