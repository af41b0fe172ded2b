#pragma once

#include <QAccessible>

namespace vistrel::platform::linux_desktop {

/// What screen readers know of something that holds nothing and is no object of the toolkit's, but
/// can be acted on.
class LeafAccessible : public QAccessibleInterface, public QAccessibleActionInterface {
 public:
  QObject* object() const final { return nullptr; }
  QAccessibleInterface* child(int /*index*/) const final { return nullptr; }
  QAccessibleInterface* childAt(int /*x*/, int /*y*/) const final { return nullptr; }
  int childCount() const final { return 0; }
  int indexOfChild(const QAccessibleInterface* /*child*/) const final { return -1; }
  void setText(QAccessible::Text /*kind*/, const QString& /*text*/) final {}
  QStringList keyBindingsForAction(const QString& /*name*/) const final { return {}; }
};

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
