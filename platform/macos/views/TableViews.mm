#include "platform/macos/views/TableViews.h"

#include <string>
#include <utility>

#include "platform/macos/Conversions.h"
#include "platform/macos/views/ControlState.h"
#include "platform/macos/views/ViewTree.h"

using namespace vistrel::platform;

@interface VLTableCellView ()
- (const std::shared_ptr<TableCellView>&)cell;
@end

/// Data source, delegate and target of a table, all of which AppKit holds weakly.
@interface VLTableRows : NSObject <NSTableViewDataSource, NSTableViewDelegate>
- (instancetype)initWithTable:(std::weak_ptr<TableView>)table;
- (void)rowWasDoubleClicked:(nullable id)sender;
@end

namespace {

VLTableCellView* makeRealizedCell(TableCellView& cell) {
  macos::ViewTree tree;
  auto* realized = static_cast<VLTableCellView*>(tree.realize(cell));
  realized.identifier = macos::nsString(cell.identifier());
  if (cell.textField()) {
    realized.textField = static_cast<NSTextField*>(tree.realizedView(*cell.textField()));
  }
  return realized;
}

/// A cell is in no window of the core's, so nobody tells of what its delegate has changed.
void dressAgain(const TableCellView& cell, VLTableCellView* realized) {
  if (cell.textField()) macos::applyAppearance(*cell.textField(), realized.textField);
}

}  // namespace

@implementation VLTableRows {
  std::weak_ptr<TableView> _table;
}

- (instancetype)initWithTable:(std::weak_ptr<TableView>)table {
  self = [super init];
  if (self != nil) _table = std::move(table);
  return self;
}

- (NSInteger)numberOfRowsInTableView:(NSTableView*)__unused tableView {
  const auto table = _table.lock();
  return table ? table->numberOfRows() : 0;
}

- (nullable NSView*)tableView:(NSTableView*)tableView
           viewForTableColumn:(nullable NSTableColumn*)__unused column
                          row:(NSInteger)row {
  const auto table = _table.lock();
  if (!table) return nil;
  VLTableCellView* reused = nil;
  const auto findReusable = [&](const std::string& identifier) -> std::shared_ptr<TableCellView> {
    NSView* found = [tableView makeViewWithIdentifier:macos::nsString(identifier) owner:self];
    if (![found isKindOfClass:VLTableCellView.class]) return nullptr;
    reused = static_cast<VLTableCellView*>(found);
    return reused.cell;
  };
  const auto cell = std::dynamic_pointer_cast<TableCellView>(
      table->makeCell(static_cast<int>(row), findReusable));
  if (!cell) return nil;
  if (reused == nil || reused.cell != cell) return makeRealizedCell(*cell);
  dressAgain(*cell, reused);
  return reused;
}

- (void)rowWasDoubleClicked:(nullable id)__unused sender {
  if (const auto table = _table.lock()) table->personDidDoubleClick();
}

@end

@implementation VLTableView {
  VLTableRows* _rows;
}

- (instancetype)initWithTable:(const std::shared_ptr<TableView>&)table {
  self = [super initWithFrame:NSRect()];
  if (self == nil) return nil;
  for (const TableColumn& column : table->tableColumns()) {
    NSTableColumn* added =
        [[NSTableColumn alloc] initWithIdentifier:macos::nsString(column.identifier)];
    added.title = macos::nsString(column.title);
    added.width = column.width;
    [self addTableColumn:added];
  }
  if (!table->tableColumns().empty()) {
    self.accessibilityLabel = macos::nsString(table->tableColumns().front().title);
  }
  if (!table->hasHeaderView()) self.headerView = nil;
  self.rowHeight = table->rowHeight();
  _rows = [[VLTableRows alloc] initWithTable:table];
  self.dataSource = _rows;
  self.delegate = _rows;
  self.target = _rows;
  self.doubleAction = @selector(rowWasDoubleClicked:);
  return self;
}

- (void)reloadLikeTable:(const TableView&)table {
  const auto& rows = table.reloadedRows();
  if (!rows) return [self reloadData];
  NSMutableIndexSet* indexes = [NSMutableIndexSet indexSet];
  for (const int row : *rows) [indexes addIndex:static_cast<NSUInteger>(row)];
  [self reloadDataForRowIndexes:indexes columnIndexes:[NSIndexSet indexSetWithIndex:0]];
}

@end

@implementation VLTableCellView {
  std::shared_ptr<TableCellView> _cell;
}

- (instancetype)initWithCell:(std::shared_ptr<TableCellView>)cell {
  self = [super initWithFrame:NSRect()];
  if (self != nil) _cell = std::move(cell);
  return self;
}

- (const std::shared_ptr<TableCellView>&)cell {
  return _cell;
}

@end
