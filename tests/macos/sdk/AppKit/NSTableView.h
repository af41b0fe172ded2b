#pragma once

#import <AppKit/AppKit.h>
#import <Foundation/NSIndexSet.h>

NS_ASSUME_NONNULL_BEGIN

@class NSTableHeaderView;
@class NSTableView;

@protocol NSTableViewDataSource <NSObject>
@optional
- (NSInteger)numberOfRowsInTableView:(NSTableView*)tableView;
@end

@interface NSTableColumn : NSObject
- (instancetype)initWithIdentifier:(NSUserInterfaceItemIdentifier)identifier;
@property(copy) NSString* title;
@property CGFloat width;
@end

@protocol NSTableViewDelegate <NSObject>
@optional
- (nullable NSView*)tableView:(NSTableView*)tableView
           viewForTableColumn:(nullable NSTableColumn*)tableColumn
                          row:(NSInteger)row;
@end

@interface NSTableView : NSControl
@property(nullable, weak) id<NSTableViewDataSource> dataSource;
@property(nullable, weak) id<NSTableViewDelegate> delegate;
@property(nullable, strong) NSTableHeaderView* headerView;
@property CGFloat rowHeight;
@property(nullable) SEL doubleAction;
@property(readonly) NSInteger selectedRow;
- (void)addTableColumn:(NSTableColumn*)tableColumn;
- (nullable __kindof NSView*)makeViewWithIdentifier:(NSUserInterfaceItemIdentifier)identifier
                                              owner:(nullable id)owner;
- (void)reloadData;
- (void)reloadDataForRowIndexes:(NSIndexSet*)rowIndexes columnIndexes:(NSIndexSet*)columnIndexes;
@end

@interface NSTableCellView : NSView
@property(nullable, assign) NSTextField* textField;
@end

NS_ASSUME_NONNULL_END
