#include "platform/macos/views/ControlState.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "platform/macos/Conversions.h"
#include "platform/macos/views/TableViews.h"
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
  if (!label.identifier().empty()) target.identifier = nsString(label.identifier());
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

void applyScrollView(const ScrollView& view, NSScrollView* target) {
  target.hasVerticalScroller = view.hasVerticalScroller();
  target.borderType = static_cast<NSBorderType>(view.borderType());
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

/// A control as AppKit makes it, which does nothing yet; nil for a table.
NSControl* makeControl(const Control& control) {
  if (dynamic_cast<const Label*>(&control) != nullptr) return [VLLabel labelWithString:@""];
  if (dynamic_cast<const ImageView*>(&control) != nullptr) return [[VLImageView alloc] init];
  if (dynamic_cast<const Button*>(&control) != nullptr) {
    return [VLButton buttonWithTitle:@"" target:nil action:nil];
  }
  return nil;
}

NSView* makeControlPeer(const std::shared_ptr<Control>& control) {
  if (const auto table = std::dynamic_pointer_cast<TableView>(control)) {
    return [[VLTableView alloc] initWithTable:table];
  }
  NSControl* made = makeControl(*control);
  if (const auto button = std::dynamic_pointer_cast<Button>(control)) {
    [static_cast<VLButton*>(made) clickButton:button];
  }
  return made;
}

}  // namespace

NSView* makeViewPeer(View& view) {
  const auto shared = view.shared_from_this();
  if (const auto control = std::dynamic_pointer_cast<Control>(shared)) {
    return makeControlPeer(control);
  }
  if (std::dynamic_pointer_cast<ScrollView>(shared)) return [[NSScrollView alloc] init];
  if (auto cell = std::dynamic_pointer_cast<TableCellView>(shared)) {
    return [[VLTableCellView alloc] initWithCell:std::move(cell)];
  }
  return [[VLView alloc] initWithView:shared];
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
  } else if (const auto* scrollView = dynamic_cast<const ScrollView*>(&view)) {
    applyScrollView(*scrollView, static_cast<NSScrollView*>(realized));
  } else if ([realized isKindOfClass:VLView.class]) {
    applyPlainView(view, realized);
  }
  realized.needsDisplay = YES;
}

Size intrinsicContentSize(const Control& control) {
  NSView* measured = makeControl(control);
  if (measured == nil) return {};
  applyAppearance(control, measured);
  const CGSize size = measured.intrinsicContentSize;
  // AppKit answers a negative number for a side that has no length of its own.
  return {std::max(size.width, 0.0), std::max(size.height, 0.0)};
}

}  // namespace vistrel::platform::macos
