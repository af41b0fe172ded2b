#include <gtest/gtest.h>

#include "platform/Controls.h"
#include "platform/Window.h"
#include "platform/simulated/SimulatedBackend.h"

namespace vistrel::platform {
namespace {

struct Counter {
  int clicks = 0;
  void click() { ++clicks; }
};

class ControlsTest : public testing::Test {
 protected:
  ControlsTest() {
    button_->setFrame(rect(10, 10, 60, 30));
    window_->contentView()->addSubview(button_);
  }

  void press(Point location) {
    desktop_.windows().moveMouse(location);
    desktop_.windows().pressMouse(*window_);
  }
  void drag(Point location) { desktop_.windows().dragMouse(*window_, location); }
  void release() { desktop_.windows().releaseMouse(*window_); }

  simulated::SimulatedBackend desktop_;
  std::shared_ptr<Counter> counter_ = std::make_shared<Counter>();
  std::shared_ptr<Button> button_ =
      std::make_shared<Button>("OK", Action("click", std::weak_ptr(counter_), &Counter::click));
  std::shared_ptr<Window> window_ =
      makeOwnedByMain<Window>(rect(0, 0, 200, 100), styleBorderless, BackingStore::buffered, false);
};

TEST_F(ControlsTest, ButtonClicksWhenPressedAndReleasedInside) {
  press({20, 20});
  EXPECT_TRUE(button_->isHighlighted());
  EXPECT_EQ(counter_->clicks, 0);
  release();
  EXPECT_FALSE(button_->isHighlighted());
  EXPECT_EQ(counter_->clicks, 1);
}

TEST_F(ControlsTest, ButtonDoesNotClickWhenReleasedOutside) {
  press({20, 20});
  drag({150, 80});
  EXPECT_FALSE(button_->isHighlighted());
  release();
  EXPECT_EQ(counter_->clicks, 0);
}

TEST_F(ControlsTest, ButtonClicksWhenThePointerComesBack) {
  press({20, 20});
  drag({150, 80});
  drag({60, 35});
  EXPECT_TRUE(button_->isHighlighted());
  release();
  EXPECT_EQ(counter_->clicks, 1);
}

TEST_F(ControlsTest, HiddenButtonDoesNotClick) {
  button_->setHidden(true);
  button_->performClick();
  EXPECT_EQ(counter_->clicks, 0);
}

TEST_F(ControlsTest, KeyPressesTheVisibleButtonThatHasIt) {
  button_->setKeyEquivalent("\r");
  EXPECT_TRUE(window_->performKeyEquivalent("\r"));
  EXPECT_EQ(counter_->clicks, 1);
  EXPECT_FALSE(window_->performKeyEquivalent("x"));
  button_->setHidden(true);
  EXPECT_FALSE(window_->performKeyEquivalent("\r"));
  EXPECT_EQ(counter_->clicks, 1);
}

TEST_F(ControlsTest, LabelStartsAsOneTruncatedLineInTheLabelColour) {
  const Label label("text");
  EXPECT_EQ(label.stringValue(), "text");
  EXPECT_EQ(label.textColor(), Color::label());
  EXPECT_EQ(label.lineBreakMode(), LineBreakMode::truncatingTail);
  EXPECT_EQ(label.maximumNumberOfLines(), 1);
}

TEST_F(ControlsTest, ChangedTextLaysOutItsConstrainedNeighbourhood) {
  const auto label = std::make_shared<Label>("ab");
  label->setTranslatesAutoresizingMaskIntoConstraints(false);
  const auto& content = window_->contentView();
  content->addSubview(label);
  content->activateConstraints(
      {{label, LayoutAttribute::leading, content, LayoutAttribute::leading, 0}});
  desktop_.turnMainQueue();
  const double before = label->frame().width();
  label->setStringValue("abcd");
  desktop_.turnMainQueue();
  EXPECT_EQ(label->frame().width(), 2 * before);
}

TEST_F(ControlsTest, SayWhatTheyShowToAScreenReader) {
  const Label label("text");
  EXPECT_EQ(label.accessibilityRole(), AccessibilityRole::staticText);
  EXPECT_EQ(label.accessibilityLabel(), "text");
  EXPECT_EQ(button_->accessibilityRole(), AccessibilityRole::button);
  EXPECT_EQ(button_->accessibilityLabel(), "OK");
  button_->setAccessibilityLabel("Agree");
  EXPECT_EQ(button_->accessibilityLabel(), "Agree");
  ImageView image;
  EXPECT_EQ(image.accessibilityRole(), AccessibilityRole::image);
  EXPECT_EQ(image.accessibilityLabel(), "");
  image.setImage({.name = "symbol", .accessibilityDescription = "A symbol"});
  EXPECT_EQ(image.accessibilityLabel(), "A symbol");
}

TEST_F(ControlsTest, AScreenReadersPressClicksTheButtonUnlessItIsHidden) {
  EXPECT_EQ(button_->accessibilityActions(), std::vector{AccessibilityAction::press});
  button_->accessibilityPerform(AccessibilityAction::press);
  EXPECT_EQ(counter_->clicks, 1);
  button_->setHidden(true);
  button_->accessibilityPerform(AccessibilityAction::press);
  EXPECT_EQ(counter_->clicks, 1);
}

TEST_F(ControlsTest, ScrollViewHoldsOneDocumentView) {
  ScrollView scrollView;
  const auto first = std::make_shared<TableView>();
  const auto second = std::make_shared<TableView>();
  scrollView.setDocumentView(first);
  scrollView.setDocumentView(second);
  EXPECT_EQ(scrollView.documentView(), second);
  EXPECT_EQ(scrollView.subviews().size(), 1U);
  EXPECT_EQ(first->superview(), nullptr);
}

}  // namespace
}  // namespace vistrel::platform
