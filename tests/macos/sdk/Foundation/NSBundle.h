#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSBundle : NSObject
@property(class, readonly, strong) NSBundle* mainBundle;
@property(readonly, copy) NSString* bundlePath;
- (nullable id)objectForInfoDictionaryKey:(NSString*)key;
@end

NS_ASSUME_NONNULL_END
