#pragma once

#include <QAccessible>

namespace vistrel::platform::linux_desktop {

/// Makes windows and lists of ours readable where the toolkit's own way does not. What is read is
/// made when a screen reader first asks. Before any window is made.
void installAccessibles();

/// Tells screen readers of an event.
void report(QAccessibleInterface& about, QAccessible::Event event);

/// What screen readers know of `object`, an `Accessible` by `installAccessibles`; null while there
/// are none that listen.
template <class Accessible, class Object>
Accessible* heardAccessible(Object& object) {
  if (!QAccessible::isActive()) return nullptr;
  return static_cast<Accessible*>(QAccessible::queryAccessibleInterface(&object));
}

}  // namespace vistrel::platform::linux_desktop
