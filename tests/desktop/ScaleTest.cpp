#include <algorithm>
#include <cmath>

#include "tests/desktop/DesktopTest.h"
#include "tests/support/Monitors.h"

namespace vistrel::testbed {
namespace {

int scaled(double points, double scale) { return static_cast<int>(std::lround(points * scale)); }

Rect scaled(Rect points, double scale) {
  return {scaled(points.x, scale), scaled(points.y, scale), scaled(points.width, scale),
          scaled(points.height, scale)};
}

/// One monitor whose person likes things large.
class Scaled : public DesktopTest, public ::testing::WithParamInterface<const char*> {
 protected:
  Scaled()
      : DesktopTest({.width = 2600,
                     .height = 1800,
                     .variables = {std::string("QT_SCALE_FACTOR=") + GetParam()}},
                    std::stod(GetParam())) {}

  /// A source without decorations of so many points.
  std::unique_ptr<TestWindow> openSourceOf(const std::string& title, Rect points) {
    return openSource({.title = title, .area = scaled(points, scale_), .decorated = false});
  }
};

TEST_P(Scaled, PointsAreNotPixels) {
  const auto source = openSourceOf("Document", {180, 260, 1000, 500});
  const auto smallest = openSourceOf("Smallest", {20, 500, 80, 60});
  const auto tooSmall = openSourceOf("Too small", {20, 400, 79, 60});
  startVistrel();
  const PanelOnScreen panel = mirrorRow(0, 2, 1);
  EXPECT_TRUE(becomes(panel, scaled(Rect{32, 32, 340, 196}, scale_)));
  EXPECT_TRUE(eventually([&] { return panel.shows(fourColours) && panel.dot() == Dot::live; }));

  const Point bar = panel.titleBar();
  input_.drag(bar, {bar.x + 301, bar.y + 117});
  Rect area = scaled(Rect{32, 32, 340, 196}, scale_);
  const auto nearTo = [&](int x, int y) {
    return eventually([&] {
      // The toolkit places windows on whole points.
      return std::abs(panel.area().x - x) < scale_ && std::abs(panel.area().y - y) < scale_;
    });
  };
  EXPECT_TRUE(nearTo(area.x + 301, area.y + 117)) << panel.area();

  area = panel.area();
  const Point grip = panel.grip();
  input_.rest(betweenClicks);
  input_.drag(grip, {grip.x + scaled(60, scale_), grip.y + scaled(40, scale_)});
  EXPECT_TRUE(becomes(panel, {area.x, area.y, scaled(400, scale_), scaled(236, scale_)}));
  pointAt(panel, panel.grip());
  input_.drag(panel.grip(), {area.x - 200, area.y - 200});
  EXPECT_TRUE(becomes(panel, {area.x, area.y, scaled(160, scale_), scaled(120, scale_)}));
  input_.clickAt(panel.titleBar(), 2);
  EXPECT_TRUE(becomes(panel, {area.x, area.y, scaled(160, scale_), scaled(26, scale_)}));
}

INSTANTIATE_TEST_SUITE_P(Factors, Scaled, ::testing::Values("1.5", "2"),
                         [](const auto& parameters) {
                           return std::string(parameters.param) == "2" ? "Two" : "OneAndAHalf";
                         });

/// Two monitors side by side, of different scales.
class MixedScales : public DesktopTest {
 protected:
  static constexpr Rect left{0, 0, 1200, 1000};
  static constexpr Rect right{1200, 0, 1200, 1000};

  explicit MixedScales(const std::string& factors = "left=1;right=2", double scaleOfLeft = 1,
                       WindowManager manager = WindowManager::openbox)
      : DesktopTest({.width = 2400,
                     .height = 1000,
                     .windowManager = manager,
                     .variables = {"QT_SCREEN_SCALE_FACTORS=" + factors}},
                    scaleOfLeft) {
    monitors_.setPrimary("left", left);
    monitors_.set("right", right);
  }

  PanelOnScreen onRight(const PanelOnScreen& panel) const {
    return {connection_, panel.id(), 3 - scale_};
  }
  /// Drags the panel by its title bar, within a monitor.
  void dragTo(const PanelOnScreen& panel, Point there) {
    const Rect start = panel.area();
    const Point from = panel.titleBar();
    input_.drag(from, there);
    input_.rest(betweenClicks);
    EXPECT_TRUE(becomes(panel, {start.x + there.x - from.x, start.y + there.y - from.y, start.width,
                                start.height}));
  }
  /// Drags the panel by its title bar from one monitor to the other and looks, all the way, whether
  /// it stays under the pointer, with Control held, so that no edge pulls it away; `before` and
  /// `after` are the monitors' scales.
  void dragAcross(const PanelOnScreen& panel, double before, double after, int step) {
    const Rect start = panel.area();
    const Point from = PanelOnScreen(connection_, panel.id(), before).titleBar();
    const double heldX = (from.x - start.x) / before;
    const double heldY = (from.y - start.y) / before;
    input_.moveTo(from);
    input_.hold(keyControl);
    input_.beginDrag();
    for (int i = 1; i <= 20; ++i) {
      const Point pointer{from.x + i * step, from.y + i * 3};
      input_.moveTo(pointer);
      const bool isLeft = pointer.x < right.x;
      const double scale = isLeft == (step > 0) ? before : after;
      const auto isHeld = [&] {
        const Rect area = panel.area();
        return std::abs(pointer.x - area.x - heldX * scale) <= scale &&
               std::abs(pointer.y - area.y - heldY * scale) <= scale &&
               area.width == scaled(start.width / before, scale);
      };
      EXPECT_TRUE(eventually(isHeld))
          << "step " << i << ", pointer " << pointer.x << ", " << pointer.y << ": " << panel.area();
    }
    input_.release();
    input_.letGo(keyControl);
  }

  Monitors monitors_{connection_};
};

TEST_F(MixedScales, ASourceIsMeasuredInPointsOfItsOwnMonitor) {
  const auto source = openSource({.area = {1300, 300, 1000, 500}, .decorated = false});
  const PanelOnScreen panel = mirrorOnlySource();
  EXPECT_TRUE(becomes(panel, {32, 32, 220, 136}));
  EXPECT_TRUE(eventually([&] { return panel.shows(fourColours); }));
}

TEST_F(MixedScales, APanelKeepsItsPointsOnItsWayToAnotherMonitorAndBack) {
  const auto source = openSource();
  const PanelOnScreen panel = mirrorOnlySource();
  EXPECT_TRUE(becomes(panel, {32, 32, 340, 196}));
  dragTo(panel, {900, 100});
  dragAcross(panel, 1, 2, 40);
  EXPECT_TRUE(eventually([&] { return panel.area().height == 392; })) << panel.area();
  EXPECT_TRUE(eventually([&] { return onRight(panel).shows(fourColours); }));
  EXPECT_TRUE(eventually([&] { return onRight(panel).dot() == Dot::live; }));
  input_.rest(betweenClicks);
  dragAcross(panel, 2, 1, -50);
  EXPECT_TRUE(eventually([&] { return panel.area().height == 196; })) << panel.area();
  EXPECT_TRUE(eventually([&] { return panel.shows(fourColours) && panel.dot() == Dot::live; }));
}

class FineMonitorFirst : public MixedScales {
 protected:
  FineMonitorFirst() : MixedScales("left=2;right=1", 2) {}
};

TEST_F(FineMonitorFirst, APanelKeepsItsPointsOnItsWayToAnotherMonitorAndBack) {
  const auto source = openSource();
  const PanelOnScreen panel = mirrorOnlySource();
  EXPECT_TRUE(becomes(panel, {64, 64, 440, 272}));
  dragTo(panel, {900, 100});
  dragAcross(panel, 2, 1, 40);
  EXPECT_TRUE(eventually([&] { return panel.area().height == 136; })) << panel.area();
  EXPECT_TRUE(eventually([&] { return onRight(panel).shows(fourColours); }));
  input_.rest(betweenClicks);
  dragAcross(panel, 1, 2, -50);
  EXPECT_TRUE(eventually([&] { return panel.area().height == 272; })) << panel.area();
  EXPECT_TRUE(eventually([&] { return panel.shows(fourColours); }));
}

/// A person who unplugs monitors, and plugs them in again.
class MonitorsThatChange : public MixedScales {
 protected:
  explicit MonitorsThatChange(WindowManager manager = WindowManager::openbox)
      : MixedScales("left=1;right=2", 1, manager) {}

  /// Whether enough of the window's top edge shows for a person to drag it by.
  static bool isReachable(Rect window, Rect monitor) {
    const int shown = std::min(window.x + window.width, monitor.x + monitor.width) -
                      std::max(window.x, monitor.x);
    return shown >= 80 && window.y >= monitor.y && window.y + 24 <= monitor.y + monitor.height;
  }
  template <class OnScreen>
  ::testing::AssertionResult comesInto(Rect monitor, const OnScreen& window) {
    if (eventually([&] { return isReachable(window.area(), monitor); })) {
      return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure() << window.area() << " is out of reach on " << monitor;
  }
};

TEST_F(MonitorsThatChange, WindowsComeBackIntoViewAndOthersStay) {
  const auto first = openSource({.title = "First", .area = sourceArea, .decorated = false});
  const auto second = openSource({.title = "Second", .area = sourceArea, .decorated = false});
  startVistrel();
  const PanelOnScreen stays = mirrorRow(0, 2, 1);
  const PanelOnScreen moves = mirrorRow(1, 2, 2);
  EXPECT_TRUE(becomes(stays, {32, 32, 340, 196}));
  EXPECT_TRUE(becomes(moves, {60, 60, 340, 196}));
  input_.drag({moves.area().x + 170, moves.area().y + 100}, {2000, 700});
  EXPECT_TRUE(eventually([&] { return moves.area().width == 680; })) << moves.area();
  const auto picker = vistrel_->picker();
  const int pickerWidth = picker.area().width;
  moveByManager(picker.id(), {1500, 300});
  EXPECT_TRUE(eventually([&] { return picker.area().width == 2 * pickerWidth; })) << picker.area();

  monitors_.remove("right");
  EXPECT_TRUE(comesInto(left, moves));
  EXPECT_TRUE(eventually([&] { return moves.area().width == 340; })) << moves.area();
  EXPECT_TRUE(eventually([&] { return moves.shows(fourColours); }));
  EXPECT_TRUE(comesInto(left, picker));
  EXPECT_TRUE(eventually([&] { return picker.area().width == pickerWidth; })) << picker.area();
  EXPECT_EQ(stays.area(), (Rect{32, 32, 340, 196}));

  constexpr Rect small{0, 0, 800, 600};
  monitors_.setPrimary("small", small);
  EXPECT_TRUE(comesInto(small, moves));
  EXPECT_TRUE(comesInto(small, picker));
  EXPECT_EQ(stays.area(), (Rect{32, 32, 340, 196}));

  // All that were there go; others come.
  monitors_.setPrimary("elsewhere", right);
  EXPECT_TRUE(comesInto(right, moves));
  EXPECT_TRUE(comesInto(right, stays));
  EXPECT_TRUE(comesInto(right, picker));
  EXPECT_TRUE(eventually([&] { return moves.shows(fourColours) && stays.shows(fourColours); }));
}

/// Managers move windows away from a monitor that goes, each at a moment of its own.
class PickerOfFineMonitor : public MonitorsThatChange,
                            public ::testing::WithParamInterface<WindowManager> {
 protected:
  PickerOfFineMonitor() : MonitorsThatChange(GetParam()) {}
};

TEST_P(PickerOfFineMonitor, HasItsSizeInPointsWhenThatGoesAndComesBack) {
  startVistrel();
  const auto picker = vistrel_->picker();
  const Rect start = picker.area();
  const auto hasSize = [&](int scale) {
    return eventually([&] {
      const Rect area = picker.area();
      return area.width == scale * start.width && area.height == scale * start.height;
    });
  };
  moveByManager(picker.id(), {1500, 100});
  EXPECT_TRUE(hasSize(2)) << picker.area();
  monitors_.remove("right");
  EXPECT_TRUE(hasSize(1)) << picker.area();
  EXPECT_TRUE(comesInto(left, picker));
  monitors_.set("right", right);
  moveByManager(picker.id(), {1500, 100});
  EXPECT_TRUE(hasSize(2)) << picker.area();
}

INSTANTIATE_TEST_SUITE_P(WindowManagers, PickerOfFineMonitor,
                         ::testing::Values(WindowManager::xfwm4, WindowManager::mutter),
                         [](const auto& test) { return std::string(nameOf(test.param)); });

}  // namespace
}  // namespace vistrel::testbed
