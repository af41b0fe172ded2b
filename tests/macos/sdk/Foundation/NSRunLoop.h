#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

typedef NSString* NSRunLoopMode;

extern "C" {
extern NSRunLoopMode const NSDefaultRunLoopMode;
}

NS_ASSUME_NONNULL_END
