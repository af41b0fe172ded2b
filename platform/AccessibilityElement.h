#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "platform/Geometry.h"
#include "platform/ScreenCapture.h"

namespace vistrel::platform {

// Windows of other programs by way of the desktop's Accessibility interface. Positions are in
// global display space: points, origin at the top-left corner of the main display, y growing
// downwards. Main thread.

/// Whether this program may look at other programs' windows and move them.
bool isProcessTrusted();
/// The same; when it may not and `prompt` is set, the system asks the person, later.
bool isProcessTrustedWithOptions(bool prompt);

/// Raw values are AXError's.
enum class AccessibilityError {
  success = 0,
  failure = -25200,
  illegalArgument = -25201,
  invalidElement = -25202,
  cannotComplete = -25204,
  attributeUnsupported = -25205,
  apiDisabled = -25211,
  noValue = -25212,
};

/// A window's list of its application.
inline constexpr const char* accessibilityWindows = "AXWindows";
/// Where the top-left corner of a window is.
inline constexpr const char* accessibilityPosition = "AXPosition";

class AccessibilityElement;

/// A value of the Accessibility value type (AXValue).
struct AccessibilityValue {
  /// None when it holds something else than a point.
  std::optional<Point> point;

  friend bool operator==(const AccessibilityValue&, const AccessibilityValue&) = default;
};

/// What an attribute holds: nothing, elements, an Accessibility value, or (here as text) an object
/// of any other type.
using AccessibilityAttribute =
    std::variant<std::monostate, std::vector<std::shared_ptr<AccessibilityElement>>,
                 AccessibilityValue, std::string>;

struct AccessibilityAttributeOrError {
  AccessibilityError error = AccessibilityError::success;
  AccessibilityAttribute value;  // nothing, unless `error` is success
};

/// A program, or one of its windows. What it stands for may be gone: calls then answer
/// `invalidElement`.
class AccessibilityElement {
 public:
  virtual ~AccessibilityElement() = default;

  /// Stands for whatever program has that process id, or for none. Never null.
  static std::shared_ptr<AccessibilityElement> forApplication(std::int32_t processID);

  virtual AccessibilityAttributeOrError copyAttributeValue(const std::string& attribute) = 0;
  /// Returns once the program has been told; it may still not do it.
  virtual AccessibilityError setAttributeValue(const std::string& attribute,
                                               const AccessibilityValue& value) = 0;
};

/// A value to set a position with; none when it cannot be made.
std::optional<AccessibilityValue> makePointValue(Point point);

/// Writes the window number of a window's element to `number`. Valid until the process ends.
using GetWindowNumber = AccessibilityError (*)(AccessibilityElement& element, WindowID* number);

/// The function of that name, which is no documented part of the system; null when it is missing.
/// The one that there may be is "_AXUIElementGetWindow".
GetWindowNumber windowNumberFunctionNamed(const std::string& symbol);

}  // namespace vistrel::platform
