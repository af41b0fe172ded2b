#pragma once

#import <AppKit/AppKit.h>

#include <optional>
#include <string>

#include "platform/Color.h"
#include "platform/Geometry.h"
#include "platform/GraphicsContext.h"
#include "platform/ScreenCapture.h"

namespace vistrel::platform::macos {

// Values of the core to values of the frameworks and back. Coordinates keep their space: both sides
// measure screens from the bottom-left of the primary one, windows from their bottom-left, and the
// capture service from the top-left of the main display.

CGRect cgRect(const Rect& rect);
CGSize cgSize(Size size);
CGPoint cgPoint(Point point);
Rect coreRect(CGRect rect);
Point corePoint(CGPoint point);

/// An empty string where `text` is not UTF-8.
NSString* nsString(const std::string& text);
std::string utf8(NSString* text);

/// A colour of the theme where the core names one, else the sRGB colour.
NSColor* nsColor(const Color& color);
NSFont* nsFont(const Font& font);
NSFontWeight nsFontWeight(FontWeight weight);
NSTextAlignment nsTextAlignment(TextAlignment alignment);

/// None when there is no error.
std::optional<Error> coreError(NSError* error);

}  // namespace vistrel::platform::macos
