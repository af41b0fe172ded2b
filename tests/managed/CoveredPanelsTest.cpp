#include "platform/linux/SerialQueue.h"
#include "platform/linux/x11/panel/CoveredPanels.h"
#include "platform/linux/x11/panel/FloatingPanels.h"
#include "tests/managed/ManagedTest.h"

namespace vistrel::testbed {
namespace {

using platform::QualityOfService;
using platform::linux_desktop::coveredMark;
using platform::linux_desktop::FloatingPanels;
using platform::linux_desktop::SerialQueue;

constexpr WindowManager compositingManagers[] = {
    WindowManager::xfwm4Compositing, WindowManager::mutter, WindowManager::kwinCompositing};

/// Two panels, one on top of the other.
class CoveredPanels : public ManagedTest {
 protected:
  CoveredPanels() {
    queue_->async([this] {
      panels_ = FloatingPanels::on(queue_);
      panels_->add(lower_->id());
      panels_->add(upper_->id());
    });
    upper_->raiseAbove(*lower_);
  }
  ~CoveredPanels() override {
    platform::linux_desktop::asyncAndWait(*queue_, [this] { panels_.reset(); });
  }

  bool isMarked(const TestWindow& panel) const {
    return !connection().numbers(panel.id(), coveredMark).empty();
  }
  ::testing::AssertionResult becomesMarked(const TestWindow& panel, bool marked = true) const {
    if (eventually([&] { return isMarked(panel) == marked; })) {
      return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure() << "it is " << (marked ? "not " : "") << "marked";
  }
  void setOpacity(const TestWindow& window, std::uint32_t opacity) const {
    connection().setNumbers(window.id(), "_NET_WM_WINDOW_OPACITY", XCB_ATOM_CARDINAL, {opacity});
    connection().sync();
  }

  static constexpr Point overIt{250, 150};
  static constexpr Point beside{750, 150};

  const std::shared_ptr<SerialQueue> queue_ =
      SerialQueue::make("panels", QualityOfService::userInteractive);
  std::unique_ptr<TestWindow> lower_ =
      open({.title = "Lower", .area = {300, 200, 300, 200}, .decorated = false});
  std::unique_ptr<TestWindow> upper_ =
      open({.title = "Upper", .area = {overIt.x, overIt.y, 400, 300}, .decorated = false});
  std::shared_ptr<FloatingPanels> panels_;  // on the queue
};

TEST_P(CoveredPanels, AreMarkedUntilWhatCoversThemMovesAway) {
  EXPECT_TRUE(becomesMarked(*lower_));
  EXPECT_FALSE(isMarked(*upper_));
  upper_->moveTo(beside);
  EXPECT_TRUE(becomesMarked(*lower_, false));
  upper_->moveTo(overIt);
  EXPECT_TRUE(becomesMarked(*lower_));
}

TEST_P(CoveredPanels, AreMarkedUntilTheyAreRaised) {
  EXPECT_TRUE(becomesMarked(*lower_));
  activate(*lower_);
  EXPECT_TRUE(becomesMarked(*lower_, false));
  EXPECT_FALSE(isMarked(*upper_));
}

TEST_P(CoveredPanels, AreMarkedUntilTheyAreLarger) {
  EXPECT_TRUE(becomesMarked(*lower_));
  lower_->resize(600, 200);
  EXPECT_TRUE(becomesMarked(*lower_, false));
}

TEST_P(CoveredPanels, AreMarkedUntilWhatCoversThemIsOffTheScreen) {
  EXPECT_TRUE(becomesMarked(*lower_));
  upper_->unmap();
  EXPECT_TRUE(becomesMarked(*lower_, false));
}

TEST_P(CoveredPanels, AreMarkedUntilWhatCoversThemIsGone) {
  EXPECT_TRUE(becomesMarked(*lower_));
  upper_->destroy();
  EXPECT_TRUE(becomesMarked(*lower_, false));
}

TEST_P(CoveredPanels, AreMarkedUntilWhatCoversThemIsTranslucent) {
  EXPECT_TRUE(becomesMarked(*lower_));
  setOpacity(*upper_, 0xC0000000);
  EXPECT_TRUE(becomesMarked(*lower_, false));
  setOpacity(*upper_, 0xFFFFFFFF);
  EXPECT_TRUE(becomesMarked(*lower_));
}

VISTREL_WITH_MANAGERS(CompositingManagers, CoveredPanels, compositingManagers);

}  // namespace
}  // namespace vistrel::testbed
