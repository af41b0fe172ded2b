#include <functional>

#include "tests/desktop/DesktopTest.h"
#include "tests/desktop/PanelShot.h"

namespace vistrel::testbed {
namespace {

/// Shoots the screen while a gesture runs. What is shot is looked at afterwards, so that many shots
/// come in a short time.
class PanelFlicker : public DesktopTestWithManager {
 protected:
  static constexpr Rect backdrop{0, 0, 760, 620};
  /// After each step of a gesture.
  static constexpr int shotsAtOnce = 3;

  PanelFlicker() : source_(openSource()) {}

  void shoot(int count) {
    for (int i = 0; i < count; ++i) {
      if (isPutOutInParts()) {
        EXPECT_TRUE(eventually([&] { return faultsOf(screen_.read(backdrop), sizes_).empty(); }));
      } else {
        shots_.push_back(screen_.read(backdrop));
      }
    }
  }
  void shootDragging(Point from, Point to, int steps, const std::function<void(Point)>& moved) {
    input_.moveTo(from);
    input_.beginDrag();
    for (int step = 1; step <= steps; ++step) {
      const Point by{(to.x - from.x) * step / steps, (to.y - from.y) * step / steps};
      input_.moveTo({from.x + by.x, from.y + by.y});
      moved(by);
      shoot(shotsAtOnce);
    }
    input_.release();
  }
  void shootResizing(const PanelOnScreen& panel, Point by, int steps) {
    const Point grip = panel.grip();
    const Rect start = panel.area();
    // Where nothing of the panel is drawn yet, a press goes to what lies below.
    EXPECT_TRUE(eventually([&] {
      const Picture shot = screen_.read(backdrop);
      return shot.at(grip) != backdropColour && faultsOf(shot).empty();
    }));
    sizes_.push_back({start.width, start.height});
    shootDragging(grip, {grip.x + by.x, grip.y + by.y}, steps, [&](Point moved) {
      sizes_.push_back({start.width + moved.x, start.height + moved.y});
    });
    EXPECT_TRUE(eventually([&] {
      return panel.area() == Rect{start.x, start.y, start.width + by.x, start.height + by.y};
    }));
  }
  void judgeShots(const char* gesture) {
    int faulty = 0;
    std::string firstFault;
    for (const Picture& shot : shots_) {
      const std::string faults = faultsOf(shot, sizes_);
      if (faults.empty()) {
        continue;
      }
      if (faulty++ == 0) {
        firstFault = faults;
        shot.savePng(std::string("failed/flicker-") + std::string(nameOf(GetParam())) + "-" +
                     gesture + ".png");
      }
    }
    EXPECT_EQ(faulty, 0) << gesture << ", of " << shots_.size() << " shots; " << firstFault;
    shots_.clear();
    sizes_.clear();
  }

  /// Compositors put their picture out in parts, and a shot may come between two of them, however
  /// long that takes. There a shot counts once the panel is whole in it.
  static bool isPutOutInParts() {
    return GetParam() == WindowManager::mutter || GetParam() == WindowManager::xfwm4Compositing;
  }

  std::unique_ptr<TestWindow> source_;
  std::vector<Picture> shots_;
  std::vector<Size> sizes_;
};

TEST_P(PanelFlicker, NoShotOfTheScreenShowsAPanelThatIsNotWhole) {
  const PanelOnScreen panel = mirrorOnlySource();
  const auto curtain = openSource({.title = "Backdrop",
                                   .area = backdrop,
                                   .picture = Quadrants::uniform(backdropColour),
                                   .decorated = false});
  connection_.sendToManager(curtain->id(), "_NET_ACTIVE_WINDOW", {2, 0, 0});
  ASSERT_TRUE(eventually([&] { return faultsOf(screen_.read(backdrop)).empty(); }))
      << faultsOf(screen_.read(backdrop));

  const Point from = panel.titleBar();
  sizes_.push_back({panel.area().width, panel.area().height});
  shootDragging(from, {from.x + 180, from.y + 130}, 30, [](Point) {});
  judgeShots("dragging");
  shootResizing(panel, {170, 190}, 20);
  shootResizing(panel, {-80, -180}, 10);
  shootResizing(panel, {-80, 90}, 10);
  judgeShots("resizing");
  const int full = panel.area().height;
  sizes_.push_back({panel.area().width, full});
  for (int turn = 0; turn < 2; ++turn) {
    input_.rest(betweenClicks);
    const int former = panel.area().height;
    input_.clickAt(panel.titleBar(), 2);
    const int next = former == full ? PanelOnScreen::titleBarHeight : full;
    EXPECT_TRUE(eventually([&] {
      shoot(shotsAtOnce);
      return panel.area().height == next;
    }));
    shoot(10);
  }
  judgeShots("rolling");
}

VISTREL_WITH_EACH_MANAGER(PanelFlicker);

}  // namespace
}  // namespace vistrel::testbed
