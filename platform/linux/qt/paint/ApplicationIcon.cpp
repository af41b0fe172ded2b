#include "platform/linux/qt/paint/ApplicationIcon.h"

#include <QString>

/// The macro names a function outside any namespace. Linkers leave out of a library what nobody
/// calls.
static void initialiseIcons() { Q_INIT_RESOURCE(icons); }

namespace vistrel::platform::linux_desktop {

QIcon applicationIcon() {
  initialiseIcons();
  QIcon icon;
  for (const int size : {16, 22, 24, 32, 44, 48, 64, 96, 128}) {
    icon.addFile(QStringLiteral(":/icons/%1.png").arg(size));
  }
  return icon;
}

}  // namespace vistrel::platform::linux_desktop
