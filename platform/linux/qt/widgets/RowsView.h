#pragma once

#include <QAbstractListModel>
#include <QListView>
#include <QStyledItemDelegate>

#include "platform/Controls.h"

namespace vistrel::platform::linux_desktop {

/// A table's rows as the toolkit's views read them: texts in their colours.
class RowsModel final : public QAbstractListModel {
 public:
  explicit RowsModel(TableView& table) : table_(table) {}

  /// The table's rows have changed.
  void reload();

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  TableView& table_;
  int rowCount_ = 0;
};

/// Draws a row without a frame of its own for the keyboard, since the selection shows where it is.
class RowDelegate final : public QStyledItemDelegate {
 public:
  explicit RowDelegate(int height) : height_(height) {}

  /// Rows are as wide as the list.
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;

 private:
  const int height_;
};

/// The widget of a table with one column: no header, one row selected at most.
class RowsView final : public QListView {
 public:
  /// `table` outlives this, or `abandon` is called.
  RowsView(TableView& table, QWidget* parent);

  /// The table's rows or its selection have changed.
  void reload();
  QModelIndex rowAt(int row) const { return rows_.index(row); }
  /// What a double-click does to the row that is selected.
  void pressSelectedRow();
  /// Nothing is passed on any more.
  void abandon() { isAbandoned_ = true; }

 protected:
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;

 private:
  void showSelection();

  TableView& table_;
  RowsModel rows_;
  RowDelegate delegate_;
  bool isReloading_ = false;
  bool isAbandoned_ = false;
};

}  // namespace vistrel::platform::linux_desktop
