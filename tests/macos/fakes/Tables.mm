#include "tests/macos/fakes/AppKitFakes.h"
#include "tests/macos/fakes/Recorder.h"
#include "tests/macos/fakes/State.h"

using namespace vistrel;

@implementation NSTableColumn (VLBehaviour)

- (instancetype)initWithIdentifier:(NSUserInterfaceItemIdentifier)identifier {
  self = [super init];
  fake::record(self, _cmd, identifier);
  self.identifier = identifier;
  return self;
}

@end

@implementation NSTableView (VLBehaviour)

- (instancetype)initWithFrame:(NSRect)frame {
  self = [super initWithFrame:frame];
  self.columns = [NSMutableArray array];
  self.rowViews = [NSMutableArray array];
  self.reusableViews = [NSMutableArray array];
  self.selectedRow = -1;
  return self;
}

- (void)addTableColumn:(NSTableColumn*)column {
  fake::record(self, _cmd, column);
  [self.columns addObject:column];
}

/// Answers a view of that identifier that its row does not need any more, nil for none:
/// NSTableView, makeViewWithIdentifier:owner:.
- (NSView*)makeViewWithIdentifier:(NSUserInterfaceItemIdentifier)identifier owner:(id)owner {
  fake::record(self, _cmd, identifier, owner);
  NSView* found = nil;
  NSMutableArray<NSView*>* const others = [NSMutableArray array];
  for (NSView* view in self.reusableViews) {
    const bool fits =
        found == nil && view.identifier != nil && [view.identifier isEqualToString:identifier];
    if (fits) {
      found = view;
    } else {
      [others addObject:view];
    }
  }
  self.reusableViews = others;
  return found;
}

/// Marks the table, which asks when it is displayed next: NSTableView, reloadData.
- (void)reloadData {
  fake::record(self, _cmd);
  [self giveUpRows];
  self.isStale = YES;
}

- (void)giveUpRows {
  for (NSView* view in self.rowViews) [self.reusableViews addObject:view];
  self.rowViews = [NSMutableArray array];
}

- (void)reloadDataForRowIndexes:(NSIndexSet*)rows columnIndexes:(NSIndexSet*)columns {
  fake::record(self, _cmd, rows, columns);
  [self giveUpRows];
  self.isStale = YES;
}

- (void)askForRows {
  self.isStale = NO;
  const NSInteger count = [self.dataSource numberOfRowsInTableView:self];
  NSMutableArray<NSView*>* const views = [NSMutableArray array];
  for (NSInteger row = 0; row < count; ++row) {
    NSView* const view = [self.delegate tableView:self
                               viewForTableColumn:self.columns.firstObject
                                              row:row];
    if (view == nil) fake::fail("a row has no view");
    [views addObject:view];
  }
  self.rowViews = views;
  if (self.selectedRow >= count) self.selectedRow = -1;
}

@end

namespace vistrel::fake {

std::vector<NSView*> rowViews(NSTableView* table) {
  if (table.isStale) [table askForRows];
  std::vector<NSView*> views;
  for (NSView* view in table.rowViews) views.push_back(view);
  return views;
}

}  // namespace vistrel::fake
