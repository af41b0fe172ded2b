#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

typedef NSString* CALayerContentsGravity;
typedef NSString* CALayerContentsFilter;

extern "C" {
extern CALayerContentsGravity const kCAGravityResize;
extern CALayerContentsGravity const kCAGravityResizeAspect;
extern CALayerContentsFilter const kCAFilterLinear;
extern CALayerContentsFilter const kCAFilterTrilinear;
}

@interface CALayer : NSObject
+ (instancetype)layer;
@property(nullable) CGColorRef backgroundColor;
@property CGFloat cornerRadius;
@property BOOL masksToBounds;
@property CGFloat borderWidth;
@property(nullable) CGColorRef borderColor;
@property(nullable, strong) id contents;
@property CGFloat contentsScale;
@property(copy) CALayerContentsGravity contentsGravity;
@property(copy) CALayerContentsFilter magnificationFilter;
@property(copy) CALayerContentsFilter minificationFilter;
@end

NS_ASSUME_NONNULL_END
