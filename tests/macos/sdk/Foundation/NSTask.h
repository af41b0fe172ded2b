#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSTask : NSObject
@property(nullable, copy) NSString* launchPath;
@property(nullable, copy) NSArray<NSString*>* arguments;
- (BOOL)launchAndReturnError:(NSError* _Nullable* _Nullable)error;
@end

NS_ASSUME_NONNULL_END
