#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/View.h"
#include "platform/Window.h"
#include "platform/simulated/SimulatedBackend.h"

namespace vistrel::platform {
namespace {

using testing::ElementsAre;

std::shared_ptr<View> viewAt(double x, double y, double width, double height) {
  return std::make_shared<View>(rect(x, y, width, height));
}

struct FlippedView : View {
  using View::View;
  bool isFlipped() const override { return true; }
};

TEST(ViewTree, KeepsSubviewsInTheOrderTheyWereAdded) {
  const auto parent = std::make_shared<View>();
  const auto a = std::make_shared<View>();
  const auto b = std::make_shared<View>();
  parent->addSubview(a);
  parent->addSubview(b);
  EXPECT_THAT(parent->subviews(), ElementsAre(a, b));
  EXPECT_EQ(a->superview(), parent.get());
}

TEST(ViewTree, RaisesAViewThatIsAddedAgain) {
  const auto parent = std::make_shared<View>();
  const auto a = std::make_shared<View>();
  const auto b = std::make_shared<View>();
  parent->addSubview(a);
  parent->addSubview(b);
  parent->addSubview(a);
  EXPECT_THAT(parent->subviews(), ElementsAre(b, a));
}

TEST(ViewTree, TakesAViewFromItsFormerSuperview) {
  const auto first = std::make_shared<View>();
  const auto second = std::make_shared<View>();
  const auto view = std::make_shared<View>();
  first->addSubview(view);
  second->addSubview(view);
  EXPECT_TRUE(first->subviews().empty());
  EXPECT_EQ(view->superview(), second.get());
}

TEST(ViewTree, HidesWhatAHiddenViewHolds) {
  const auto grandparent = std::make_shared<View>();
  const auto parent = std::make_shared<View>();
  const auto view = std::make_shared<View>();
  grandparent->addSubview(parent);
  parent->addSubview(view);
  EXPECT_FALSE(view->isHiddenOrHasHiddenAncestor());
  grandparent->setHidden(true);
  EXPECT_TRUE(view->isHiddenOrHasHiddenAncestor());
  EXPECT_FALSE(view->isHidden());
  grandparent->setHidden(false);
  view->setHidden(true);
  EXPECT_TRUE(view->isHiddenOrHasHiddenAncestor());
  EXPECT_FALSE(parent->isHiddenOrHasHiddenAncestor());
}

TEST(ViewTree, MeansNothingToAScreenReaderUnlessItIsTold) {
  View view;
  EXPECT_EQ(view.accessibilityRole(), AccessibilityRole::none);
  EXPECT_EQ(view.accessibilityLabel(), "");
  EXPECT_TRUE(view.accessibilityActions().empty());
  view.accessibilityPerform(AccessibilityAction::press);
}

TEST(ViewTree, RemovingAViewHeldByTheTreeAloneLetsItGo) {
  const auto parent = std::make_shared<View>();
  parent->addSubview(std::make_shared<View>());
  const std::weak_ptr<View> view = parent->subviews().front();
  view.lock()->removeFromSuperview();
  EXPECT_TRUE(view.expired());
}

TEST(ViewTree, AViewThatOutlivesItsSuperviewHasNone) {
  auto parent = std::make_shared<View>();
  const auto view = std::make_shared<View>();
  parent->addSubview(view);
  parent.reset();
  EXPECT_EQ(view->superview(), nullptr);
  EXPECT_EQ(view->window(), nullptr);
}

TEST(ViewTree, EveryViewOfAContentViewIsInItsWindow) {
  simulated::SimulatedBackend desktop;
  auto window =
      makeOwnedByMain<Window>(rect(0, 0, 10, 10), styleBorderless, BackingStore::buffered, false);
  const auto content = std::make_shared<View>();
  const auto view = std::make_shared<View>();
  content->addSubview(view);
  EXPECT_EQ(view->window(), nullptr);
  window->setContentView(content);
  EXPECT_EQ(view->window(), window.get());
  window->setContentView(std::make_shared<View>());
  EXPECT_EQ(view->window(), nullptr);
}

TEST(ViewTree, AViewThatOutlivesItsWindowIsInNone) {
  simulated::SimulatedBackend desktop;
  auto window =
      makeOwnedByMain<Window>(rect(0, 0, 10, 10), styleBorderless, BackingStore::buffered, false);
  const auto content = window->contentView();
  window.reset();
  desktop.turnMainQueue();
  EXPECT_EQ(content->window(), nullptr);
}

TEST(ViewCoordinates, CountFromTheBottomUnlessFlipped) {
  View root(rect(0, 0, 200, 100));
  const auto view = viewAt(10, 20, 50, 30);
  root.addSubview(view);
  EXPECT_EQ(view->convertFromWindow({15, 25}), (Point{5, 5}));
  EXPECT_EQ(view->frameInWindowFromTop(), rect(10, 50, 50, 30));
}

TEST(ViewCoordinates, CountFromTheTopInAFlippedView) {
  FlippedView root(rect(0, 0, 200, 100));
  const auto view = viewAt(10, 20, 50, 30);
  root.addSubview(view);
  // The point is 75 up in the window, so 25 down in the root and 25 up in the unflipped view.
  EXPECT_EQ(view->convertFromWindow({15, 75}), (Point{5, 25}));
  EXPECT_EQ(root.convertFromWindow({15, 75}), (Point{15, 25}));
  EXPECT_EQ(view->frameInWindowFromTop(), rect(10, 20, 50, 30));
}

TEST(ViewCoordinates, AddUpAlongTheTree) {
  FlippedView root(rect(0, 0, 200, 100));
  const auto middle = viewAt(10, 20, 100, 60);
  const auto leaf = viewAt(5, 10, 20, 15);
  root.addSubview(middle);
  middle->addSubview(leaf);
  // The leaf's top is 60 - 25 = 35 below the middle's, whose top is 20 below the root's.
  EXPECT_EQ(leaf->frameInWindowFromTop(), rect(15, 55, 20, 15));
  EXPECT_EQ(leaf->convertFromWindow({15, 30}), (Point{0, 0}));
}

}  // namespace
}  // namespace vistrel::platform
