#include "tests/desktop/DesktopTest.h"
#include "tests/support/LittleMemory.h"

namespace vistrel::testbed {
namespace {

constexpr Quadrants otherColours{yellow, blue, red, green};

/// On a screen where a panel can become larger than the memory that there is.
class ProgramWithLittleMemory : public DesktopTest {
 protected:
  /// Neither for a thread's stack nor for a large panel.
  static constexpr std::size_t bytesLeft = 4'000'000;

  ProgramWithLittleMemory() : DesktopTest({.width = 2600, .height = 2000}) {}
};

TEST_F(ProgramWithLittleMemory, GoesOnWithAMirrorWhosePanelCannotBePaintedAnyLarger) {
  const auto source = openSource();
  const PanelOnScreen panel = mirrorOnlySource();
  ASSERT_TRUE(eventually([&] { return panel.shows(fourColours); }));
  {
    const LittleMemory little(vistrel_->process().pid(), bytesLeft);
    const Point grip = panel.grip();
    input_.drag(grip, {grip.x + 1900, grip.y + 1100});
    ASSERT_TRUE(eventually([&] { return panel.area().width > 1900; }));
    source->show(otherColours);
    const Rect former = PanelOnScreen::computedArea(sourceArea, firstPanel);
    EXPECT_TRUE(eventually([&] {
      return similar(screen_.read(former).at(60, 80), otherColours.topLeft, 8);
    })) << "the mirror goes on";
  }
  EXPECT_TRUE(eventually([&] { return panel.shows(otherColours); }));
}

TEST_F(ProgramWithLittleMemory, SaysInThePanelThatAMirrorCannotStart) {
  const auto source = openSource();
  startVistrel();
  vistrel_->pickerRows(1);
  const LittleMemory little(vistrel_->process().pid(), bytesLeft);
  const PanelOnScreen panel = mirrorRow(0, 1, 1);
  EXPECT_TRUE(eventually([&] { return panel.dot() == Dot::failed; }));
}

}  // namespace
}  // namespace vistrel::testbed
