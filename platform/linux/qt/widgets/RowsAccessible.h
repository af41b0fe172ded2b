#pragma once

#include <QAccessibleWidget>
#include <map>

#include "platform/linux/qt/windows/ScreenReaders.h"

namespace vistrel::platform::linux_desktop {

class RowAccessible;
class RowsView;

/// What screen readers know of a table: a list with an item for each row.
class RowsAccessible final : public QAccessibleWidget {
 public:
  explicit RowsAccessible(RowsView& view);
  ~RowsAccessible() override;

  /// Null once the widget goes.
  RowsView* view() const;
  /// Sends what has become of the rows since the last time.
  void reportChanges();

  QAccessibleInterface* child(int index) const override;
  QAccessibleInterface* childAt(int x, int y) const override;
  QAccessibleInterface* focusChild() const override;
  int childCount() const override;
  int indexOfChild(const QAccessibleInterface* child) const override;

 private:
  RowAccessible* rowAt(int row) const;
  void forgetRows();

  mutable std::map<int, QAccessible::Id> ids_;  // by row, of those that were asked for
  int toldCount_;
};

/// One row of a table. Screen readers may hold it longer than there is such a row.
class RowAccessible final : public LeafAccessible {
 public:
  /// `rows` owns this.
  RowAccessible(const RowsAccessible& rows, int row);

  int row() const { return row_; }
  /// Sends the row's text if it has become another.
  void reportChanges();

  bool isValid() const override;
  QWindow* window() const override { return rows_.window(); }
  QAccessibleInterface* parent() const override;
  QString text(QAccessible::Text kind) const override;
  QRect rect() const override;
  QAccessible::Role role() const override { return QAccessible::ListItem; }
  QAccessible::State state() const override;
  void* interface_cast(QAccessible::InterfaceType type) override;

  QStringList actionNames() const override;
  void doAction(const QString& name) override;

 private:
  const RowsAccessible& rows_;
  const int row_;
  QString toldName_;
};

}  // namespace vistrel::platform::linux_desktop
