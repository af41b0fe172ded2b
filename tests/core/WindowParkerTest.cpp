#include <gtest/gtest.h>

#include "parking/WindowParker.h"
#include "tests/core/CoreTest.h"

namespace vistrel {
namespace {

using platform::AccessibilityElement;
using platform::AccessibilityError;
using platform::AccessibilityValue;
using Elements = std::vector<std::shared_ptr<AccessibilityElement>>;

constexpr std::int32_t program = 99;

class WindowParkerTest : public CoreTest {
 protected:
  platform::simulated::SimulatedAccessibility& accessibility() { return desktop_.accessibility(); }

  WindowID openWindow(std::int32_t pid) {
    return openSource([pid](ShareableWindow& window) {
             window.owningApplication = std::make_shared<platform::SharedApplication>(
                 platform::SharedApplication{"App", pid});
           })
        ->windowID;
  }
  static Elements elementsOf(std::int32_t pid) {
    const auto application = AccessibilityElement::forApplication(pid);
    return std::get<Elements>(application->copyAttributeValue("AXWindows").value);
  }
};

TEST_F(WindowParkerTest, FindsAWindowOfAProgramByItsNumber) {
  openWindow(program);
  const WindowID id = openWindow(program);
  const auto window = WindowParker::axWindow(id, program);
  ASSERT_NE(window, nullptr);
  WindowParker::move(*window, {5, 6});
  EXPECT_EQ(WindowParker::position(*window), (Point{5, 6}));
  EXPECT_THAT(desktop_.journal().calls(),
              ElementsAre("AXPosition of " + std::to_string(id) + ": 5,6"));
}

TEST_F(WindowParkerTest, FindsTheFirstOfSeveralWindowsOfOneNumber) {
  const WindowID id = openWindow(program);
  accessibility().scriptWindow(id, {.timesListed = 3});
  const Elements elements = elementsOf(program);
  ASSERT_EQ(elements.size(), 3U);
  accessibility().scriptWindowsOf(program, {AccessibilityError::success, elements});
  EXPECT_EQ(WindowParker::axWindow(id, program), elements.front());
}

TEST_F(WindowParkerTest, PassesOverWindowsThatDoNotTellTheirNumber) {
  const WindowID mute = openWindow(program);
  const WindowID id = openWindow(program);
  accessibility().scriptWindow(mute, {.hidesNumber = true});
  EXPECT_NE(WindowParker::axWindow(id, program), nullptr);
  EXPECT_EQ(WindowParker::axWindow(mute, program), nullptr);
  EXPECT_EQ(WindowParker::axWindow(0, program), nullptr);
}

TEST_F(WindowParkerTest, DoesNotFindTheWindowOfAnotherProgram) {
  const WindowID id = openWindow(program + 1);
  EXPECT_EQ(WindowParker::axWindow(id, program), nullptr);
}

TEST_F(WindowParkerTest, FindsNothingInAProgramThatListsNoWindows) {
  const WindowID id = openWindow(program);
  const Elements elements = elementsOf(program);
  const platform::AccessibilityAttributeOrError answers[] = {
      {AccessibilityError::cannotComplete, elements},
      {AccessibilityError::noValue, {}},
      {AccessibilityError::success, {}},
      {AccessibilityError::success, Elements()},
      {AccessibilityError::success, AccessibilityValue{Point{1, 2}}},
      {AccessibilityError::success, std::string("windows")},
  };
  for (const auto& answer : answers) {
    accessibility().scriptWindowsOf(program, answer);
    EXPECT_EQ(WindowParker::axWindow(id, program), nullptr);
  }
  accessibility().scriptWindowsOf(program, {AccessibilityError::success, elements});
  EXPECT_NE(WindowParker::axWindow(id, program), nullptr);
}

TEST_F(WindowParkerTest, ReadsNoPositionWhereThereIsNone) {
  const WindowID id = openWindow(program);
  const auto window = WindowParker::axWindow(id, program);
  const platform::AccessibilityAttributeOrError answers[] = {
      {AccessibilityError::failure, AccessibilityValue{Point{1, 2}}},
      {AccessibilityError::success, {}},
      {AccessibilityError::success, Elements()},
      {AccessibilityError::success, std::string("1,2")},
  };
  for (const auto& answer : answers) {
    accessibility().scriptWindow(id, {.position = answer});
    EXPECT_EQ(WindowParker::position(*window), std::nullopt);
  }
}

TEST_F(WindowParkerTest, ReadsAValueThatIsNoPointAsTheOrigin) {
  const WindowID id = openWindow(program);
  const auto window = WindowParker::axWindow(id, program);
  accessibility().scriptWindow(id,
                               {.position = {{AccessibilityError::success, AccessibilityValue()}}});
  EXPECT_EQ(WindowParker::position(*window), (Point{0, 0}));
}

TEST_F(WindowParkerTest, DoesNotMoveByAValueThatCannotBeMade) {
  const WindowID id = openWindow(program);
  const auto window = WindowParker::axWindow(id, program);
  accessibility().setFailsPointValues(true);
  WindowParker::move(*window, {5, 6});
  EXPECT_THAT(desktop_.journal().calls(), IsEmpty());
}

TEST_F(WindowParkerTest, OpensTheSettingsPageOfAccessibility) {
  desktop_.workspace().setOpensURLs(false);
  WindowParker::openAccessibilitySettings();
  EXPECT_THAT(
      desktop_.workspace().openedURLs(),
      ElementsAre("x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility"));
}

}  // namespace
}  // namespace vistrel
