#include "platform/linux/qt/windows/ScreenReaders.h"

namespace vistrel::platform::linux_desktop {

void report(QAccessibleInterface& about, QAccessible::Event event) {
  QAccessibleEvent message(&about, event);
  QAccessible::updateAccessibility(&message);
}

}  // namespace vistrel::platform::linux_desktop
