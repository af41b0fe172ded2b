#include "platform/linux/qt/Accessibles.h"

#include <QAccessibleWidget>

#include "platform/linux/qt/panel/PanelAccessible.h"
#include "platform/linux/qt/panel/PanelWindow.h"
#include "platform/linux/qt/widgets/RowsAccessible.h"
#include "platform/linux/qt/widgets/RowsView.h"
#include "platform/linux/qt/widgets/TitledWindow.h"

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

}  // namespace vistrel::platform::linux_desktop
