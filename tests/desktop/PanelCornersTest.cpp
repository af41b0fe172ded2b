#include "tests/desktop/DesktopTest.h"

namespace vistrel::testbed {
namespace {

class PanelCorners : public DesktopTest {
 protected:
  PanelCorners() : DesktopTest({.windowManager = WindowManager::xfwm4}) {}

  /// Another of the same manager takes the session over.
  std::unique_ptr<ChildProcess> replaceManager(WindowManager manager) {
    ChildProcess::Command command{.arguments = commandOf(manager),
                                  .environment = display_.environment()};
    command.arguments.emplace_back("--replace");
    command.environment.emplace_back("NO_AT_BRIDGE=1");
    return std::make_unique<ChildProcess>(command);
  }
  /// The white of the window below and the dark of the panel meet in pixels between the two.
  bool isSmooth(const PanelOnScreen& panel) const {
    const Rect area = panel.area();
    const Picture corner = screen_.read({area.x, area.y, 8, 8});
    for (int y = 0; y < corner.height(); ++y) {
      for (int x = 0; x < corner.width(); ++x) {
        if (const int bright = corner.at(x, y).green; bright > 80 && bright < 200) {
          return true;
        }
      }
    }
    return false;
  }
  bool isRound(const PanelOnScreen& panel) const {
    const Rect area = panel.area();
    return screen_.pixel({area.x, area.y}).green > 120 &&
           screen_.pixel({area.x + 8, area.y + 8}).green < 80;
  }
};

TEST_F(PanelCorners, AreSmoothWhileTheDisplayIsComposited) {
  const auto source = openSource();
  const PanelOnScreen panel = mirrorOnlySource();
  const auto sheet = openSource({.title = "Sheet",
                                 .area = {0, 0, 700, 450},
                                 .picture = Quadrants::uniform(white),
                                 .decorated = false});
  ASSERT_TRUE(eventually([&] { return isRound(panel) && panel.shows(fourColours); }));
  EXPECT_FALSE(isSmooth(panel));

  auto manager = replaceManager(WindowManager::xfwm4Compositing);
  EXPECT_TRUE(
      eventually([&] { return isSmooth(panel) && isRound(panel) && panel.shows(fourColours); }));
  // Else a compositor that shades what lies around the window leaves the corners bright.
  input_.moveTo({panel.area().x, panel.area().y});
  EXPECT_TRUE(eventually([&] {
    return pointerOn(connection_).topLevel == topLevelOf(connection_, sheet->id());
  })) << "the corner belongs to the panel";
  const auto former = std::move(manager);
  manager = replaceManager(WindowManager::xfwm4);
  EXPECT_TRUE(
      eventually([&] { return !isSmooth(panel) && isRound(panel) && panel.shows(fourColours); }));
}

}  // namespace
}  // namespace vistrel::testbed
