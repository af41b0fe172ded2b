#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

@class NSEvent;
@class NSMenu;
@class NSMenuItem;

@protocol NSMenuDelegate <NSObject>
@optional
- (void)menuNeedsUpdate:(NSMenu*)menu;
- (BOOL)menuHasKeyEquivalent:(NSMenu*)menu
                    forEvent:(NSEvent*)event
                      target:(id _Nullable* _Nonnull)target
                      action:(SEL _Nullable* _Nonnull)action;
@end

@interface NSMenu : NSObject
- (instancetype)initWithTitle:(NSString*)title;
@property(nullable, weak) id<NSMenuDelegate> delegate;
@property BOOL autoenablesItems;
@property(readonly, copy) NSArray<NSMenuItem*>* itemArray;
- (void)addItem:(NSMenuItem*)newItem;
- (void)removeAllItems;
@end

NS_ASSUME_NONNULL_END
