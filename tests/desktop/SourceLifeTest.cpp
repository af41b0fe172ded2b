#include "tests/desktop/DesktopTest.h"

namespace vistrel::testbed {
namespace {

constexpr Quadrants otherColours{yellow, blue, red, green};

class SourceLife : public DesktopTest {
 protected:
  PanelOnScreen mirrorAndSee(const Quadrants& picture) {
    const PanelOnScreen panel = mirrorOnlySource();
    EXPECT_TRUE(eventually([&] { return panel.shows(picture); }));
    return panel;
  }
  void expectLastPictureToStay(const PanelOnScreen& panel) {
    EXPECT_TRUE(eventually([&] { return panel.dot() == Dot::stale; }));
    EXPECT_TRUE(panel.shows(fourColours));
    const Point grip = panel.grip();
    input_.drag(grip, {grip.x + 60, grip.y + 30});
    EXPECT_TRUE(eventually([&] { return panel.area().width == 400; }));
    EXPECT_TRUE(eventually([&] { return panel.shows(fourColours); }));
  }
};

TEST_F(SourceLife, TheLastPictureStaysWhenTheSourceCloses) {
  const auto source = openSource();
  const PanelOnScreen panel = mirrorAndSee(fourColours);
  source->destroy();
  expectLastPictureToStay(panel);
}

TEST_F(SourceLife, TheLastPictureStaysWhileTheSourceIsMinimisedAndMovesAgainAfterwards) {
  const auto source = openSource();
  const PanelOnScreen panel = mirrorAndSee(fourColours);
  source->minimise();
  expectLastPictureToStay(panel);
  source->map();
  source->show(otherColours);
  EXPECT_TRUE(eventually([&] { return panel.shows(otherColours); }));
}

TEST_F(SourceLife, TheLastPictureStaysWhileTheSourceIsOnAnotherDesktop) {
  const auto source = openSource();
  const PanelOnScreen panel = mirrorAndSee(fourColours);
  constexpr std::uint32_t secondDesktop = 1;
  connection_.sendToManager(source->id(), "_NET_WM_DESKTOP", {secondDesktop, byPerson});
  ASSERT_TRUE(eventually([&] { return !isViewable(connection_, source->id()); }));
  expectLastPictureToStay(panel);
  connection_.sendToManager(source->id(), "_NET_WM_DESKTOP", {0, byPerson});
  ASSERT_TRUE(eventually([&] { return isViewable(connection_, source->id()); }));
  source->show(otherColours);
  EXPECT_TRUE(eventually([&] { return panel.shows(otherColours); }));
}

TEST_F(SourceLife, ATipOverThePictureTellsThatTheSourceIsOnAnotherDesktop) {
  const auto source = openSource();
  const PanelOnScreen panel = mirrorAndSee(fourColours);
  connection_.sendToManager(source->id(), "_NET_WM_DESKTOP", {1, byPerson});
  ASSERT_TRUE(eventually([&] { return panel.dot() == Dot::stale; }));
  input_.moveTo(panel.contents().centre());
  // Out of the manager's hands as menus are; the picture has no tip of its own.
  EXPECT_TRUE(eventually([&] { return menusOnScreen().size() == 1; }));
}

TEST_F(SourceLife, ASourceThatWasUnmappedWhenItsMirrorOpenedIsShownOnceItIsMapped) {
  const auto source = openSource();
  startVistrel();
  vistrel_->pickerRows(1);
  source->minimise();
  const PanelOnScreen panel = mirrorRow(0, 1, 1);
  EXPECT_TRUE(eventually([&] { return panel.dot() == Dot::stale; }));
  source->map();
  EXPECT_TRUE(eventually([&] { return panel.shows(fourColours); }));
}

TEST_F(SourceLife, AWindowThatClosedBeforeItWasChosenIsReportedInThePanel) {
  const auto source = openSource();
  startVistrel();
  vistrel_->pickerRows(1);
  source->destroy();
  const PanelOnScreen panel = mirrorRow(0, 1, 1);
  EXPECT_TRUE(eventually([&] { return panel.dot() == Dot::failed; }));
  EXPECT_TRUE(eventually([&] { return panel.dot() == Dot::stale; }))
      << "freshness knows nothing of errors";
  const Picture text = screen_.read(panel.contents());
  int bright = 0;
  for (int y = 0; y < text.height(); ++y) {
    for (int x = 20; x < text.width() - 20; ++x) {
      bright += text.at(x, y).green > 150 ? 1 : 0;
    }
  }
  EXPECT_GT(bright, 100) << "no status text";
}

}  // namespace
}  // namespace vistrel::testbed
