#pragma once

#import <AppKit/AppKit.h>

NS_ASSUME_NONNULL_BEGIN

typedef NS_ENUM(NSUInteger, NSBorderType) {
  NSNoBorder = 0,
  NSBezelBorder = 2,
};

@interface NSScrollView : NSView
@property BOOL hasVerticalScroller;
@property NSBorderType borderType;
@property(nullable, strong) __kindof NSView* documentView;
@end

NS_ASSUME_NONNULL_END
