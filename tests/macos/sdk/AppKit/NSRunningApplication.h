#pragma once

#import <Foundation/Foundation.h>
#include <sys/types.h>

NS_ASSUME_NONNULL_BEGIN

typedef NS_OPTIONS(NSUInteger, NSApplicationActivationOptions) {
  NSApplicationActivateAllWindows = 1,
};

@interface NSRunningApplication : NSObject
+ (nullable instancetype)runningApplicationWithProcessIdentifier:(pid_t)pid;
- (BOOL)activateWithOptions:(NSApplicationActivationOptions)options;
@end

NS_ASSUME_NONNULL_END
