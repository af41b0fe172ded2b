#include "platform/linux/qt/tray/BusTypes.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QImage>
#include <QtEndian>

namespace vistrel::platform::linux_desktop {

// Beside their types, where the toolkit's templates look for them.

static QDBusArgument& operator<<(QDBusArgument& out, const IconPixmap& pixmap) {
  out.beginStructure();
  out << pixmap.width << pixmap.height << pixmap.pixels;
  out.endStructure();
  return out;
}

static QDBusArgument& operator<<(QDBusArgument& out, const IconToolTip& toolTip) {
  out.beginStructure();
  out << toolTip.iconName << toolTip.pixmaps << toolTip.title << toolTip.description;
  out.endStructure();
  return out;
}

static QDBusArgument& operator<<(QDBusArgument& out, const NumberedProperties& item) {
  out.beginStructure();
  out << item.number << item.properties;
  out.endStructure();
  return out;
}

static QDBusArgument& operator<<(QDBusArgument& out, const MenuLayout& layout) {
  out.beginStructure();
  out << layout.number << layout.properties;
  out.beginArray(QMetaType::fromType<QDBusVariant>());
  for (const MenuLayout& child : layout.children) out << QDBusVariant(QVariant::fromValue(child));
  out.endArray();
  out.endStructure();
  return out;
}

namespace {

/// They are never received, but the toolkit wants to know how.
template <class Type>
void registerForSending() {
  QDBusMetaType::registerMarshallOperators(
      QMetaType::fromType<Type>(),
      [](QDBusArgument& out, const void* value) { out << *static_cast<const Type*>(value); },
      [](const QDBusArgument& /*in*/, void* /*value*/) {});
}

IconPixmap pixmapOf(const QImage& image) {
  IconPixmap pixmap{image.width(), image.height(), QByteArray(image.sizeInBytes(), '\0')};
  qToBigEndian<quint32>(image.constBits(), image.sizeInBytes() / 4, pixmap.pixels.data());
  return pixmap;
}

}  // namespace

IconPixmaps pixmapsOf(const QIcon& icon) {
  constexpr double pixelsPerPoint = 1;
  IconPixmaps pixmaps;
  for (const QSize size : icon.availableSizes()) {
    const QImage image = icon.pixmap(size, pixelsPerPoint).toImage();
    pixmaps.append(pixmapOf(image.convertToFormat(QImage::Format_ARGB32)));
  }
  return pixmaps;
}

void registerBusTypes() {
  registerForSending<IconPixmap>();
  registerForSending<IconPixmaps>();
  registerForSending<IconToolTip>();
  registerForSending<NumberedProperties>();
  registerForSending<QList<NumberedProperties>>();
  registerForSending<MenuLayout>();
}

}  // namespace vistrel::platform::linux_desktop
