#include "platform/macos/views/AppKitGraphicsContext.h"

#import <AppKit/AppKit.h>

#include <algorithm>

#include "platform/macos/Conversions.h"

namespace vistrel::platform::macos {

namespace {

NSAttributedString* styledText(const std::string& text, const TextStyle& style) {
  NSMutableParagraphStyle* paragraph = [[NSMutableParagraphStyle alloc] init];
  paragraph.alignment = nsTextAlignment(style.alignment);
  paragraph.lineBreakMode = static_cast<NSLineBreakMode>(style.lineBreakMode);
  NSDictionary* attributes = @{
    NSForegroundColorAttributeName : nsColor(style.color),
    NSFontAttributeName : nsFont(style.font),
    NSParagraphStyleAttributeName : paragraph,
  };
  return [[NSAttributedString alloc] initWithString:nsString(text) attributes:attributes];
}

constexpr NSStringDrawingOptions textOptions =
    NSStringDrawingUsesLineFragmentOrigin | NSStringDrawingTruncatesLastVisibleLine;

/// How high `text` becomes in `area` with no more lines than its style allows.
double heightOfText(NSAttributedString* text, const Rect& area, const TextStyle& style) {
  double room = area.height();
  if (style.maximumNumberOfLines > 0) {
    room = std::min(room, style.maximumNumberOfLines * [styledText("x", style) size].height);
  }
  return [text boundingRectWithSize:cgSize({area.width(), room}) options:textOptions].size.height;
}

/// `size`, made smaller where it does not fit, in the middle of `area`.
CGRect centered(CGSize size, const Rect& area) {
  const double scale = std::min({1.0, area.width() / size.width, area.height() / size.height});
  const Size fitted{size.width * scale, size.height * scale};
  return cgRect(rect(area.midX() - fitted.width / 2, area.midY() - fitted.height / 2, fitted.width,
                     fitted.height));
}

}  // namespace

void AppKitGraphicsContext::strokePath(const Path& path, double lineWidth, Color color) {
  NSBezierPath* stroke = [NSBezierPath bezierPath];
  for (const auto& [first, second] : path.segments) {
    [stroke moveToPoint:cgPoint(first)];
    [stroke lineToPoint:cgPoint(second)];
  }
  stroke.lineWidth = lineWidth;
  [nsColor(color) setStroke];
  [stroke stroke];
}

void AppKitGraphicsContext::drawText(const std::string& text, const Rect& area,
                                     const TextStyle& style) {
  NSAttributedString* styled = styledText(text, style);
  const double height = heightOfText(styled, area, style);
  const Rect lines = rect(area.minX(), area.midY() - height / 2, area.width(), height);
  [styled drawWithRect:cgRect(lines) options:textOptions];
}

void AppKitGraphicsContext::drawSymbol(const std::string& name, const Rect& area, Color tint) {
  NSImage* symbol = [NSImage imageWithSystemSymbolName:nsString(name) accessibilityDescription:nil];
  const auto tinted =
      [NSImageSymbolConfiguration configurationWithPaletteColors:@[ nsColor(tint) ]];
  symbol = [symbol imageWithSymbolConfiguration:tinted];
  if (symbol == nil) return;
  [symbol drawInRect:centered(symbol.size, area)
            fromRect:NSRect()
           operation:NSCompositingOperationSourceOver
            fraction:1
      respectFlipped:YES
               hints:nil];
}

}  // namespace vistrel::platform::macos
