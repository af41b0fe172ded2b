#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/Controls.h"
#include "platform/Window.h"
#include "platform/simulated/SimulatedBackend.h"

namespace vistrel::platform {
namespace {

using testing::ElementsAre;

struct ListeningView : View {
  ListeningView(std::vector<std::string>& heard, std::string name, const Rect& frame)
      : View(frame), heard_(heard), name_(std::move(name)) {}

  void mouseDown(const Event& event) override {
    heard_.push_back(name_ + " down " + std::to_string(event.clickCount));
  }
  void mouseDragged(const Event&) override { heard_.push_back(name_ + " dragged"); }
  void mouseUp(const Event&) override { heard_.push_back(name_ + " up"); }

  std::vector<std::string>& heard_;
  const std::string name_;
};

class MouseEventsTest : public testing::Test {
 protected:
  std::shared_ptr<ListeningView> addListening(const std::string& name, const Rect& frame) {
    auto view = std::make_shared<ListeningView>(heard_, name, frame);
    window_->contentView()->addSubview(view);
    return view;
  }

  void pressAt(Point location, int clickCount = 1) {
    desktop_.windows().moveMouse(location);
    desktop_.windows().pressMouse(*window_, clickCount);
  }

  simulated::SimulatedBackend desktop_;
  std::vector<std::string> heard_;
  std::shared_ptr<Window> window_ = makeOwnedByMain<Window>(
      rect(1000, 500, 100, 100), styleBorderless, BackingStore::buffered, false);
};

TEST_F(MouseEventsTest, GoToTheViewUnderThePointer) {
  addListening("left", rect(0, 0, 50, 100));
  addListening("right", rect(50, 0, 50, 100));
  pressAt({1060, 550}, 2);
  EXPECT_THAT(heard_, ElementsAre("right down 2"));
}

TEST_F(MouseEventsTest, FollowTheViewThatWasPressed) {
  addListening("left", rect(0, 0, 50, 100));
  addListening("right", rect(50, 0, 50, 100));
  pressAt({1010, 550});
  desktop_.windows().dragMouse(*window_, {1090, 550});
  desktop_.windows().releaseMouse(*window_);
  EXPECT_THAT(heard_, ElementsAre("left down 1", "left dragged", "left up"));
}

TEST_F(MouseEventsTest, BubbleUpFromAViewThatDoesNotTakeThem) {
  const auto parent = addListening("parent", rect(0, 0, 100, 100));
  const auto child = std::make_shared<View>(rect(0, 0, 100, 100));
  parent->addSubview(child);
  child->addSubview(std::make_shared<Label>("grandchild"));
  child->subviews().front()->setFrame(rect(0, 0, 100, 100));
  pressAt({1050, 550});
  desktop_.windows().dragMouse(*window_, {1051, 550});
  desktop_.windows().releaseMouse(*window_);
  EXPECT_THAT(heard_, ElementsAre("parent down 1", "parent dragged", "parent up"));
}

TEST_F(MouseEventsTest, EndWithTheViewThatWasPressed) {
  auto view = addListening("view", rect(0, 0, 100, 100));
  pressAt({1050, 550});
  view->removeFromSuperview();
  view.reset();
  desktop_.windows().releaseMouse(*window_);
  EXPECT_THAT(heard_, ElementsAre("view down 1"));
}

TEST_F(MouseEventsTest, OutsideEveryViewAreHeardByNone) {
  addListening("view", rect(0, 0, 100, 100));
  pressAt({900, 550});
  desktop_.windows().releaseMouse(*window_);
  EXPECT_TRUE(heard_.empty());
}

struct Closer {
  std::shared_ptr<Window>* window;
  void close() { window->reset(); }
};

TEST_F(MouseEventsTest, MayLetTheirWindowGo) {
  Closer closer{&window_};
  const auto target = std::shared_ptr<Closer>(&closer, [](Closer*) {});
  const auto button =
      std::make_shared<Button>("x", Action("close", std::weak_ptr(target), &Closer::close));
  button->setFrame(rect(0, 0, 100, 100));
  window_->contentView()->addSubview(button);
  Window& window = *window_;
  pressAt({1050, 550});
  desktop_.windows().releaseMouse(window);
  EXPECT_EQ(window_, nullptr);
  EXPECT_EQ(desktop_.windows().windowsFrontToBack().size(), 1U);
  desktop_.turnMainQueue();
  EXPECT_TRUE(desktop_.windows().windowsFrontToBack().empty());
}

}  // namespace
}  // namespace vistrel::platform
