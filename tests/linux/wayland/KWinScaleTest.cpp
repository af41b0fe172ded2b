#include "tests/linux/wayland/KWinTest.h"

namespace vistrel::platform::linux_desktop {
namespace {

using testbed::TestWindow;
using ::testing::ElementsAre;

/// Two outputs of 1280 × 1024 points side by side, which show things larger.
class KWinAtScale : public KWinTest, public ::testing::WithParamInterface<double> {
 protected:
  KWinAtScale() : KWinTest({.scale = GetParam(), .outputs = 2}) {}

  std::shared_ptr<AccessibilityElement> elementOf(const WindowRecord& record) {
    const auto answer =
        session_->otherWindows->applicationElement(record->owningApplication->processID)
            ->copyAttributeValue(accessibilityWindows);
    return std::get<std::vector<std::shared_ptr<AccessibilityElement>>>(answer.value).at(0);
  }
};

INSTANTIATE_TEST_SUITE_P(Any, KWinAtScale, ::testing::Values(1.5, 2));

/// Panels are X's windows, placed by X's monitors; native ones are KWin's, as is the corner.
TEST_P(KWinAtScale, HasWindowsOfXAndNativeOnesInTheSamePoints) {
  std::vector<PixelRect> monitors;
  for (const auto& each : session_->monitors->list()) monitors.push_back(each.pixels);
  EXPECT_THAT(monitors, ElementsAre(PixelRect{0, 0, 1280, 1024}, PixelRect{1280, 0, 1280, 1024}));

  const TestWindow panel(desktop_.xName(),
                         {.title = "Panel", .area = {2000, 200, 340, 196}, .decorated = false});
  EXPECT_TRUE(eventually([&] {
    return kwin_.frameOf("Panel") == testbed::Rect{2000, 200, 340, 196};
  })) << kwin_.frameOf("Panel");

  const NativeWindow native(desktop_.environment(), {.title = "Native", .isDecorated = true});
  kwin_.run("win('Native').frameGeometry = {x: 1500 + 2 / 3, y: 100.5, width: 400, height: 337}");
  const auto frame = [&] { return kwin_.run("tell(win('Native').frameGeometry)"); };
  const auto home = frame();
  const auto record = titled("Native");
  EXPECT_EQ(record->frame.size, (Size{400, 300}));
  const auto source = elementOf(record);
  const auto position = source->copyAttributeValue(accessibilityPosition);
  source->setAttributeValue(accessibilityPosition, {Point{1240, 984}});
  EXPECT_EQ(titled("Native")->frame.origin, (Point{1240, 984}));
  source->setAttributeValue(accessibilityPosition, std::get<AccessibilityValue>(position.value));
  EXPECT_EQ(frame(), home);
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
