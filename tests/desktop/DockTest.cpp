#include "tests/desktop/DesktopTest.h"
#include "tests/support/Monitors.h"

namespace vistrel::testbed {
namespace {

/// As `_NET_WM_STRUT_PARTIAL` has it: depth, and along the edge from the pixel `first` up to `end`.
std::vector<std::uint32_t> leftStrut(std::uint32_t depth, std::uint32_t first, std::uint32_t end) {
  return {depth, 0, 0, 0, first, end - 1, 0, 0, 0, 0, 0, 0};
}
std::vector<std::uint32_t> topStrut(std::uint32_t depth, std::uint32_t end) {
  return {0, 0, depth, 0, 0, 0, 0, 0, 0, end - 1, 0, 0};
}

/// A person's desktop with docks, or bars, at its edges.
class Docks : public DesktopTest {
 protected:
  explicit Docks(const PrivateDisplay::Options& options = {}) : DesktopTest(options) {}

  std::unique_ptr<TestWindow> openDock(Rect area, const std::vector<std::uint32_t>& struts) {
    return openSource({.title = "Dock", .area = area, .decorated = false, .struts = struts});
  }

  std::vector<std::uint32_t> workArea() const {
    return connection_.numbers(connection_.root(), "_NET_WORKAREA");
  }

  /// Drags the panel to `proposed` and, since the program hears of changes a little later, trembles
  /// there until it has jumped to `snapped`.
  ::testing::AssertionResult snaps(const PanelOnScreen& panel, Point proposed, Point snapped) {
    const Rect start = panel.area();
    const Point from = panel.contents().centre();
    const auto moveHand = [&](int aside) {
      input_.moveTo({from.x + proposed.x - start.x + aside, from.y + proposed.y - start.y + aside});
    };
    // On an axis without a line near it the panel goes with the hand.
    const auto hasSnapped = [&](int aside) {
      const Rect area = panel.area();
      return area.x == (proposed.x == snapped.x ? proposed.x + aside : snapped.x) &&
             area.y == (proposed.y == snapped.y ? proposed.y + aside : snapped.y);
    };
    input_.moveTo(from);
    input_.beginDrag();
    int tremor = 0;
    const bool isThere = eventually([&] {
      tremor = 1 - tremor;
      moveHand(tremor);
      return hasSnapped(0) || hasSnapped(1);
    });
    // Where the hand has not been before: once the panel is there, no older move is on its way,
    // which would have it jump by what the docks are next.
    constexpr int last = 2;
    moveHand(last);
    const bool isAtRest = isThere && eventually([&] { return hasSnapped(last); });
    input_.release();
    input_.rest(betweenClicks);
    if (isAtRest) {
      return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure() << panel.area();
  }
  ::testing::AssertionResult opensAt(const PanelOnScreen& panel, Point origin) {
    const Rect expected = PanelOnScreen::computedArea(sourceArea, origin);
    if (eventually([&] { return panel.area() == expected; })) {
      return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure() << panel.area() << " instead of " << expected;
  }
};

TEST_F(Docks, PanelsOpenBesideThemAndSnapToThem) {
  const auto source = openSource();
  const auto dock = openDock({0, 0, 60, 1024}, leftStrut(60, 0, 1024));
  const PanelOnScreen panel = mirrorOnlySource();
  EXPECT_TRUE(opensAt(panel, {60 + 32, 32}));
  EXPECT_TRUE(snaps(panel, {67, 300}, {60, 300}));
  dock->setStruts(leftStrut(90, 0, 1024));
  EXPECT_TRUE(snaps(panel, {97, 300}, {90, 300}));
  dock->destroy();
  EXPECT_TRUE(snaps(panel, {7, 300}, {0, 300}));
  const auto bar = openDock({0, 0, 1280, 40}, topStrut(40, 1280));
  EXPECT_TRUE(snaps(panel, {300, 47}, {300, 40}));
  bar->unmap();
  EXPECT_TRUE(eventually([&] { return workArea().at(1) == 0; })) << "the manager's last word";
  // What a manager keeps free for reasons of its own.
  connection_.setNumbers(connection_.root(), "_NET_WORKAREA", XCB_ATOM_CARDINAL,
                         {0, 80, 1280, 944});
  connection_.sync();
  EXPECT_TRUE(snaps(panel, {300, 87}, {300, 80}));
}

/// Two monitors side by side. The dock between them is a short one: beside it, managers let nothing
/// near the edge that it counts from.
class DocksOnTwoMonitors : public Docks {
 protected:
  DocksOnTwoMonitors() : Docks({.width = 2400, .height = 1000}) {
    monitors_.setPrimary("left", {0, 0, 1200, 1000});
    monitors_.set("right", {1200, 0, 1200, 1000});
  }

  Monitors monitors_{connection_};
};

TEST_F(DocksOnTwoMonitors, EachTakesRoomWhereItIs) {
  const auto source = openSource();
  const auto bar = openDock({100, 0, 600, 40}, topStrut(40, 2400));
  const auto dock = openDock({1200, 800, 60, 200}, leftStrut(1260, 800, 1000));
  const PanelOnScreen panel = mirrorOnlySource();
  EXPECT_TRUE(opensAt(panel, {32, 40 + 32}));
  EXPECT_TRUE(snaps(panel, {1267, 300}, {1260, 300}));
  EXPECT_TRUE(snaps(panel, {1600, 7}, {1600, 0})) << "the bar is on the left one";
  EXPECT_TRUE(snaps(panel, {7, 300}, {0, 300})) << "the dock is on the right one";
  EXPECT_TRUE(snaps(panel, {300, 47}, {300, 40}));

  bar->moveTo({1500, 0});
  EXPECT_TRUE(snaps(panel, {300, 7}, {300, 0}));
  EXPECT_TRUE(snaps(panel, {1600, 47}, {1600, 40}));
  dock->setStruts(leftStrut(1300, 800, 1000));
  EXPECT_TRUE(snaps(panel, {1307, 300}, {1300, 300}));
}

}  // namespace
}  // namespace vistrel::testbed
