#pragma once

#import <AppKit/AppKit.h>

NS_ASSUME_NONNULL_BEGIN

typedef NSInteger NSModalResponse;
static const NSModalResponse NSAlertFirstButtonReturn = 1000;

@interface NSAlert : NSObject
@property(copy) NSString* messageText;
@property(copy) NSString* informativeText;
- (NSButton*)addButtonWithTitle:(NSString*)title;
- (NSModalResponse)runModal;
@end

NS_ASSUME_NONNULL_END
