#include "platform/macos/Conversions.h"

namespace vistrel::platform::macos {

CGPoint cgPoint(Point point) { return {point.x, point.y}; }
CGSize cgSize(Size size) { return {size.width, size.height}; }
CGRect cgRect(const Rect& rect) { return {cgPoint(rect.origin), cgSize(rect.size)}; }

Point corePoint(CGPoint point) { return {point.x, point.y}; }

Rect coreRect(CGRect rect) { return {corePoint(rect.origin), {rect.size.width, rect.size.height}}; }

NSString* nsString(const std::string& text) {
  NSString* converted = [NSString stringWithUTF8String:text.c_str()];
  return converted != nil ? converted : @"";
}

std::string utf8(NSString* text) {
  const char* bytes = text.UTF8String;
  return bytes != nullptr ? bytes : "";
}

NSColor* nsColor(const Color& color) {
  switch (color.system) {
    case SystemColor::label:
      return NSColor.labelColor;
    case SystemColor::secondaryLabel:
      return NSColor.secondaryLabelColor;
    case SystemColor::systemRed:
      return NSColor.systemRedColor;
    case SystemColor::systemGreen:
      return NSColor.systemGreenColor;
    case SystemColor::none:
      break;
  }
  return [NSColor colorWithSRGBRed:color.red green:color.green blue:color.blue alpha:color.alpha];
}

NSFont* nsFont(const Font& font) {
  return [NSFont systemFontOfSize:font.pointSize weight:nsFontWeight(font.weight)];
}

NSFontWeight nsFontWeight(FontWeight weight) {
  switch (weight) {
    case FontWeight::semibold:
      return NSFontWeightSemibold;
    case FontWeight::bold:
      return NSFontWeightBold;
    case FontWeight::regular:
      break;
  }
  return NSFontWeightRegular;
}

NSTextAlignment nsTextAlignment(TextAlignment alignment) {
  return alignment == TextAlignment::center ? NSTextAlignmentCenter : NSTextAlignmentLeft;
}

std::optional<Error> coreError(NSError* error) {
  if (error == nil) return std::nullopt;
  return Error{utf8(error.localizedDescription)};
}

}  // namespace vistrel::platform::macos
