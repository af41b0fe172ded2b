#include <filesystem>

#include "tests/linux/wayland/KWinTest.h"

namespace vistrel::platform::linux_desktop {
namespace {

using testbed::TestWindow;

/// Moves windows as *Keep Source Awake* does.
class KWinMoverTest : public KWinTest {
 protected:
  static constexpr Point corner{1240, 984};

  /// Null when the program does not reach it.
  std::shared_ptr<AccessibilityElement> element(const std::string& title) {
    const auto record = titled(title);
    const auto numberOf =
        session_->otherWindows->windowNumberFunctionNamed("_AXUIElementGetWindow");
    auto [error, windows] =
        session_->otherWindows->applicationElement(record->owningApplication->processID)
            ->copyAttributeValue(accessibilityWindows);
    for (const auto& each : std::get<std::vector<std::shared_ptr<AccessibilityElement>>>(windows)) {
      WindowID number = 0;
      if (numberOf(*each, &number) == AccessibilityError::success && number == record->windowID) {
        return each;
      }
    }
    return nullptr;
  }
  static std::optional<Point> position(AccessibilityElement& window) {
    const auto [error, value] = window.copyAttributeValue(accessibilityPosition);
    const auto* const point = std::get_if<AccessibilityValue>(&value);
    return point == nullptr ? std::nullopt : point->point;
  }
  static void move(AccessibilityElement& window, Point position) {
    EXPECT_EQ(window.setAttributeValue(accessibilityPosition, {position}),
              AccessibilityError::success);
  }
  std::string state(const std::string& title, const std::string& property) {
    return kwin_.run("tell(win('" + title + "')." + property + ")");
  }
};

TEST_F(KWinMoverTest, TakesANativeWindowToTheCornerAndBackExactly) {
  const NativeWindow window(desktop_.environment(), {.title = "Source"});
  kwin_.moveTo("Source", {123, 77});
  const auto source = element("Source");
  ASSERT_NE(source, nullptr);
  EXPECT_EQ(position(*source), (Point{123, 77}));
  move(*source, corner);
  EXPECT_EQ(kwin_.frameOf("Source"), (testbed::Rect{1240, 984, 400, 300}));
  move(*source, {123, 77});
  EXPECT_EQ(kwin_.frameOf("Source"), (testbed::Rect{123, 77, 400, 300}));
}

TEST_F(KWinMoverTest, HasTheInsideOfADecoratedWindowInTheCorner) {
  const NativeWindow window(desktop_.environment(), {.title = "Source", .isDecorated = true});
  kwin_.moveTo("Source", {123, 77});
  const auto frame = kwin_.frameOf("Source");
  const auto source = element("Source");
  ASSERT_NE(source, nullptr);
  const auto home = position(*source);
  EXPECT_EQ(home, titled("Source")->frame.origin);
  move(*source, corner);
  EXPECT_EQ(position(*source), corner);
  EXPECT_EQ(kwin_.frameOf("Source").y, 984 - (frame.height - 300));
  move(*source, *home);
  EXPECT_EQ(kwin_.frameOf("Source"), frame);
}

TEST_F(KWinMoverTest, LeavesAMaximisedWindowMaximisedAndOneThatFillsTheScreenSo) {
  NativeWindow window(desktop_.environment(), {.title = "Source"});
  kwin_.moveTo("Source", {123, 77});
  for (const std::string property : {"maximized", "fullScreen"}) {
    if (property == "maximized") {
      window.maximise(true);
    } else {
      window.fillScreen(true);
    }
    ASSERT_TRUE(eventually([&] { return kwin_.frameOf("Source").width == 1280; }));
    const auto filled = kwin_.frameOf("Source");
    const auto source = element("Source");
    const auto home = position(*source);
    move(*source, corner);
    EXPECT_EQ(kwin_.frameOf("Source"), (testbed::Rect{1240, 984, filled.width, filled.height}));
    move(*source, *home);
    EXPECT_EQ(kwin_.frameOf("Source"), filled);
    if (property == "maximized") {
      window.maximise(false);
    } else {
      window.fillScreen(false);
    }
    EXPECT_TRUE(eventually([&] {
      return kwin_.frameOf("Source") == testbed::Rect{123, 77, 400, 300};
    })) << kwin_.frameOf("Source");
  }
}

TEST_F(KWinMoverTest, ReachesTheWindowsOfXAsBefore) {
  const TestWindow window(desktop_.xName(), {.title = "Of X", .area = {100, 100, 400, 300}});
  const auto source = element("Of X");
  ASSERT_NE(source, nullptr);
  const auto home = position(*source);
  move(*source, {300, 200});
  EXPECT_TRUE(eventually([&] { return kwin_.frameOf("Of X").x == 300; }));
  move(*source, *home);
}

TEST_F(KWinMoverTest, HasParkedWindowsAtHomeWhileTheSessionEndsAndWhenTheProgramDoes) {
  const NativeWindow window(desktop_.environment(), {.title = "Source"});
  kwin_.moveTo("Source", {123, 77});
  const auto source = element("Source");
  position(*source);
  move(*source, corner);
  session_->parkedSources->sendAllHome();
  EXPECT_EQ(kwin_.frameOf("Source").x, 123);
  session_->parkedSources->parkAgain();
  EXPECT_EQ(kwin_.frameOf("Source").x, 1240);
  session_->parkedSources->leaveHomeFirst();
  EXPECT_EQ(kwin_.frameOf("Source"), (testbed::Rect{123, 77, 400, 300}));
}

TEST_F(KWinMoverTest, BringsHomeAtItsStartWhatACrashHasLeft) {
  const NativeWindow window(desktop_.environment(), {.title = "Source"});
  const NativeWindow movedSince(desktop_.environment(), {.title = "Moved since"});
  kwin_.moveTo("Source", {123, 77});
  for (const std::string title : {"Source", "Moved since"}) {
    const auto source = element(title);
    position(*source);
    move(*source, corner);
  }
  // As a crash does: the record stays, and the windows where they are.
  const auto record = desktop_.home() / "runtime" / "vistrel-parked-wayland-0";
  const auto left = desktop_.home() / "left";
  std::filesystem::copy_file(record, left);
  end();
  kwin_.moveTo("Source", {1240, 984});
  kwin_.moveTo("Moved since", {300, 300});
  std::filesystem::copy_file(left, record, std::filesystem::copy_options::overwrite_existing);

  begin();
  EXPECT_EQ(kwin_.frameOf("Source"), (testbed::Rect{123, 77, 400, 300}));
  EXPECT_EQ(kwin_.frameOf("Moved since").x, 300);
  EXPECT_EQ(std::filesystem::file_size(record), 0U);
}

TEST_F(KWinMoverTest, KnowsWhenAWindowHasGone) {
  NativeWindow window(desktop_.environment(), {.title = "Source"});
  const auto source = element("Source");
  window.close();
  EXPECT_EQ(source->copyAttributeValue(accessibilityPosition).error,
            AccessibilityError::invalidElement);
  EXPECT_EQ(source->setAttributeValue(accessibilityPosition, {corner}),
            AccessibilityError::invalidElement);
}

TEST_F(KWinMoverTest, BringsAProgramWithNativeWindowsToTheFront) {
  NativeWindow window(desktop_.environment(), {.title = "Source"});
  const NativeWindow above(desktop_.environment(), {.title = "Above"});
  const auto process = titled("Source")->owningApplication->processID;
  EXPECT_TRUE(session_->windowActivation->hasWindows(process));
  EXPECT_TRUE(session_->windowActivation->activateWindows(process));
  EXPECT_EQ(state("Source", "active"), "true");
  EXPECT_EQ(titles().front(), "Source");

  window.minimise();
  kwin_.run("win('Source').desktop = 2");
  EXPECT_TRUE(session_->windowActivation->activateWindows(process));
  EXPECT_EQ(state("Source", "active"), "true");
  EXPECT_EQ(state("Source", "minimized"), "false");
  EXPECT_EQ(kwin_.run("tell(workspace.currentDesktop)"), "2");
}

TEST_F(KWinMoverTest, KnowsNoWindowsOfAProcessThatHasNone) {
  EXPECT_FALSE(session_->windowActivation->hasWindows(1));
  EXPECT_FALSE(session_->windowActivation->activateWindows(1));
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
