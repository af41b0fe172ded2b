#pragma once

#import <CoreVideo/CoreVideo.h>
#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

typedef NSString* CIContextOption;

extern "C" {
extern CIContextOption const kCIContextUseSoftwareRenderer;
}

@interface CIImage : NSObject
+ (CIImage*)imageWithCVPixelBuffer:(CVPixelBufferRef)buffer;
@property(readonly) CGRect extent;
@end

@interface CIContext : NSObject
+ (CIContext*)contextWithOptions:(nullable NSDictionary<CIContextOption, id>*)options;
- (nullable CGImageRef)createCGImage:(CIImage*)image
                            fromRect:(CGRect)rect __attribute__((cf_returns_retained));
@end

NS_ASSUME_NONNULL_END
