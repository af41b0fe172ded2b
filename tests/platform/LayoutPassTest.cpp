#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/Window.h"
#include "platform/simulated/SimulatedBackend.h"

namespace vistrel::platform {
namespace {

using testing::ElementsAre;

struct CountingView : View {
  using View::View;
  void layout() override {
    ++layouts;
    if (onLayout) onLayout();
  }
  int layouts = 0;
  std::function<void()> onLayout;
};

class LayoutPassTest : public testing::Test {
 protected:
  LayoutPassTest() {
    window_->setContentView(content_);
    window_->layoutIfNeeded();
    desktop_.turnMainQueue();
    content_->layouts = 0;
  }

  simulated::SimulatedBackend desktop_;
  std::shared_ptr<Window> window_ =
      makeOwnedByMain<Window>(rect(0, 0, 100, 100), styleBorderless, BackingStore::buffered, false);
  std::shared_ptr<CountingView> content_ = std::make_shared<CountingView>();
};

TEST_F(LayoutPassTest, HappensOnceAtTheNextTurnHoweverOftenItIsAskedFor) {
  content_->setNeedsLayout();
  content_->setNeedsLayout();
  EXPECT_EQ(content_->layouts, 0);
  EXPECT_TRUE(content_->needsLayout());
  desktop_.turnMainQueue();
  EXPECT_EQ(content_->layouts, 1);
  EXPECT_FALSE(content_->needsLayout());
}

TEST_F(LayoutPassTest, IsAskedForAndThePeerToldWhenConstraintsAreActivated) {
  const auto history = desktop_.windows().historyOf(*window_);
  history->calls.clear();
  content_->activateConstraints({});
  ASSERT_EQ(history->calls.size(), 1U);
  EXPECT_EQ(history->calls.front().view, content_.get());
  EXPECT_EQ(history->calls.front().viewChange, ViewChange::constraints);
  desktop_.turnMainQueue();
  EXPECT_EQ(content_->layouts, 1);
}

TEST_F(LayoutPassTest, HappensAgainWhenItIsAskedForAgain) {
  content_->setNeedsLayout();
  desktop_.turnMainQueue();
  content_->setNeedsLayout();
  desktop_.turnMainQueue();
  EXPECT_EQ(content_->layouts, 2);
}

TEST_F(LayoutPassTest, FollowsAChangeOfSizeAndNotOneOfPlace) {
  window_->setFrame(rect(50, 50, 100, 100), Redisplay::later);
  desktop_.turnMainQueue();
  EXPECT_EQ(content_->layouts, 0);
  window_->setFrame(rect(50, 50, 120, 100), Redisplay::later);
  EXPECT_EQ(content_->layouts, 0);
  desktop_.turnMainQueue();
  EXPECT_EQ(content_->layouts, 1);
}

TEST_F(LayoutPassTest, HappensAtOnceWhenTheWindowIsDisplayed) {
  window_->setFrame(rect(0, 0, 120, 100), Redisplay::atOnce);
  EXPECT_EQ(content_->layouts, 1);
}

TEST_F(LayoutPassTest, HappensBeforeTheWindowIsShown) {
  content_->setNeedsLayout();
  window_->orderFrontRegardless();
  EXPECT_EQ(content_->layouts, 1);
}

TEST_F(LayoutPassTest, GoesFromParentsToChildrenAndSkipsThoseThatNeedNone) {
  std::vector<std::string> order;
  const auto child = std::make_shared<CountingView>();
  const auto settled = std::make_shared<CountingView>();
  content_->addSubview(child);
  content_->addSubview(settled);
  desktop_.turnMainQueue();
  settled->layouts = 0;
  content_->onLayout = [&order] { order.emplace_back("parent"); };
  child->onLayout = [&order] { order.emplace_back("child"); };
  child->setNeedsLayout();
  content_->setNeedsLayout();
  desktop_.turnMainQueue();
  EXPECT_THAT(order, ElementsAre("parent", "child"));
  EXPECT_EQ(settled->layouts, 0);
}

TEST_F(LayoutPassTest, MayAddAndRemoveViews) {
  const auto child = std::make_shared<CountingView>();
  content_->onLayout = [this, child] { content_->addSubview(child); };
  content_->setNeedsLayout();
  desktop_.turnMainQueue();
  EXPECT_EQ(child->layouts, 1);
  child->onLayout = [child] { child->removeFromSuperview(); };
  child->setNeedsLayout();
  desktop_.turnMainQueue();
  EXPECT_EQ(child->superview(), nullptr);
  child->onLayout = nullptr;
  content_->onLayout = nullptr;
}

TEST_F(LayoutPassTest, DoesNotHappenOnceTheWindowIsGone) {
  content_->setNeedsLayout();
  window_.reset();
  desktop_.turnMainQueue();
  EXPECT_EQ(content_->layouts, 0);
}

}  // namespace
}  // namespace vistrel::platform
