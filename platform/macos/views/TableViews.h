#pragma once

#import <AppKit/AppKit.h>

#include <memory>

#include "platform/Controls.h"

// The AppKit views behind a table of the core. Main thread.

NS_ASSUME_NONNULL_BEGIN

/// A table: its rows are counted by the core's table, which it holds weakly, and shown by cells
/// that AppKit keeps and hands out again.
@interface VLTableView : NSTableView
- (instancetype)initWithTable:(const std::shared_ptr<vistrel::platform::TableView>&)table;
/// Reloads what the core's table has reloaded last.
- (void)reloadLikeTable:(const vistrel::platform::TableView&)table;
@end

/// A cell, which owns its cell of the core.
@interface VLTableCellView : NSTableCellView
- (instancetype)initWithCell:(std::shared_ptr<vistrel::platform::TableCellView>)cell;
@end

NS_ASSUME_NONNULL_END
