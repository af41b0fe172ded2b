#pragma once

#import <AppKit/AppKit.h>

NS_ASSUME_NONNULL_BEGIN

typedef NSString* NSAccessibilityNotificationName;
typedef NSString* NSAccessibilityNotificationUserInfoKey;

typedef NS_ENUM(NSInteger, NSAccessibilityPriorityLevel) { NSAccessibilityPriorityMedium = 50 };

extern "C" {
extern NSAccessibilityNotificationName const NSAccessibilityAnnouncementRequestedNotification;
extern NSAccessibilityNotificationUserInfoKey const NSAccessibilityAnnouncementKey;
extern NSAccessibilityNotificationUserInfoKey const NSAccessibilityPriorityKey;

void NSAccessibilityPostNotificationWithUserInfo(
    id element, NSAccessibilityNotificationName notification,
    NSDictionary<NSAccessibilityNotificationUserInfoKey, id>* _Nullable userInfo);
}

NS_ASSUME_NONNULL_END
