#include "picker/PickerWindowController.h"

#include <utility>

#include "picker/PickerTexts.h"
#include "platform/Alert.h"
#include "platform/Application.h"
#include "platform/Bundle.h"
#include "platform/Workspace.h"

namespace vistrel {

using platform::Button;
using platform::Color;
using platform::Font;
using platform::FontWeight;
using platform::Label;
using platform::LayoutAttribute;
using platform::TableCellView;
using platform::View;
using platform::WindowRecord;

namespace {

constexpr double margin = 18;
constexpr const char* cellIdentifier = "cell";

std::shared_ptr<TableCellView> makeCell() {
  auto cell = std::make_shared<TableCellView>();
  cell->setIdentifier(cellIdentifier);
  auto label = std::make_shared<Label>();
  label->setIdentifier("tf");
  label->setLineBreakMode(platform::LineBreakMode::truncatingTail);
  label->setTranslatesAutoresizingMaskIntoConstraints(false);
  cell->addSubview(label);
  cell->setTextField(label);
  cell->activateConstraints({
      {label, LayoutAttribute::leading, cell, LayoutAttribute::leading, 4},
      {label, LayoutAttribute::trailing, cell, LayoutAttribute::trailing, -4},
      {label, LayoutAttribute::centerY, cell, LayoutAttribute::centerY, 0},
  });
  return cell;
}

}  // namespace

const std::shared_ptr<PickerWindowController>& PickerWindowController::shared() {
  static const auto& picker =
      *new std::shared_ptr<PickerWindowController>(make(WindowMirrorManager::shared()));
  return picker;
}

std::shared_ptr<PickerWindowController> PickerWindowController::make(
    std::shared_ptr<WindowMirrorManager> manager) {
  auto picker = platform::ownedByMain(new PickerWindowController(std::move(manager)));
  picker->buildWindow();
  picker->buildViews();
  return picker;
}

PickerWindowController::PickerWindowController(std::shared_ptr<WindowMirrorManager> manager)
    : manager_(std::move(manager)) {}

void PickerWindowController::buildWindow() {
  auto window = platform::makeOwnedByMain<platform::Window>(
      platform::rect(0, 0, 460, 420),
      platform::styleTitled | platform::styleClosable | platform::styleMiniaturizable |
          platform::styleResizable,
      platform::BackingStore::buffered, /*defer=*/false);
  window->setTitle("Vistrel");
  window->center();
  window->setFrameAutosaveName("VistrelPicker");
  setWindow(std::move(window));
}

void PickerWindowController::buildViews() {
  auto heading = std::make_shared<Label>("Mirror a window");
  heading->setFont(Font{15, FontWeight::bold});
  statusLabel_->setFont(Font{11, FontWeight::regular});
  statusLabel_->setTextColor(Color::secondaryLabel());
  auto scrollView = std::make_shared<platform::ScrollView>();
  scrollView->setHasVerticalScroller(true);
  scrollView->setBorderType(platform::BorderType::bezel);
  scrollView->setDocumentView(tableView_);
  buildTable();
  auto refreshButton = makeButton("Refresh", "reload", &PickerWindowController::reload);
  grantButton_ = makeButton("Allow Screen Recording…", "grantScreenRecording",
                            &PickerWindowController::grantScreenRecording);
  grantButton_->setHidden(true);
  mirrorButton_ = makeButton("Mirror", "mirrorSelected", &PickerWindowController::mirrorSelected);
  mirrorButton_->setKeyEquivalent("\r");

  const auto& content = window()->contentView();
  const std::vector<std::shared_ptr<View>> views = {heading,       statusLabel_, scrollView,
                                                    refreshButton, grantButton_, mirrorButton_};
  for (const auto& view : views) {
    view->setTranslatesAutoresizingMaskIntoConstraints(false);
    content->addSubview(view);
  }
  using enum LayoutAttribute;
  content->activateConstraints({
      {heading, leading, content, leading, margin},
      {heading, top, content, top, 16},
      {statusLabel_, leading, heading, leading, 0},
      {statusLabel_, top, heading, bottom, 4},
      {scrollView, leading, content, leading, margin},
      {scrollView, trailing, content, trailing, -margin},
      {scrollView, top, statusLabel_, bottom, 10},
      {scrollView, bottom, content, bottom, -56},
      {refreshButton, leading, content, leading, margin},
      {refreshButton, bottom, content, bottom, -14},
      {grantButton_, leading, refreshButton, trailing, 8},
      {grantButton_, centerY, refreshButton, centerY, 0},
      {mirrorButton_, trailing, content, trailing, -margin},
      {mirrorButton_, bottom, content, bottom, -14},
  });
}

void PickerWindowController::buildTable() {
  tableView_->addTableColumn({.identifier = "win", .title = "Window", .width = 420});
  tableView_->setHasHeaderView(false);
  tableView_->setRowHeight(24);
  tableView_->setDataSource(weak_from_this());
  tableView_->setDelegate(weak_from_this());
  tableView_->setDoubleAction(
      {"mirrorSelected", weak_from_this(), &PickerWindowController::mirrorSelected});
}

std::shared_ptr<Button> PickerWindowController::makeButton(
    const char* title, const char* selector, void (PickerWindowController::*handler)()) {
  auto button =
      std::make_shared<Button>(title, platform::Action(selector, weak_from_this(), handler));
  button->setBezelStyle(platform::BezelStyle::rounded);
  return button;
}

void PickerWindowController::reload() {
  const bool granted = platform::preflightScreenCaptureAccess();
  grantButton_->setHidden(granted);
  statusLabel_->setStringValue(pickerStatusWhileLooking(granted));
  manager_->fetchWindows([weak = weak_from_this()](std::vector<WindowRecord> windows) {
    if (const auto self = weak.lock()) self->receiveWindows(std::move(windows));
  });
}

void PickerWindowController::receiveWindows(std::vector<WindowRecord> windows) {
  const bool granted = platform::preflightScreenCaptureAccess();
  grantButton_->setHidden(granted);
  windows_ = std::move(windows);
  tableView_->reloadData();
  statusLabel_->setStringValue(pickerStatus(windows_.size(), granted));
}

int PickerWindowController::numberOfRows(const platform::TableView& /*tableView*/) const {
  return static_cast<int>(windows_.size());
}

std::shared_ptr<View> PickerWindowController::viewForRow(platform::TableView& tableView,
                                                         const platform::TableColumn& /*column*/,
                                                         int row) {
  auto cell = tableView.reusableView(cellIdentifier);
  if (!cell) cell = makeCell();
  const WindowRecord& window = windows_[static_cast<std::size_t>(row)];
  const bool mirrored = manager_->mirrors().contains(window->windowID);
  cell->textField()->setStringValue(pickerRowText(*window, mirrored));
  cell->textField()->setTextColor(mirrored ? Color::systemGreen() : Color::label());
  return cell;
}

void PickerWindowController::mirrorSelected() {
  const int row = tableView_->selectedRow();
  if (row < 0 || row >= static_cast<int>(windows_.size())) return;
  manager_->mirror(windows_[static_cast<std::size_t>(row)]);
  tableView_->reloadRows({row});
}

void PickerWindowController::grantScreenRecording() {
  if (!platform::preflightScreenCaptureAccess()) platform::requestScreenCaptureAccess();
  manager_->openScreenRecordingSettings();
  const platform::Alert alert{
      .messageText = "Allow Screen Recording for Vistrel",
      .informativeText =
          "In System Settings ▸ Privacy & Security ▸ Screen Recording, turn on Vistrel.\n\nmacOS "
          "only applies the change after the app relaunches. Click “Relaunch Now” once you've "
          "enabled it.",
      .buttonTitles = {"Relaunch Now", "Later"}};
  if (alert.runModal() == platform::alertFirstButtonReturn) relaunch();
}

void PickerWindowController::relaunch() {
  platform::openNewInstance(platform::mainBundlePath());
  platform::Application::shared().terminate();
}

}  // namespace vistrel
