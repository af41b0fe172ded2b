#include "platform/macos/views/ControlState.h"

#include <memory>

#include "platform/macos/Conversions.h"
#include "platform/macos/views/ViewPeers.h"

namespace vistrel::platform::macos {

namespace {

void applyLabel(const Label& label, NSTextField* target) {
  target.stringValue = nsString(label.stringValue());
  target.font = nsFont(label.font());
  target.textColor = nsColor(label.textColor());
  target.alignment = nsTextAlignment(label.alignment());
  target.lineBreakMode = static_cast<NSLineBreakMode>(label.lineBreakMode());
  target.maximumNumberOfLines = label.maximumNumberOfLines();
}

NSAttributedString* attributedTitle(const std::string& title, const TextStyle& style) {
  NSDictionary* attributes = @{
    NSForegroundColorAttributeName : nsColor(style.color),
    NSFontAttributeName : nsFont(style.font),
  };
  return [[NSAttributedString alloc] initWithString:nsString(title) attributes:attributes];
}

void applyButton(const Button& button, NSButton* target) {
  target.bordered = button.isBordered();
  target.bezelStyle = static_cast<NSBezelStyle>(button.bezelStyle());
  target.keyEquivalent = nsString(button.keyEquivalent());
  target.accessibilityLabel = nsString(button.accessibilityLabel());
  if (button.attributedStyle()) {
    target.attributedTitle = attributedTitle(button.title(), *button.attributedStyle());
  } else {
    target.title = nsString(button.title());
  }
}

NSImage* symbolImage(const SymbolImage& symbol) {
  NSImage* image = [NSImage imageWithSystemSymbolName:nsString(symbol.name)
                             accessibilityDescription:nsString(symbol.accessibilityDescription)];
  const auto style =
      [NSImageSymbolConfiguration configurationWithPointSize:symbol.pointSize
                                                      weight:nsFontWeight(symbol.weight)];
  return [image imageWithSymbolConfiguration:style];
}

void applyImageView(const ImageView& view, NSImageView* target) {
  target.image = view.image() ? symbolImage(*view.image()) : nil;
  target.contentTintColor = nsColor(view.contentTintColor());
  target.imageScaling = static_cast<NSImageScaling>(view.imageScaling());
}

/// None for what AppKit's own controls tell of themselves.
NSAccessibilityRole nsAccessibilityRole(AccessibilityRole role) {
  switch (role) {
    case AccessibilityRole::image:
      return NSAccessibilityImageRole;
    case AccessibilityRole::growArea:
      return NSAccessibilityGrowAreaRole;
    case AccessibilityRole::none:
    case AccessibilityRole::staticText:
    case AccessibilityRole::status:
    case AccessibilityRole::button:
      return nil;
  }
  return nil;
}

/// AppKit passes plain views over unless told that they mean something.
void applyPlainView(const View& view, NSView* target) {
  const NSAccessibilityRole role = nsAccessibilityRole(view.accessibilityRole());
  target.accessibilityElement = role != nil;
  target.accessibilityRole = role;
  target.accessibilityLabel = nsString(view.accessibilityLabel());
}

}  // namespace

NSView* makeViewPeer(View& view) {
  if (dynamic_cast<Label*>(&view) != nullptr) return [VLLabel labelWithString:@""];
  if (dynamic_cast<ImageView*>(&view) != nullptr) return [[VLImageView alloc] init];
  if (dynamic_cast<Button*>(&view) != nullptr) {
    return
        [[VLButton alloc] initWithButton:std::static_pointer_cast<Button>(view.shared_from_this())];
  }
  return [[VLView alloc] initWithView:view.weak_from_this()];
}

void applyAppearance(const View& view, NSView* realized) {
  realized.toolTip = view.toolTip().empty() ? nil : nsString(view.toolTip());
  realized.wantsLayer = view.wantsLayer();
  if (const auto* label = dynamic_cast<const Label*>(&view)) {
    applyLabel(*label, static_cast<NSTextField*>(realized));
  } else if (const auto* button = dynamic_cast<const Button*>(&view)) {
    applyButton(*button, static_cast<NSButton*>(realized));
  } else if (const auto* image = dynamic_cast<const ImageView*>(&view)) {
    applyImageView(*image, static_cast<NSImageView*>(realized));
  } else {
    applyPlainView(view, realized);
  }
  realized.needsDisplay = YES;
}

}  // namespace vistrel::platform::macos
