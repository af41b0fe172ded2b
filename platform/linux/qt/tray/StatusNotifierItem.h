#pragma once

#include <QIcon>
#include <functional>

#include "platform/linux/qt/tray/ExportedObject.h"

namespace vistrel::platform::linux_desktop {

/// The program's icon as a tray reads it over the bus (org.kde.StatusNotifierItem). Main thread.
class StatusNotifierItem final : public ExportedObject {
 public:
  struct Callbacks {
    /// A person has clicked on it.
    std::function<void()> activated;
    /// A tray that does not show the menu itself asks for it; `pixel` of the root window.
    std::function<void(QPoint pixel)> menuWanted;
  };

  /// The menu is a `BusMenu` at `menuPath` on the same bus.
  StatusNotifierItem(const QDBusConnection& bus, const QString& path, const QString& menuPath,
                     Callbacks callbacks);

 private:
  void describe(const QIcon& icon, const QString& menuPath);

  const Callbacks callbacks_;
};

}  // namespace vistrel::platform::linux_desktop
