#pragma once

#import <AppKit/AppKit.h>
#import <Foundation/NSRunLoop.h>

NS_ASSUME_NONNULL_BEGIN

@class NSApplication;
@class NSMenu;

typedef NS_ENUM(NSInteger, NSApplicationActivationPolicy) {
  NSApplicationActivationPolicyRegular = 0,
};

@protocol NSApplicationDelegate <NSObject>
@optional
- (void)applicationDidFinishLaunching:(NSNotification*)notification;
- (BOOL)applicationShouldHandleReopen:(NSApplication*)sender hasVisibleWindows:(BOOL)flag;
- (nullable NSMenu*)applicationDockMenu:(NSApplication*)sender;
- (BOOL)applicationSupportsSecureRestorableState:(NSApplication*)app;
@end

@interface NSApplication : NSResponder
@property(class, readonly, strong) __kindof NSApplication* sharedApplication;
@property(nullable, weak) id<NSApplicationDelegate> delegate;
@property(nullable, readonly, weak) NSWindow* keyWindow;
@property(nullable, strong) NSMenu* mainMenu;
@property(nullable, strong) NSMenu* windowsMenu;
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)activationPolicy;
- (void)activateIgnoringOtherApps:(BOOL)ignoreOtherApps;
- (void)hide:(nullable id)sender;
- (void)finishLaunching;
- (nullable NSEvent*)nextEventMatchingMask:(NSEventMask)mask
                                 untilDate:(nullable NSDate*)expiration
                                    inMode:(NSRunLoopMode)mode
                                   dequeue:(BOOL)deqFlag;
- (void)sendEvent:(NSEvent*)event;
- (void)run;
- (void)terminate:(nullable id)sender;
@end

NS_ASSUME_NONNULL_END
