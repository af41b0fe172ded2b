#pragma once

#import <AppKit/AppKit.h>

NS_ASSUME_NONNULL_BEGIN

typedef NS_ENUM(NSInteger, NSLayoutRelation) { NSLayoutRelationEqual = 0 };

typedef NS_ENUM(NSInteger, NSLayoutAttribute) {
  NSLayoutAttributeTop = 3,
  NSLayoutAttributeBottom = 4,
  NSLayoutAttributeLeading = 5,
  NSLayoutAttributeTrailing = 6,
  NSLayoutAttributeCenterX = 9,
  NSLayoutAttributeCenterY = 10,
  NSLayoutAttributeNotAnAttribute = 0,
};

@interface NSLayoutConstraint : NSObject
+ (instancetype)constraintWithItem:(id)view1
                         attribute:(NSLayoutAttribute)attr1
                         relatedBy:(NSLayoutRelation)relation
                            toItem:(nullable id)view2
                         attribute:(NSLayoutAttribute)attr2
                        multiplier:(CGFloat)multiplier
                          constant:(CGFloat)c;
+ (void)activateConstraints:(NSArray<NSLayoutConstraint*>*)constraints;
+ (void)deactivateConstraints:(NSArray<NSLayoutConstraint*>*)constraints;
@end

NS_ASSUME_NONNULL_END
