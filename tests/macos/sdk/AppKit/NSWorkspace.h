#pragma once

#import <Foundation/NSURL.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSWorkspace : NSObject
@property(class, readonly, strong) NSWorkspace* sharedWorkspace;
- (BOOL)openURL:(NSURL*)url;
@end

NS_ASSUME_NONNULL_END
