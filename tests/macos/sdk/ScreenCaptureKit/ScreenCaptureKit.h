#pragma once

#import <CoreMedia/CoreMedia.h>
#import <Foundation/Foundation.h>
#import <dispatch/dispatch.h>
#include <sys/types.h>

NS_ASSUME_NONNULL_BEGIN

@class SCStream;

typedef NSString* SCStreamFrameInfo;

extern "C" {
extern SCStreamFrameInfo const SCStreamFrameInfoStatus;
}

typedef NS_ENUM(NSInteger, SCStreamOutputType) {
  SCStreamOutputTypeScreen = 0,
  SCStreamOutputTypeAudio = 1,
};

typedef NS_ENUM(NSInteger, SCFrameStatus) {
  SCFrameStatusComplete = 0,
  SCFrameStatusIdle = 1,
  SCFrameStatusBlank = 2,
  SCFrameStatusSuspended = 3,
  SCFrameStatusStarted = 4,
  SCFrameStatusStopped = 5,
};

@interface SCRunningApplication : NSObject
@property(readonly) NSString* applicationName;
@property(readonly) pid_t processID;
@end

@interface SCWindow : NSObject
@property(readonly) CGWindowID windowID;
@property(readonly) CGRect frame;
@property(readonly, nullable) NSString* title;
@property(readonly) NSInteger windowLayer;
@property(readonly, nullable) SCRunningApplication* owningApplication;
@property(readonly, getter=isOnScreen) BOOL onScreen;
@end

@interface SCShareableContent : NSObject
+ (void)getShareableContentExcludingDesktopWindows:(BOOL)excludeDesktopWindows
                               onScreenWindowsOnly:(BOOL)onScreenWindowsOnly
                                 completionHandler:
                                     (void (^)(SCShareableContent* _Nullable content,
                                               NSError* _Nullable error))completionHandler;
@property(readonly) NSArray<SCWindow*>* windows;
@end

@interface SCContentFilter : NSObject
- (instancetype)initWithDesktopIndependentWindow:(SCWindow*)window;
@end

@interface SCStreamConfiguration : NSObject
@property size_t width;
@property size_t height;
@property CMTime minimumFrameInterval;
@property NSInteger queueDepth;
@property BOOL showsCursor;
@property BOOL scalesToFit;
@property OSType pixelFormat;
@end

@protocol SCStreamOutput <NSObject>
@optional
- (void)stream:(SCStream*)stream
    didOutputSampleBuffer:(CMSampleBufferRef)sampleBuffer
                   ofType:(SCStreamOutputType)type;
@end

@protocol SCStreamDelegate <NSObject>
@optional
- (void)stream:(SCStream*)stream didStopWithError:(NSError*)error;
@end

@interface SCStream : NSObject
- (instancetype)initWithFilter:(SCContentFilter*)contentFilter
                 configuration:(SCStreamConfiguration*)streamConfig
                      delegate:(nullable id<SCStreamDelegate>)delegate;
- (BOOL)addStreamOutput:(id<SCStreamOutput>)output
                   type:(SCStreamOutputType)type
     sampleHandlerQueue:(nullable dispatch_queue_t)sampleHandlerQueue
                  error:(NSError* _Nullable* _Nullable)error;
- (void)startCaptureWithCompletionHandler:
    (nullable void (^)(NSError* _Nullable error))completionHandler;
- (void)stopCaptureWithCompletionHandler:
    (nullable void (^)(NSError* _Nullable error))completionHandler;
- (void)updateConfiguration:(SCStreamConfiguration*)streamConfig
          completionHandler:(nullable void (^)(NSError* _Nullable error))completionHandler;
@end

NS_ASSUME_NONNULL_END
