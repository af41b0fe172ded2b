#include "platform/linux/qt/QtApplication.h"

#include <QApplication>
#include <QTimer>
#include <QWidget>
#include <algorithm>
#include <cmath>
#include <utility>

namespace vistrel::platform::linux_desktop {

QtApplication::QtApplication(PeerHost& windows, std::function<void()> ended)
    : windows_(windows), ended_(std::move(ended)), signals_([this] { terminate(); }) {}

void QtApplication::setActivationPolicy(ActivationPolicy /*policy*/) {
  // Every program with a window is a regular one here.
}

void QtApplication::setDelegate(std::weak_ptr<ApplicationDelegate> delegate) {
  delegate_ = std::move(delegate);
}

void QtApplication::activateIgnoringOtherApps(bool ignoringOtherApps) {
  windows_.unhide();
  // A program is active by one of its windows being so.
  QWidget* active = QApplication::activeWindow();
  if (ignoringOtherApps && active != nullptr) active->activateWindow();
}

void QtApplication::setMainMenu(std::shared_ptr<Menu> menu) {
  windows_.mainMenu().setMenu(std::move(menu));
}

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
  if (!isTerminated_) QApplication::exec();
  ended_();
}

void QtApplication::terminate() {
  isTerminated_ = true;
  QCoreApplication::exit(0);
}

}  // namespace vistrel::platform::linux_desktop
