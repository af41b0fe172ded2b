#include "platform/linux/qt/tray/StatusNotifierItem.h"

#include <QCoreApplication>
#include <QDBusObjectPath>
#include <QPoint>
#include <utility>

#include "platform/linux/qt/paint/ApplicationIcon.h"
#include "platform/linux/qt/tray/BusTypes.h"

namespace vistrel::platform::linux_desktop {

StatusNotifierItem::StatusNotifierItem(const QDBusConnection& bus, const QString& path,
                                       const QString& menuPath, Callbacks callbacks)
    : ExportedObject(bus, path, QStringLiteral("org.kde.StatusNotifierItem")),
      callbacks_(std::move(callbacks)) {
  describe(applicationIcon(), menuPath);
  const auto activate = [this](const QVariantList&) {
    callbacks_.activated();
    return QVariantList{};
  };
  addMethod("Activate", {"i", "i"}, {}, activate);
  addMethod("SecondaryActivate", {"i", "i"}, {}, activate);
  addMethod("ContextMenu", {"i", "i"}, {}, [this](const QVariantList& arguments) {
    callbacks_.menuWanted({arguments[0].toInt(), arguments[1].toInt()});
    return QVariantList{};
  });
  addMethod("Scroll", {"i", "s"}, {}, [](const QVariantList&) { return QVariantList{}; });
}

void StatusNotifierItem::describe(const QIcon& icon, const QString& menuPath) {
  const QString name = QCoreApplication::applicationName();
  const QString iconName = QStringLiteral("vistrel");
  addProperty("Category", "s", "ApplicationStatus");
  addProperty("Id", "s", iconName);
  addProperty("Title", "s", name);
  addProperty("Status", "s", "Active");
  addProperty("WindowId", "i", 0);
  addProperty("ItemIsMenu", "b", false);
  addProperty("Menu", "o", QVariant::fromValue(QDBusObjectPath(menuPath)));
  addProperty("ToolTip", "(sa(iiay)ss)", QVariant::fromValue(IconToolTip{{}, {}, name, {}}));
  // By name it is drawn in just the size that the tray has, but some trays show nothing for a name
  // that their theme does not have.
  addProperty("IconName", "s", QIcon::hasThemeIcon(iconName) ? iconName : QString());
  addProperty("IconPixmap", "a(iiay)", QVariant::fromValue(pixmapsOf(icon)));
  for (const char* other : {"Overlay", "Attention"}) {
    const auto kind = QLatin1String(other);
    addProperty(kind + QLatin1String("IconName"), "s", QString());
    addProperty(kind + QLatin1String("IconPixmap"), "a(iiay)", QVariant::fromValue(IconPixmaps{}));
  }
  addProperty("AttentionMovieName", "s", QString());
  addProperty("IconThemePath", "s", QString());
}

}  // namespace vistrel::platform::linux_desktop
