#include "platform/linux/qt/tray/TrayIcon.h"

#include <QCoreApplication>
#include <QCursor>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QGuiApplication>
#include <utility>

#include "platform/linux/Trace.h"
#include "platform/linux/qt/paint/ApplicationIcon.h"
#include "platform/linux/qt/space/QtSpace.h"
#include "platform/linux/qt/tray/BusTypes.h"
#include "platform/linux/qt/tray/QuitItem.h"

namespace vistrel::platform::linux_desktop {

namespace {

/// Of the service and of its interface alike.
const QString watcherName = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString watcherPath = QStringLiteral("/StatusNotifierWatcher");
const QString itemPath = QStringLiteral("/StatusNotifierItem");
const QString menuPath = QStringLiteral("/StatusNotifierItem/Menu");

bool isFailure(const QDBusMessage& answer) { return answer.type() != QDBusMessage::ReplyMessage; }

QPoint qtPoint(QPoint pixel) {
  const QScreen* const primary = QGuiApplication::primaryScreen();
  // All monitors may be gone, and come back.
  if (primary == nullptr) return pixel;
  const PixelRect place{pixel.x(), pixel.y(), 1, 1};
  return qtScreenOf(place, QtScreen::of(*primary), qtScreens()).fromPixels(place).topLeft();
}

QDBusConnection sessionBus() {
  registerBusTypes();
  return QDBusConnection::sessionBus();
}

}  // namespace

TrayIcon::TrayIcon(Callbacks callbacks)
    : callbacks_(std::move(callbacks)),
      bus_(sessionBus()),
      menu_(bus_, menuPath, [this] { return menu(); }),
      item_(bus_, itemPath, menuPath,
            {.activated = callbacks_.activated,
             .menuWanted = [this](QPoint pixel) { showMenu(qtPoint(pixel)); }}),
      watchers_(watcherName, bus_, QDBusServiceWatcher::WatchForOwnerChange) {
  hostsChanged_.setSingleShot(true);
  QObject::connect(&hostsChanged_, &QTimer::timeout, &hostsChanged_, [this] { askForHosts(); });
  for (const char* change : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"}) {
    bus_.connect(watcherName, watcherPath, watcherName, change, &hostsChanged_, SLOT(start()));
  }
  QObject::connect(&watchers_, &QDBusServiceWatcher::serviceOwnerChanged, &watchers_,
                   [this] { registerItem(); });
  registerItem();
}

void TrayIcon::callWatcher(const QString& interface, const QString& method,
                           const QVariantList& arguments, const Answered& answered) {
  QDBusMessage message =
      QDBusMessage::createMethodCall(watcherName, watcherPath, interface, method);
  message.setArguments(arguments);
  message.setAutoStartService(false);
  auto* const call = new QDBusPendingCallWatcher(bus_.asyncCall(message), &watchers_);
  QObject::connect(call, &QDBusPendingCallWatcher::finished, call, [call, answered] {
    call->deleteLater();
    answered(call->reply());
  });
}

void TrayIcon::registerItem() {
  callWatcher(watcherName, "RegisterStatusNotifierItem", {bus_.baseService()},
              [this](const QDBusMessage& answer) {
                trace(TraceTopic::tray, [&] {
                  return isFailure(answer)
                             ? "no watcher takes the icon: " + answer.errorName().toStdString()
                             : "the watcher " + answer.service().toStdString() + " has the icon";
                });
                if (isFailure(answer)) {
                  setShown(false);
                  return embed();
                }
                embedded_.reset();
                askForHosts();
              });
}

void TrayIcon::askForHosts() {
  callWatcher("org.freedesktop.DBus.Properties", "Get",
              {watcherName, "IsStatusNotifierHostRegistered"}, [this](const QDBusMessage& answer) {
                if (isFailure(answer)) return setShown(false);
                const auto value = answer.arguments().value(0).value<QDBusVariant>();
                setShown(value.variant().toBool());
              });
}

void TrayIcon::setShown(bool isShown) {
  if (std::exchange(isShown_, isShown) == isShown) return;
  trace(TraceTopic::tray,
        [&] { return isShown ? "a tray shows the icon" : "no tray shows the icon any longer"; });
  callbacks_.shownChanged(isShown);
}

// Qt 6.4.2 would do both kinds, but decides for one of them when it makes its first icon; by the
// status notifier protocol it neither hears of "opened" nor leaves titles as they are.
void TrayIcon::embed() {
  if (embedded_) return;
  trace(TraceTopic::tray, [] { return "the icon is for a tray that embeds it, if there is one"; });
  embedded_ = std::make_unique<QSystemTrayIcon>(applicationIcon());
  embedded_->setToolTip(QCoreApplication::applicationName());
  QObject::connect(embedded_.get(), &QSystemTrayIcon::activated, embedded_.get(),
                   [this](QSystemTrayIcon::ActivationReason reason) {
                     if (reason == QSystemTrayIcon::Context) return showMenu(QCursor::pos());
                     callbacks_.activated();
                   });
  embedded_->show();
}

std::shared_ptr<Menu> TrayIcon::menu() const {
  const auto menu = callbacks_.menu();
  return menu ? withQuitItem(*menu) : nullptr;
}

void TrayIcon::showMenu(QPoint position) {
  const auto shown = menu();
  if (!shown) return;
  shownMenu_ = std::make_unique<ShownMenu>(shown);
  shownMenu_->popup(position);
}

}  // namespace vistrel::platform::linux_desktop
