#pragma once

#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "platform/Application.h"
#include "platform/Menu.h"
#include "platform/simulated/CallJournal.h"
#include "platform/simulated/SimulatedDispatch.h"

namespace vistrel::platform::simulated {

/// The application object, which records what it was asked for. The main menu and activations go
/// into the journal. Main thread.
class SimulatedApplication : public Application {
 public:
  SimulatedApplication(SimulatedDispatch& dispatch, CallJournal& journal)
      : dispatch_(dispatch), journal_(journal) {}

  std::optional<ActivationPolicy> activationPolicy() const { return activationPolicy_; }
  /// The argument of each activation, in order.
  const std::vector<bool>& activations() const { return activations_; }
  int finishLaunchingCount() const { return finishLaunchingCount_; }
  /// Until when events were waited for, in order.
  const std::vector<Date>& waits() const { return waits_; }
  int hideCount() const { return hideCount_; }
  int terminateCount() const { return terminateCount_; }
  const std::shared_ptr<Menu>& mainMenu() const { return mainMenu_; }
  const std::shared_ptr<Menu>& windowsMenu() const { return windowsMenu_; }
  /// A person clicks the program's icon; false when nobody listens.
  bool clickIcon(bool hasVisibleWindows);
  /// A person opens the menu of the program's icon; null when nobody listens.
  std::shared_ptr<Menu> openDockMenu();
  /// A person picks a window in a dialog of the desktop's.
  void pickWindow(const WindowRecord& window);

  void setActivationPolicy(ActivationPolicy policy) override { activationPolicy_ = policy; }
  void setDelegate(std::weak_ptr<ApplicationDelegate> delegate) override;
  void activateIgnoringOtherApps(bool ignoringOtherApps) override;
  void setMainMenu(std::shared_ptr<Menu> menu) override;
  void setWindowsMenu(std::shared_ptr<Menu> menu) override { windowsMenu_ = std::move(menu); }
  void hide() override { ++hideCount_; }
  void finishLaunching() override;
  /// Moves time from one due block to the next.
  void sendNextEvent(Date until) override;
  /// Tells the delegate and returns once what that made ready has run; the test turns on.
  void run() override;
  void terminate() override { ++terminateCount_; }

 private:
  SimulatedDispatch& dispatch_;
  CallJournal& journal_;
  std::weak_ptr<ApplicationDelegate> delegate_;
  std::optional<ActivationPolicy> activationPolicy_;
  std::vector<bool> activations_;
  std::shared_ptr<Menu> mainMenu_;
  std::shared_ptr<Menu> windowsMenu_;
  int finishLaunchingCount_ = 0;
  std::vector<Date> waits_;
  int hideCount_ = 0;
  int terminateCount_ = 0;
};

}  // namespace vistrel::platform::simulated
