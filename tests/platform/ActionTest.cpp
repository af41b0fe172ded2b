#include <gtest/gtest.h>

#include "platform/Menu.h"

namespace vistrel::platform {
namespace {

struct Counter {
  int sent = 0;
  void count() { ++sent; }
};

TEST(Action, SendsToItsTarget) {
  const auto counter = std::make_shared<Counter>();
  const Action action("count", std::weak_ptr(counter), &Counter::count);
  action.send();
  EXPECT_EQ(counter->sent, 1);
  EXPECT_EQ(action.selector(), "count");
  EXPECT_EQ(action.target(), counter);
}

TEST(Action, DoesNothingOnceItsTargetIsGone) {
  auto counter = std::make_shared<Counter>();
  const Action action("count", std::weak_ptr(counter), &Counter::count);
  counter.reset();
  action.send();
  EXPECT_EQ(action.target(), nullptr);
}

TEST(Action, DoesNothingWhenEmpty) {
  const Action action;
  action.send();
  EXPECT_EQ(action.selector(), "");
}

struct Reader {
  std::vector<std::string> titles;
  void read(const MenuItem& sender) { titles.push_back(sender.title()); }
};

TEST(Action, GivesItsTargetTheLineThatWasChosen) {
  const auto reader = std::make_shared<Reader>();
  const Action action("read:", std::weak_ptr(reader), &Reader::read);
  const MenuItem line("One", {}, "");
  action.send(&line);
  EXPECT_EQ(reader->titles, std::vector<std::string>{"One"});
}

TEST(Action, ThatWantsALineDoesNothingForAControl) {
  const auto reader = std::make_shared<Reader>();
  const Action action("read:", std::weak_ptr(reader), &Reader::read);
  action.send();
  EXPECT_TRUE(reader->titles.empty());
}

struct Suicidal {
  std::shared_ptr<Suicidal> self;
  std::unique_ptr<Action> action;
  int reached = 0;
  int* outside = nullptr;

  void end() {
    self.reset();
    action.reset();
    ++reached;  // still alive: sending holds the target
    *outside = reached;
  }
};

TEST(Action, KeepsItsTargetForTheLengthOfTheCall) {
  int outside = 0;
  auto target = std::make_shared<Suicidal>();
  target->outside = &outside;
  target->self = target;
  target->action = std::make_unique<Action>("end", std::weak_ptr(target), &Suicidal::end);
  const Action& action = *target->action;
  target.reset();
  action.send();
  EXPECT_EQ(outside, 1);
}

}  // namespace
}  // namespace vistrel::platform
