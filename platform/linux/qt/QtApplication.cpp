#include "platform/linux/qt/QtApplication.h"

#include <QApplication>
#include <QMainWindow>
#include <QObject>
#include <QTimer>
#include <QWidget>
#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/Menu.h"
#include "platform/linux/qt/menus/PickMenus.h"
#include "platform/linux/qt/process/EndDeadline.h"
#include "platform/linux/qt/process/SessionEnd.h"
#include "platform/linux/qt/space/QtConnection.h"

namespace vistrel::platform::linux_desktop {

namespace {

/// Null when there is none.
QWidget* ordinaryWindow() {
  const auto all = QApplication::topLevelWidgets();
  const auto found = std::find_if(all.begin(), all.end(), [](const QWidget* each) {
    return each->isVisible() && qobject_cast<const QMainWindow*>(each) != nullptr;
  });
  return found == all.end() ? nullptr : *found;
}

/// What a person is to look at: an alert that waits for an answer, else an ordinary window; null
/// when there is none.
QWidget* foremostWidget() {
  QWidget* const alert = QApplication::activeModalWidget();
  return alert != nullptr ? alert : ordinaryWindow();
}

/// The X window that a dialog of the desktop's is to stand in front of; 0 for none.
std::uint32_t parentOfDialogs() {
  const QWidget* const window = ordinaryWindow();
  // A minimised one would keep it off the screen.
  if (window == nullptr || window->isMinimized()) return 0;
  return static_cast<std::uint32_t>(window->winId());
}

}  // namespace

QtApplication::QtApplication(PeerHost& windows, WindowActivation& activation,
                             ProgramInstance& instance, ParkedSources& parked,
                             std::function<void()> ended)
    : windows_(windows),
      activation_(activation),
      instance_(instance),
      parked_(parked),
      ended_(std::move(ended)),
      signals_([this] { terminate(); }) {}

void QtApplication::setActivationPolicy(ActivationPolicy /*policy*/) {
  // Every program with a window is a regular one here.
}

void QtApplication::setDelegate(std::weak_ptr<ApplicationDelegate> delegate) {
  delegate_ = std::move(delegate);
}

void QtApplication::activateIgnoringOtherApps(bool ignoringOtherApps) {
  windows_.unhide();
  const QWidget* const foremost = foremostWidget();
  if (!ignoringOtherApps || foremost == nullptr) return;
  // Qt 6.4.2 itself knows no later time than that of its windows' last input.
  syncQt();
  activation_.activateWindow(static_cast<std::uint32_t>(foremost->winId()), personActedAt_);
}

void QtApplication::setMainMenu(std::shared_ptr<Menu> menu) { windows_.mainMenu().setMenu(menu); }

void QtApplication::setWindowsMenu(std::shared_ptr<Menu> menu) {
  windows_.mainMenu().setWindowsMenu(menu);
}

void QtApplication::hide() { windows_.hide(); }

void QtApplication::finishLaunching() {
  if (const auto delegate = delegate_.lock()) delegate->applicationDidFinishLaunching();
}

void QtApplication::sendNextEvent(Date until) {
  const double seconds = std::max(until.timeIntervalSince(now()), 0.0);
  QTimer timeout;
  timeout.setSingleShot(true);
  timeout.setTimerType(Qt::PreciseTimer);
  // Its event, if no other, ends the wait.
  timeout.start(static_cast<int>(std::ceil(seconds * 1000)));
  QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
}

void QtApplication::run() {
  finishLaunching();
  instance_.whenStartedAgain([this](std::uint32_t time) { reopen(time); });
  icon_.emplace(iconCallbacks());
  windows_.onWindowsChange([this] { icon_->menuMayHaveChanged(); });
  const QObject running;  // as long as the event loop may
  beginPicking(running);
  {
    const SessionEnd sessionEnd(
        {.saving = [this] { parked_.sendAllHome(); }, .goesOn = [this] { parked_.parkAgain(); }});
    if (!isTerminated_) QApplication::exec();
  }
  // Before the toolkit's windows go, which may take as long as some service of the desktop's likes.
  parked_.leaveHomeFirst();
  windows_.onWindowsChange([] {});
  if (windows_.pickEntry()) windows_.pickEntry()->setCallbacks({});
  icon_.reset();
  ended_();
}

TrayIcon::Callbacks QtApplication::iconCallbacks() {
  return {.activated = [this] { reopen(XCB_CURRENT_TIME); },
          .menu =
              [this] {
                const auto delegate = delegate_.lock();
                const auto menu = delegate ? delegate->applicationDockMenu() : nullptr;
                return menu ? withPickEntry(menu, windows_.pickEntry()) : nullptr;
              },
          .shownChanged = [this](bool isShown) { windows_.setFoundByIcon(isShown); }};
}

void QtApplication::beginPicking(const QObject& running) {
  const auto& entry = windows_.pickEntry();
  if (!entry) return;
  entry->setCallbacks({.parent = parentOfDialogs,
                       .picked = [this](const WindowRecord& picked) { didPick(picked); }});
  entry->follow(running, [this] {
    if (icon_) icon_->menuMayHaveChanged();
  });
}

void QtApplication::didPick(const WindowRecord& picked) {
  const auto delegate = delegate_.lock();
  if (!isTerminated_ && delegate) delegate->applicationDidPickWindow(picked);
}

void QtApplication::terminate() {
  constexpr long patience = 1800;  // milliseconds
  // Before the event loop there is nobody yet whom the end could wait for.
  if (icon_) EndDeadline::endIn(patience);
  isTerminated_ = true;
  instance_.letOthersStart();
  QCoreApplication::exit(0);
}

void QtApplication::reopen(std::uint32_t time) {
  const auto delegate = delegate_.lock();
  if (isTerminated_ || !delegate) return;
  personActedAt_ = time;
  delegate->applicationShouldHandleReopen(windows_.hasVisibleWindows());
  personActedAt_ = XCB_CURRENT_TIME;
}

}  // namespace vistrel::platform::linux_desktop
