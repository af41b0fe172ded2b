#pragma once

#include <memory>
#include <vector>

#include "catalogue/WindowMirrorManager.h"
#include "platform/Controls.h"
#include "platform/ScreenCapture.h"
#include "platform/Window.h"

namespace vistrel {

/// The program's one ordinary window: the windows that can be mirrored, and the way to the
/// permission that listing them needs. Main thread.
class PickerWindowController : public platform::WindowController,
                               public platform::TableViewDataSource,
                               public platform::TableViewDelegate,
                               public std::enable_shared_from_this<PickerWindowController> {
 public:
  PickerWindowController(const PickerWindowController&) = delete;
  PickerWindowController& operator=(const PickerWindowController&) = delete;

  /// The program's one picker, over the shared manager; made on first use and kept until the
  /// process ends.
  static const std::shared_ptr<PickerWindowController>& shared();
  /// A picker over a manager of the caller's.
  static std::shared_ptr<PickerWindowController> make(std::shared_ptr<WindowMirrorManager> manager);

  /// Looks at the permission and asks for the list anew.
  void reload();
  /// Mirrors the selected row's window; does nothing when none is selected.
  void mirrorSelected();
  /// Asks for the permission, opens the settings that grant it, and offers to relaunch.
  void grantScreenRecording();

  int numberOfRows(const platform::TableView& tableView) const override;
  std::shared_ptr<platform::View> viewForRow(platform::TableView& tableView,
                                             const platform::TableColumn& column, int row) override;

  const std::shared_ptr<platform::TableView>& tableView() const { return tableView_; }
  const std::shared_ptr<platform::Label>& statusLabel() const { return statusLabel_; }
  const std::shared_ptr<platform::Button>& mirrorButton() const { return mirrorButton_; }
  const std::shared_ptr<platform::Button>& grantButton() const { return grantButton_; }
  /// The rows, in order.
  const std::vector<platform::WindowRecord>& windows() const { return windows_; }

 private:
  explicit PickerWindowController(std::shared_ptr<WindowMirrorManager> manager);

  void buildWindow();
  void buildViews();
  void buildTable();
  std::shared_ptr<platform::Button> makeButton(const char* title, const char* selector,
                                               void (PickerWindowController::*handler)());
  void receiveWindows(std::vector<platform::WindowRecord> windows);
  void relaunch();

  const std::shared_ptr<WindowMirrorManager> manager_;
  std::shared_ptr<platform::TableView> tableView_ = std::make_shared<platform::TableView>();
  std::shared_ptr<platform::Label> statusLabel_ = std::make_shared<platform::Label>();
  std::shared_ptr<platform::Button> mirrorButton_;
  std::shared_ptr<platform::Button> grantButton_;
  std::vector<platform::WindowRecord> windows_;
};

}  // namespace vistrel
