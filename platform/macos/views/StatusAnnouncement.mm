#include "platform/macos/views/StatusAnnouncement.h"

#include "platform/Controls.h"
#include "platform/macos/Conversions.h"

namespace vistrel::platform::macos {

namespace {

void announce(NSString* text) {
  NSDictionary* announcement = @{
    NSAccessibilityAnnouncementKey : text,
    NSAccessibilityPriorityKey : [NSNumber numberWithInteger:NSAccessibilityPriorityMedium],
  };
  NSAccessibilityPostNotificationWithUserInfo(NSApplication.sharedApplication,
                                              NSAccessibilityAnnouncementRequestedNotification,
                                              announcement);
}

}  // namespace

void announceStatus(const View& view, NSView* realized) {
  const auto* label = dynamic_cast<const Label*>(&view);
  const bool isShownStatus = label != nullptr && !label->isHiddenOrHasHiddenAncestor() &&
                             label->accessibilityRole() == AccessibilityRole::status;
  if (!isShownStatus) return;
  NSString* text = nsString(label->stringValue());
  NSString* former = static_cast<NSTextField*>(realized).stringValue;
  if (realized.hidden || ![former isEqualToString:text]) announce(text);
}

}  // namespace vistrel::platform::macos
