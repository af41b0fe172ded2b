#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

@class NSMenu;

typedef NSInteger NSControlStateValue;
static const NSControlStateValue NSControlStateValueOff = 0;
static const NSControlStateValue NSControlStateValueOn = 1;

@interface NSMenuItem : NSObject
+ (NSMenuItem*)separatorItem;
- (instancetype)initWithTitle:(NSString*)string
                       action:(nullable SEL)selector
                keyEquivalent:(NSString*)charCode;
@property(nullable) SEL action;
@property(nullable, weak) id target;
@property(nullable, strong) id representedObject;
@property(getter=isEnabled) BOOL enabled;
@property NSControlStateValue state;
@property NSInteger tag;
@property(nullable, strong) NSMenu* submenu;
@end

NS_ASSUME_NONNULL_END
