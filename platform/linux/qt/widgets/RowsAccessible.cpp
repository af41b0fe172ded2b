#include "platform/linux/qt/widgets/RowsAccessible.h"

#include <utility>

#include "platform/linux/qt/widgets/RowsView.h"

namespace vistrel::platform::linux_desktop {

RowsAccessible::RowsAccessible(RowsView& view)
    : QAccessibleWidget(&view, QAccessible::List), toldCount_(childCount()) {}

RowsAccessible::~RowsAccessible() { forgetRows(); }

RowsView* RowsAccessible::view() const { return static_cast<RowsView*>(object()); }

void RowsAccessible::reportChanges() {
  if (std::exchange(toldCount_, childCount()) != toldCount_) {
    forgetRows();
    report(*this, QAccessible::ObjectReorder);
  }
  for (int row = 0; row < childCount(); ++row) rowAt(row)->reportChanges();
}

QAccessibleInterface* RowsAccessible::child(int index) const {
  return index >= 0 && index < childCount() ? rowAt(index) : nullptr;
}

QAccessibleInterface* RowsAccessible::childAt(int x, int y) const {
  if (!isValid()) return nullptr;
  const QWidget& rows = *view()->viewport();
  const QPoint position = rows.mapFromGlobal(QPoint(x, y));
  return rows.rect().contains(position) ? child(view()->indexAt(position).row()) : nullptr;
}

QAccessibleInterface* RowsAccessible::focusChild() const {
  return isValid() && view()->hasFocus() ? child(view()->currentIndex().row()) : nullptr;
}

int RowsAccessible::childCount() const { return isValid() ? view()->model()->rowCount() : 0; }

int RowsAccessible::indexOfChild(const QAccessibleInterface* child) const {
  const auto* row = dynamic_cast<const RowAccessible*>(child);
  return row != nullptr && row->parent() == this ? row->row() : -1;
}

RowAccessible* RowsAccessible::rowAt(int row) const {
  auto& id = ids_[row];
  if (id == 0) id = QAccessible::registerAccessibleInterface(new RowAccessible(*this, row));
  return static_cast<RowAccessible*>(QAccessible::accessibleInterface(id));
}

void RowsAccessible::forgetRows() {
  for (const auto& [row, id] : std::exchange(ids_, {})) QAccessible::deleteAccessibleInterface(id);
}

RowAccessible::RowAccessible(const RowsAccessible& rows, int row)
    : rows_(rows), row_(row), toldName_(text(QAccessible::Name)) {}

void RowAccessible::reportChanges() {
  const QString before = std::exchange(toldName_, text(QAccessible::Name));
  if (toldName_ != before) report(*this, QAccessible::NameChanged);
}

bool RowAccessible::isValid() const { return row_ < rows_.childCount(); }

QAccessibleInterface* RowAccessible::parent() const {
  return QAccessible::queryAccessibleInterface(rows_.view());
}

QString RowAccessible::text(QAccessible::Text kind) const {
  if (!isValid() || kind != QAccessible::Name) return {};
  return rows_.view()->rowAt(row_).data().toString();
}

QRect RowAccessible::rect() const {
  if (!isValid()) return {};
  const RowsView& view = *rows_.view();
  const QRect inRows = view.visualRect(view.rowAt(row_));
  return {view.viewport()->mapToGlobal(inRows.topLeft()), inRows.size()};
}

QAccessible::State RowAccessible::state() const {
  QAccessible::State state;
  state.invalid = !isValid();
  state.invisible = !isValid() || rows_.state().invisible;
  if (!isValid()) return state;
  const RowsView& view = *rows_.view();
  const QModelIndex index = view.rowAt(row_);
  state.offscreen = !view.viewport()->rect().intersects(view.visualRect(index));
  state.focusable = true;
  state.focused = view.hasFocus() && view.currentIndex() == index;
  state.selectable = true;
  state.selected = view.selectionModel()->isSelected(index);
  return state;
}

void* RowAccessible::interface_cast(QAccessible::InterfaceType type) {
  if (type != QAccessible::ActionInterface) return nullptr;
  return static_cast<QAccessibleActionInterface*>(this);
}

QStringList RowAccessible::actionNames() const { return {pressAction(), setFocusAction()}; }

void RowAccessible::doAction(const QString& name) {
  if (!isValid()) return;
  RowsView& view = *rows_.view();
  if (name == setFocusAction()) view.setFocus(Qt::OtherFocusReason);
  view.setCurrentIndex(view.rowAt(row_));
  if (name == pressAction()) view.pressSelectedRow();
}

}  // namespace vistrel::platform::linux_desktop
