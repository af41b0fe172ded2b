#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSProcessInfo : NSObject
@property(class, readonly, strong) NSProcessInfo* processInfo;
@property(readonly) int processIdentifier;
@end

NS_ASSUME_NONNULL_END
