#pragma once

#import <AppKit/AppKit.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSScreen : NSObject
@property(class, readonly, copy) NSArray<NSScreen*>* screens;
@property(class, nullable, readonly, strong) NSScreen* mainScreen;
@property(readonly) NSRect frame;
@property(readonly) NSRect visibleFrame;
@property(readonly) CGFloat backingScaleFactor;
@end

NS_ASSUME_NONNULL_END
