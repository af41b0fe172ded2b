#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSIndexSet : NSObject
+ (instancetype)indexSet;
+ (instancetype)indexSetWithIndex:(NSUInteger)value;
@end

@interface NSMutableIndexSet : NSIndexSet
- (void)addIndex:(NSUInteger)value;
@end

NS_ASSUME_NONNULL_END
