#include "platform/linux/qt/widgets/RowsView.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <cmath>

#include "platform/linux/qt/paint/Colors.h"
#include "platform/linux/qt/paint/Fonts.h"
#include "platform/linux/qt/paint/PlainText.h"
#include "platform/linux/qt/widgets/RowsAccessible.h"
#include "platform/linux/qt/windows/ScreenReaders.h"

namespace vistrel::platform::linux_desktop {

namespace {

/// None for cells that are no text.
std::shared_ptr<Label> labelOf(TableView& table, int row) {
  const auto cell = std::dynamic_pointer_cast<TableCellView>(table.cellForRow(row));
  return cell ? cell->textField() : nullptr;
}

}  // namespace

void RowsModel::reload() {
  if (rowCount_ == table_.numberOfRows()) {
    // Keeps what is selected and how far the view is scrolled.
    if (rowCount_ > 0) emit dataChanged(index(0), index(rowCount_ - 1));
    return;
  }
  beginResetModel();
  rowCount_ = table_.numberOfRows();
  endResetModel();
}

int RowsModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : rowCount_;
}

QVariant RowsModel::data(const QModelIndex& index, int role) const {
  if (role != Qt::DisplayRole && role != Qt::ForegroundRole && role != Qt::FontRole) return {};
  const auto label = labelOf(table_, index.row());
  if (!label) return {};
  if (role == Qt::DisplayRole) {
    return withoutLineBreaks(readableBeginning(QString::fromStdString(label->stringValue())));
  }
  if (role == Qt::FontRole) return qtFont(label->font());
  return QBrush(resolved(label->textColor(), QGuiApplication::palette()));
}

QSize RowDelegate::sizeHint(const QStyleOptionViewItem& /*option*/,
                            const QModelIndex& /*index*/) const {
  return {0, height_};
}

void RowDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
  QStyledItemDelegate::initStyleOption(option, index);
  option->state &= ~QStyle::State_HasFocus;
}

RowsView::RowsView(TableView& table, QWidget* parent)
    : QListView(parent),
      table_(table),
      rows_(table),
      delegate_(static_cast<int>(std::lround(table.rowHeight()))) {
  setModel(&rows_);
  setItemDelegate(&delegate_);
  setUniformItemSizes(true);
  setTextElideMode(Qt::ElideRight);
  setSelectionMode(QAbstractItemView::SingleSelection);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
  if (!table.tableColumns().empty()) {
    setAccessibleName(QString::fromStdString(table.tableColumns().front().title));
  }
}

void RowsView::reload() {
  isReloading_ = true;
  rows_.reload();
  showSelection();
  isReloading_ = false;
  if (auto* accessible = heardAccessible<RowsAccessible>(*this)) accessible->reportChanges();
}

void RowsView::pressSelectedRow() {
  if (!isAbandoned_) table_.personDidDoubleClick();
}

void RowsView::mouseDoubleClickEvent(QMouseEvent* event) {
  QListView::mouseDoubleClickEvent(event);
  const bool isOnRow = indexAt(event->position().toPoint()).isValid();
  if (isOnRow && event->button() == Qt::LeftButton) pressSelectedRow();
}

void RowsView::focusInEvent(QFocusEvent* event) {
  QListView::focusInEvent(event);
  // Qt 6.4.2 goes to the first row without selecting it; the first arrow key would leave it out.
  if (!selectionModel()->hasSelection()) selectionModel()->clearCurrentIndex();
}

void RowsView::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
  QListView::selectionChanged(selected, deselected);
  if (isReloading_ || isAbandoned_) return;
  const QModelIndexList rows = selectionModel()->selectedRows();
  table_.personDidSelectRow(rows.isEmpty() ? -1 : rows.front().row());
}

void RowsView::showSelection() {
  if (table_.selectedRow() < 0) {
    selectionModel()->clear();
  } else if (!selectionModel()->isRowSelected(table_.selectedRow())) {
    setCurrentIndex(rowAt(table_.selectedRow()));
  }
}

}  // namespace vistrel::platform::linux_desktop
