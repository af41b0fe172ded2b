#include "platform/AccessibilityElement.h"
#include "tests/contract/ContractTest.h"

namespace vistrel::contract {
namespace {

using platform::AccessibilityElement;
using platform::AccessibilityError;
using platform::AccessibilityValue;
using platform::Point;
using Elements = std::vector<std::shared_ptr<AccessibilityElement>>;

/// Windows of other programs by Accessibility.
class OtherWindowsContract : public ContractTest {
 protected:
  static Elements windowsOf(std::int32_t processID) {
    const auto [error, value] =
        AccessibilityElement::forApplication(processID)->copyAttributeValue("AXWindows");
    const auto* const elements = std::get_if<Elements>(&value);
    return error != AccessibilityError::success || elements == nullptr ? Elements() : *elements;
  }
  std::int32_t processOf(const SourceWindow& source) {
    const auto record = listed(source.id());
    return record && record->owningApplication ? record->owningApplication->processID : -1;
  }
  /// Null when it is not among its program's windows.
  std::shared_ptr<AccessibilityElement> elementOf(const SourceWindow& source) {
    const auto getWindow = platform::windowNumberFunctionNamed("_AXUIElementGetWindow");
    for (const auto& window : windowsOf(processOf(source))) {
      platform::WindowID number = 0;
      if (getWindow(*window, &number) == AccessibilityError::success && number == source.id()) {
        return window;
      }
    }
    return nullptr;
  }
  static std::optional<Point> positionOf(AccessibilityElement& window) {
    const auto [error, value] = window.copyAttributeValue("AXPosition");
    const auto* const position = std::get_if<AccessibilityValue>(&value);
    return error != AccessibilityError::success || position == nullptr ? std::nullopt
                                                                       : position->point;
  }
  static AccessibilityError move(AccessibilityElement& window, Point position) {
    return window.setAttributeValue("AXPosition", platform::makePointValue(position).value());
  }
};

TEST_F(OtherWindowsContract, MayBeReached) {
  EXPECT_TRUE(platform::isProcessTrusted());
  EXPECT_TRUE(platform::isProcessTrustedWithOptions(true));
  EXPECT_EQ(platform::windowNumberFunctionNamed("_NoSuchFunction"), nullptr);
}

TEST_F(OtherWindowsContract, AreWhereTheListingHasThem) {
  const auto first = bed_->openSource({.title = "First"});
  const auto second = bed_->openSource({.title = "Second"});
  for (const auto* source : {first.get(), second.get()}) {
    const auto element = elementOf(*source);
    ASSERT_NE(element, nullptr);
    EXPECT_EQ(positionOf(*element), listed(source->id())->frame.origin);
  }
}

TEST_F(OtherWindowsContract, GoWhereTheyAreToldAndBack) {
  const auto source = bed_->openSource({});
  const auto element = elementOf(*source);
  ASSERT_NE(element, nullptr);
  const Point origin = listed(source->id())->frame.origin;
  for (const Point place : {Point{300, 200}, Point{301, 57}, origin}) {
    EXPECT_EQ(move(*element, place), AccessibilityError::success);
    EXPECT_TRUE(turnUntil([&] { return positionOf(*element) == place; }));
    EXPECT_TRUE(turnUntil([&] { return listed(source->id())->frame.origin == place; }));
  }
  EXPECT_EQ(listed(source->id())->frame.size, source->frame().size);
}

TEST_F(OtherWindowsContract, OfNoProgramAreNotThere) {
  EXPECT_TRUE(windowsOf(0).empty());
  EXPECT_TRUE(windowsOf(-1).empty());
  EXPECT_TRUE(windowsOf(2147483647).empty());
}

TEST_F(OtherWindowsContract, ThatAreGoneCannotBeAskedOrMoved) {
  const auto source = bed_->openSource({});
  const auto element = elementOf(*source);
  ASSERT_NE(element, nullptr);
  source->close();
  EXPECT_TRUE(turnUntil([&] { return positionOf(*element) == std::nullopt; }));
  EXPECT_EQ(element->copyAttributeValue("AXPosition").error, AccessibilityError::invalidElement);
  EXPECT_EQ(move(*element, {300, 200}), AccessibilityError::invalidElement);
}

TEST_F(OtherWindowsContract, HaveOnlyAttributesThatTheyHave) {
  const auto source = bed_->openSource({});
  const auto element = elementOf(*source);
  ASSERT_NE(element, nullptr);
  EXPECT_EQ(element->copyAttributeValue("AXWindows").error,
            AccessibilityError::attributeUnsupported);
  EXPECT_EQ(element->setAttributeValue("AXPosition", AccessibilityValue()),
            AccessibilityError::illegalArgument);
  platform::WindowID number = 0;
  const auto application = AccessibilityElement::forApplication(processOf(*source));
  const auto getWindow = platform::windowNumberFunctionNamed("_AXUIElementGetWindow");
  EXPECT_EQ(getWindow(*application, &number), AccessibilityError::illegalArgument);
}

}  // namespace
}  // namespace vistrel::contract
