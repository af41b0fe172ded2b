#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QSystemTrayIcon>
#include <QTimer>
#include <functional>
#include <memory>

#include "platform/Menu.h"
#include "platform/linux/qt/menus/ShownMenu.h"
#include "platform/linux/qt/tray/BusMenu.h"
#include "platform/linux/qt/tray/StatusNotifierItem.h"

namespace vistrel::platform::linux_desktop {

/// The program's icon in the desktop's tray, where one shows it: by the status notifier protocol,
/// or else embedded as the older trays of X11 want it (XEmbed). Trays may come and go. Main thread.
class TrayIcon {
 public:
  struct Callbacks {
    /// A person has clicked on it.
    std::function<void()> activated;
    /// Gives the menu that a person opens just now, which the icon adds the way to quit to.
    std::function<std::shared_ptr<Menu>()> menu;
    /// A tray of the status notifier protocol shows it from now on, or none does any more.
    std::function<void(bool isShown)> shownChanged;
  };

  explicit TrayIcon(Callbacks callbacks);

  /// Something has changed that the menu may depend on, such as the program's windows.
  void menuMayHaveChanged() { menu_.mayHaveChanged(); }

 private:
  using Answered = std::function<void(const QDBusMessage& answer)>;

  void callWatcher(const QString& interface, const QString& method, const QVariantList& arguments,
                   const Answered& answered);
  void registerItem();
  void askForHosts();
  void setShown(bool isShown);
  void embed();
  std::shared_ptr<Menu> menu() const;
  void showMenu(QPoint position);

  const Callbacks callbacks_;
  QDBusConnection bus_;
  BusMenu menu_;
  StatusNotifierItem item_;
  QDBusServiceWatcher watchers_;
  QTimer hostsChanged_;  // runs out at the next turn of the event loop
  bool isShown_ = false;
  std::unique_ptr<QSystemTrayIcon> embedded_;
  std::unique_ptr<ShownMenu> shownMenu_;
};

}  // namespace vistrel::platform::linux_desktop
