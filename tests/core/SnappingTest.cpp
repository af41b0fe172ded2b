#include <cmath>
#include <gtest/gtest.h>
#include <random>

#include "catalogue/WindowMirrorManager.h"
#include "tests/core/CoreTest.h"

namespace vistrel {
namespace {

class SnappingTest : public CoreTest {
 protected:
  WindowMirrorHUDController& openMirror() {
    const auto source = openSource();
    manager_->mirror(source);
    desktop_.turnMainQueue();
    return *manager_->mirrors().at(source->windowID);
  }
  static void place(WindowMirrorHUDController& mirror, const Rect& frame) {
    mirror.panel()->setFrame(frame, Redisplay::atOnce);
  }
  /// A person drags the panel by its picture; gives where it is afterwards.
  Rect dragTo(WindowMirrorHUDController& mirror, Point origin,
              std::uint64_t modifiers = platform::modifierNone) {
    constexpr double inPicture = 20;
    auto& panel = *mirror.panel();
    const Point start = panel.frame().origin;
    windows().moveMouse({start.x + inPicture, start.y + inPicture});
    windows().pressMouse(panel);
    windows().dragMouse(panel, {origin.x + inPicture, origin.y + inPicture}, modifiers);
    windows().releaseMouse(panel);
    return panel.frame();
  }

  std::shared_ptr<WindowMirrorManager> manager_ = WindowMirrorManager::make();
};

TEST_F(SnappingTest, ADraggedPanelSnapsToTheVisibleAreaOfItsScreen) {
  auto& mirror = openMirror();
  place(mirror, rect(300, 300, 340, 196));
  EXPECT_EQ(dragTo(mirror, {9, 30}).origin, (Point{0, 25}));
  EXPECT_EQ(dragTo(mirror, {1095, 685}), rect(1100, 679, 340, 196));
}

TEST_F(SnappingTest, AHeldCommandKeyMovesItFreely) {
  auto& mirror = openMirror();
  place(mirror, rect(300, 300, 340, 196));
  EXPECT_EQ(dragTo(mirror, {9, 30}, platform::modifierCommand).origin, (Point{9, 30}));
}

TEST_F(SnappingTest, ADraggedPanelSnapsToEveryOtherMirror) {
  auto& rolledUp = openMirror();
  auto& mirror = openMirror();
  place(rolledUp, rect(600, 400, 340, 196));
  rolledUp.toggleRollUp();
  ASSERT_EQ(rolledUp.panel()->frame(), rect(600, 570, 340, 26));
  place(mirror, rect(100, 100, 340, 196));
  EXPECT_EQ(dragTo(mirror, {265, 380}), rect(260, 374, 340, 196)) << "left of it, under its bar";
}

TEST_F(SnappingTest, ThePanelsScreenIsDecidedByWhereItIsNotByWhereItGoes) {
  const platform::Screen left{.frame = rect(0, 0, 1000, 800),
                              .visibleFrame = rect(0, 0, 1000, 770)};
  const platform::Screen right{.frame = rect(1000, 0, 1000, 800),
                               .visibleFrame = rect(1050, 0, 950, 800)};
  windows().setScreens({left, right});
  auto& mirror = openMirror();
  place(mirror, rect(500, 300, 340, 196));
  EXPECT_EQ(manager_->snap(rect(1045, 300, 340, 196), mirror).minX(), 1045);
  place(mirror, rect(1200, 300, 340, 196));
  EXPECT_EQ(manager_->snap(rect(1045, 300, 340, 196), mirror).minX(), 1050);
}

TEST_F(SnappingTest, WithoutAScreenItSnapsToAnOrdinaryOne) {
  auto& mirror = openMirror();
  windows().setScreens({});
  EXPECT_EQ(manager_->snap(rect(5, 5, 100, 100), mirror), rect(0, 0, 100, 100));
  EXPECT_EQ(manager_->snap(rect(1335, 795, 100, 100), mirror), rect(1340, 800, 100, 100));
}

TEST_F(SnappingTest, AMirrorThatOutlivesTheRegistryIsDraggedFreely) {
  openMirror();
  const auto mirror = manager_->mirrors().begin()->second;
  manager_.reset();
  desktop_.turnMainQueue();
  place(*mirror, rect(300, 300, 340, 196));
  EXPECT_EQ(dragTo(*mirror, {5, 30}).origin, (Point{5, 30}));
}

/// Every pair of an edge and a line, sorted by distance, the first of equals first.
double naiveOffset(double low, double high, const std::vector<double>& lines) {
  std::vector<double> offsets;
  for (const double edge : {low, high}) {
    for (const double line : lines) offsets.push_back(line - edge);
  }
  std::stable_sort(offsets.begin(), offsets.end(),
                   [](double a, double b) { return std::abs(a) < std::abs(b); });
  return std::abs(offsets.front()) <= 12 ? offsets.front() : 0;
}

TEST_F(SnappingTest, AgreesWithAModelOverARandomWalk) {
  constexpr int mirrorCount = 5;
  std::vector<WindowMirrorHUDController*> mirrors;
  for (int i = 0; i < mirrorCount; ++i) mirrors.push_back(&openMirror());
  std::mt19937 random(31);
  std::uniform_int_distribution<int> x(-200, 1500);
  std::uniform_int_distribution<int> y(-100, 900);
  for (int step = 0; step < 10'000; ++step) {
    auto& dragged = *mirrors[random() % mirrorCount];
    if (random() % 20 == 0) dragged.toggleRollUp();
    std::vector<double> vertical{0, 1440};
    std::vector<double> horizontal{25, 875};
    for (const auto& [id, other] : manager_->mirrors()) {
      if (other.get() == &dragged) continue;
      const Rect frame = other->panel()->frame();
      vertical.insert(vertical.end(), {frame.minX(), frame.maxX()});
      horizontal.insert(horizontal.end(), {frame.minY(), frame.maxY()});
    }
    const Rect proposed{{x(random) / 2.0, y(random) / 2.0}, dragged.panel()->frame().size};
    const Rect expected{
        {proposed.minX() + naiveOffset(proposed.minX(), proposed.maxX(), vertical),
         proposed.minY() + naiveOffset(proposed.minY(), proposed.maxY(), horizontal)},
        proposed.size};
    dragged.panel()->setFrameOrigin(manager_->snap(proposed, dragged).origin);
    ASSERT_EQ(dragged.panel()->frame(), expected) << "in step " << step;
  }
}

}  // namespace
}  // namespace vistrel
