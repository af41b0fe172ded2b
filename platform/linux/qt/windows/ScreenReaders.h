#pragma once

#include <QAccessible>

namespace vistrel::platform::linux_desktop {

/// Tells screen readers of an event.
void report(QAccessibleInterface& about, QAccessible::Event event);

/// What screen readers know of `object`, which is made into an `Accessible` for them; null while
/// there are none that listen.
template <class Accessible, class Object>
Accessible* heardAccessible(Object& object) {
  if (!QAccessible::isActive()) return nullptr;
  return static_cast<Accessible*>(QAccessible::queryAccessibleInterface(&object));
}

}  // namespace vistrel::platform::linux_desktop
