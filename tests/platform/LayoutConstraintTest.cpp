#include <algorithm>
#include <gtest/gtest.h>
#include <random>

#include "platform/LayoutConstraint.h"
#include "platform/View.h"

namespace vistrel::platform {
namespace {

using enum LayoutAttribute;

struct SizedView : View {
  explicit SizedView(Size size) : size_(size) {}
  Size intrinsicContentSize() const override { return size_; }
  const Size size_;
};

struct FlippedView : View {
  using View::View;
  bool isFlipped() const override { return true; }
};

class LayoutConstraintTest : public testing::Test {
 protected:
  std::shared_ptr<View> added(Size intrinsicSize) {
    auto view = std::make_shared<SizedView>(intrinsicSize);
    container_->addSubview(view);
    return view;
  }

  std::shared_ptr<View> container_ = std::make_shared<FlippedView>(rect(70, 80, 400, 300));
};

TEST_F(LayoutConstraintTest, PlacesAViewOfItsOwnSizeAtAnEdge) {
  const auto view = added({50, 20});
  solveConstraints(*container_,
                   {{view, leading, container_, leading, 18}, {view, top, container_, top, 16}});
  EXPECT_EQ(view->frame(), rect(18, 16, 50, 20));
}

TEST_F(LayoutConstraintTest, PullsInwardFromTheFarEdgesByNegativeConstants) {
  const auto view = added({50, 20});
  solveConstraints(*container_, {{view, trailing, container_, trailing, -18},
                                 {view, bottom, container_, bottom, -14}});
  EXPECT_EQ(view->frame(), rect(332, 266, 50, 20));
}

TEST_F(LayoutConstraintTest, StretchesBetweenTwoEdges) {
  const auto view = added({50, 20});
  solveConstraints(*container_, {{view, leading, container_, leading, 18},
                                 {view, trailing, container_, trailing, -18},
                                 {view, centerY, container_, centerY, 5}});
  EXPECT_EQ(view->frame(), rect(18, 145, 364, 20));
}

TEST_F(LayoutConstraintTest, ChoosesByTheOrderOfTheConstraintsWhereSeveralAreEqual) {
  // Either view's own width would settle both.
  const auto framesOf = [this](const std::shared_ptr<View>& left,
                               const std::shared_ptr<View>& right) {
    solveConstraints(*container_,
                     {{left, trailing, right, leading, 0}, {right, centerX, left, centerX, 100}});
    return std::pair(left->frame(), right->frame());
  };
  const auto one = added({50, 20});
  const auto other = added({50, 20});
  EXPECT_EQ(framesOf(one, other), framesOf(other, one));
}

TEST_F(LayoutConstraintTest, FollowsChainsInWhateverOrderTheyAreGiven) {
  const auto heading = added({120, 19});
  const auto status = added({60, 15});
  const auto list = added({0, 0});
  std::vector<LayoutConstraint> constraints = {
      {heading, leading, container_, leading, 18},
      {heading, top, container_, top, 16},
      {status, leading, heading, leading, 0},
      {status, top, heading, bottom, 4},
      {list, leading, container_, leading, 18},
      {list, trailing, container_, trailing, -18},
      {list, top, status, bottom, 10},
      {list, bottom, container_, bottom, -56},
  };
  std::mt19937 random(3);
  for (int round = 0; round < 50; ++round) {
    std::shuffle(constraints.begin(), constraints.end(), random);
    solveConstraints(*container_, constraints);
    ASSERT_EQ(heading->frame(), rect(18, 16, 120, 19));
    ASSERT_EQ(status->frame(), rect(18, 39, 60, 15));
    ASSERT_EQ(list->frame(), rect(18, 64, 364, 180));
  }
}

TEST_F(LayoutConstraintTest, AlignsCentresOfViewsOfDifferentHeight) {
  const auto tall = added({70, 30});
  const auto low = added({90, 20});
  solveConstraints(*container_, {{tall, leading, container_, leading, 18},
                                 {tall, bottom, container_, bottom, -14},
                                 {low, leading, tall, trailing, 8},
                                 {low, centerY, tall, centerY, 0}});
  EXPECT_EQ(tall->frame(), rect(18, 256, 70, 30));
  EXPECT_EQ(low->frame(), rect(96, 261, 90, 20));
}

TEST_F(LayoutConstraintTest, PutsAtZeroWhatConstraintsLeaveOpen) {
  const auto view = added({50, 20});
  solveConstraints(*container_, {{view, top, container_, top, 16}});
  EXPECT_EQ(view->frame(), rect(0, 16, 50, 20));
}

TEST_F(LayoutConstraintTest, LeavesViewsAloneThatTakeNoPart) {
  const auto bystander = added({50, 20});
  bystander->setFrame(rect(1, 2, 3, 4));
  const auto view = added({50, 20});
  solveConstraints(*container_, {{view, top, container_, top, 16}});
  EXPECT_EQ(bystander->frame(), rect(1, 2, 3, 4));
}

TEST_F(LayoutConstraintTest, IgnoresAConstraintThatContradictsEarlierOnes) {
  const auto view = added({50, 20});
  solveConstraints(*container_, {{view, leading, container_, leading, 18},
                                 {view, trailing, container_, trailing, -18},
                                 {view, leading, container_, leading, 99}});
  EXPECT_EQ(view->frame().minX(), 18);
  EXPECT_EQ(view->frame().width(), 364);
}

TEST_F(LayoutConstraintTest, IgnoresAConstraintOnAViewThatIsGone) {
  const auto view = added({50, 20});
  auto gone = std::make_shared<SizedView>(Size{10, 10});
  const std::vector<LayoutConstraint> constraints = {{view, leading, gone, trailing, 5},
                                                     {view, top, container_, top, 16}};
  gone.reset();
  solveConstraints(*container_, constraints);
  EXPECT_EQ(view->frame(), rect(0, 16, 50, 20));
}

TEST_F(LayoutConstraintTest, CountsFromTheTopInAnUnflippedContainerToo) {
  const auto unflipped = std::make_shared<View>(rect(0, 0, 400, 300));
  const auto view = std::make_shared<SizedView>(Size{50, 20});
  unflipped->addSubview(view);
  solveConstraints(*unflipped, {{view, top, unflipped, top, 16}});
  EXPECT_EQ(view->frame(), rect(0, 264, 50, 20));
}

TEST_F(LayoutConstraintTest, AreSolvedBeforeTheViewLaysItselfOut) {
  const auto view = added({50, 20});
  container_->activateConstraints({{view, trailing, container_, trailing, 0}});
  container_->layoutSubtreeIfNeeded();
  EXPECT_EQ(view->frame().maxX(), 400);
  container_->setFrame(rect(0, 0, 500, 300));
  container_->layoutSubtreeIfNeeded();
  EXPECT_EQ(view->frame().maxX(), 500);
}

}  // namespace
}  // namespace vistrel::platform
