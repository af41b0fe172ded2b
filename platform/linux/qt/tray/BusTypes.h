#pragma once

#include <QByteArray>
#include <QIcon>
#include <QList>
#include <QMetaType>
#include <QString>
#include <QVariant>

namespace vistrel::platform::linux_desktop {

// What goes over the bus in replies and has no type of the toolkit's own.

/// `(iiay)`: 32 bits a pixel, alpha first, in network byte order.
struct IconPixmap {
  int width = 0;
  int height = 0;
  QByteArray pixels;
};
using IconPixmaps = QList<IconPixmap>;
/// One of each size that the icon has.
IconPixmaps pixmapsOf(const QIcon& icon);

/// `(sa(iiay)ss)`
struct IconToolTip {
  QString iconName;
  IconPixmaps pixmaps;
  QString title;
  QString description;
};

/// `(ia{sv})`
struct NumberedProperties {
  int number = 0;
  QVariantMap properties;
};

/// `(ia{sv}av)`, each child again one of these.
struct MenuLayout {
  int number = 0;
  QVariantMap properties;
  QList<MenuLayout> children;
};

/// Before any of them is sent.
void registerBusTypes();

}  // namespace vistrel::platform::linux_desktop

Q_DECLARE_METATYPE(vistrel::platform::linux_desktop::IconPixmap)
Q_DECLARE_METATYPE(vistrel::platform::linux_desktop::IconToolTip)
Q_DECLARE_METATYPE(vistrel::platform::linux_desktop::NumberedProperties)
Q_DECLARE_METATYPE(vistrel::platform::linux_desktop::MenuLayout)
