#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSURL : NSObject
+ (nullable instancetype)URLWithString:(NSString*)URLString;
@end

NS_ASSUME_NONNULL_END
