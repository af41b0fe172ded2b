#include <gtest/gtest.h>

#include "platform/View.h"

namespace vistrel::platform {
namespace {

struct FlippedView : View {
  using View::View;
  bool isFlipped() const override { return true; }
};

std::shared_ptr<View> added(View& parent, const Rect& frame) {
  auto view = std::make_shared<View>(frame);
  parent.addSubview(view);
  return view;
}

TEST(HitTesting, FindsTheDeepestView) {
  View root(rect(0, 0, 100, 100));
  const auto middle = added(root, rect(10, 10, 50, 50));
  const auto leaf = added(*middle, rect(10, 10, 10, 10));
  EXPECT_EQ(root.hitTest({25, 25}), leaf.get());
  EXPECT_EQ(root.hitTest({15, 15}), middle.get());
  EXPECT_EQ(root.hitTest({5, 5}), &root);
}

TEST(HitTesting, PrefersTheViewAddedLast) {
  View root(rect(0, 0, 100, 100));
  added(root, rect(0, 0, 50, 50));
  const auto above = added(root, rect(0, 0, 50, 50));
  EXPECT_EQ(root.hitTest({5, 5}), above.get());
}

TEST(HitTesting, PassesOverHiddenViewsAndAllInThem) {
  View root(rect(0, 0, 100, 100));
  const auto below = added(root, rect(0, 0, 50, 50));
  const auto above = added(root, rect(0, 0, 50, 50));
  added(*above, rect(0, 0, 50, 50));
  above->setHidden(true);
  EXPECT_EQ(root.hitTest({5, 5}), below.get());
}

TEST(HitTesting, FindsNothingOutsideTheFrame) {
  View root(rect(0, 0, 100, 100));
  EXPECT_EQ(root.hitTest({100, 50}), nullptr);
  EXPECT_EQ(root.hitTest({-1, 50}), nullptr);
}

TEST(HitTesting, FindsNoPartOfASubviewBeyondItsSuperview) {
  View root(rect(0, 0, 100, 100));
  const auto clipped = added(root, rect(0, 0, 10, 10));
  added(*clipped, rect(0, 0, 50, 50));
  EXPECT_EQ(root.hitTest({20, 20}), &root);
}

TEST(HitTesting, CountsFromTheTopInAFlippedView) {
  FlippedView root(rect(0, 0, 100, 100));
  const auto top = added(root, rect(0, 0, 100, 20));
  EXPECT_EQ(root.hitTest({50, 95}), top.get());
  EXPECT_EQ(root.hitTest({50, 5}), &root);
}

TEST(HitTesting, CountsFromTheBottomInAnUnflippedViewOfAFlippedOne) {
  FlippedView root(rect(0, 0, 100, 100));
  const auto titleBar = added(root, rect(0, 0, 100, 20));
  const auto nearItsBottom = added(*titleBar, rect(0, 0, 100, 5));
  EXPECT_EQ(root.hitTest({50, 82}), nearItsBottom.get());
  EXPECT_EQ(root.hitTest({50, 97}), titleBar.get());
}

}  // namespace
}  // namespace vistrel::platform
