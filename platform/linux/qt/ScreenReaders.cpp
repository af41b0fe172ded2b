#include "platform/linux/qt/ScreenReaders.h"

#include <QAccessibleWidget>

#include "platform/linux/qt/PanelAccessible.h"
#include "platform/linux/qt/PanelWindow.h"
#include "platform/linux/qt/RowsAccessible.h"
#include "platform/linux/qt/RowsView.h"
#include "platform/linux/qt/TitledWindow.h"

namespace vistrel::platform::linux_desktop {

namespace {

/// Our classes bear the names of the toolkit's that they derive from.
QAccessibleInterface* makeAccessible(const QString& /*className*/, QObject* object) {
  if (auto* panel = dynamic_cast<PanelWindow*>(object)) return new PanelAccessible(*panel);
  if (auto* rows = dynamic_cast<RowsView*>(object)) return new RowsAccessible(*rows);
  if (auto* titled = dynamic_cast<TitledWindow*>(object)) {
    return new QAccessibleWidget(titled, QAccessible::Window);
  }
  return nullptr;
}

}  // namespace

void installAccessibles() { QAccessible::installFactory(makeAccessible); }

void report(QAccessibleInterface& about, QAccessible::Event event) {
  QAccessibleEvent message(&about, event);
  QAccessible::updateAccessibility(&message);
}

}  // namespace vistrel::platform::linux_desktop
