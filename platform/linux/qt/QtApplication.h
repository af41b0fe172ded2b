#pragma once

#include <QObject>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <xcb/xcb.h>

#include "platform/Application.h"
#include "platform/linux/qt/process/TerminationSignals.h"
#include "platform/linux/qt/tray/TrayIcon.h"
#include "platform/linux/qt/windows/PeerHost.h"
#include "platform/linux/session/ParkedSources.h"
#include "platform/linux/session/ProgramInstance.h"
#include "platform/linux/session/WindowActivation.h"

namespace vistrel::platform::linux_desktop {

/// The program's life on the toolkit's event loop.
class QtApplication final : public Application {
 public:
  /// The first four outlive it; `ended` runs once the event loop has, before `run` returns.
  QtApplication(PeerHost& windows, WindowActivation& activation, ProgramInstance& instance,
                ParkedSources& parked, std::function<void()> ended);

  void setActivationPolicy(ActivationPolicy policy) override;
  void setDelegate(std::weak_ptr<ApplicationDelegate> delegate) override;
  void activateIgnoringOtherApps(bool ignoringOtherApps) override;
  void setMainMenu(std::shared_ptr<Menu> menu) override;
  void setWindowsMenu(std::shared_ptr<Menu> menu) override;
  void hide() override;
  void finishLaunching() override;
  void sendNextEvent(Date until) override;
  void run() override;
  void terminate() override;

 private:
  TrayIcon::Callbacks iconCallbacks();
  /// A person may pick windows from now on, if the desktop lets them. `running` goes with the event
  /// loop.
  void beginPicking(const QObject& running);
  void didPick(const WindowRecord& picked);
  /// A person wants to see the program, by what they did at `time` of the display server's.
  void reopen(std::uint32_t time);

  PeerHost& windows_;
  WindowActivation& activation_;
  ProgramInstance& instance_;
  ParkedSources& parked_;
  const std::function<void()> ended_;
  std::weak_ptr<ApplicationDelegate> delegate_;
  bool isTerminated_ = false;
  /// What the window manager is told when the program comes to the front; the server's time.
  std::uint32_t personActedAt_ = XCB_CURRENT_TIME;
  TerminationSignals signals_;
  std::optional<TrayIcon> icon_;  // while the event loop runs
};

}  // namespace vistrel::platform::linux_desktop
