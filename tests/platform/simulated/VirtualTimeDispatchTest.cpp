#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/simulated/VirtualTimeDispatch.h"

namespace vistrel::platform::simulated {
namespace {

using testing::ElementsAre;

class VirtualTimeTest : public testing::Test {
 protected:
  Block note(const std::string& word) {
    return [this, word] { heard_.push_back(word); };
  }
  double elapsed() { return dispatch_.now().timeIntervalSince(start_); }

  VirtualTimeDispatch dispatch_;
  const Date start_ = dispatch_.now();
  std::vector<std::string> heard_;
};

TEST_F(VirtualTimeTest, RunsMainBlocksInOrderWhenTheQueueIsTurned) {
  dispatch_.mainQueue().async(note("a"));
  dispatch_.mainQueue().async(note("b"));
  EXPECT_TRUE(heard_.empty());
  dispatch_.turnMainQueue();
  EXPECT_THAT(heard_, ElementsAre("a", "b"));
}

TEST_F(VirtualTimeTest, RunsWhatABlockHandsInWithinTheSameTurn) {
  dispatch_.mainQueue().async([this] { dispatch_.mainQueue().async(note("inner")); });
  dispatch_.turnMainQueue();
  EXPECT_THAT(heard_, ElementsAre("inner"));
  EXPECT_EQ(elapsed(), 0);
}

TEST_F(VirtualTimeTest, RunsDelayedBlocksWhenTheirTimeHasCome) {
  dispatch_.mainAsyncAfter(2.5, note("late"));
  dispatch_.mainAsyncAfter(1, note("early"));
  dispatch_.turnMainQueue();
  EXPECT_TRUE(heard_.empty());
  dispatch_.advance(2);
  EXPECT_THAT(heard_, ElementsAre("early"));
  dispatch_.advance(0.5);
  EXPECT_THAT(heard_, ElementsAre("early", "late"));
  EXPECT_EQ(elapsed(), 2.5);
}

TEST_F(VirtualTimeTest, ShowsABlockTheMomentItWasDueAt) {
  std::vector<double> times;
  dispatch_.mainAsyncAfter(1.5, [&] { times.push_back(elapsed()); });
  dispatch_.advance(10);
  EXPECT_THAT(times, ElementsAre(1.5));
  EXPECT_EQ(elapsed(), 10);
}

TEST_F(VirtualTimeTest, EachQueueIsCurrentInItsOwnBlocksAlone) {
  const auto queue = dispatch_.makeSerialQueue("serial", QualityOfService::standard);
  const auto other = dispatch_.makeSerialQueue("other", QualityOfService::standard);
  EXPECT_TRUE(dispatch_.mainQueue().isCurrent());
  EXPECT_FALSE(queue->isCurrent());
  std::vector<bool> seen;
  queue->async([&] {
    seen = {queue->isCurrent(), other->isCurrent(), dispatch_.mainQueue().isCurrent()};
  });
  dispatch_.turnMainQueue();
  EXPECT_THAT(seen, ElementsAre(true, false, false));
  EXPECT_TRUE(dispatch_.mainQueue().isCurrent());
}

TEST_F(VirtualTimeTest, ServiceQueueIsNotMain) {
  bool onMain = true;
  dispatch_.serviceQueue().async([&] { onMain = dispatch_.mainQueue().isCurrent(); });
  dispatch_.turnMainQueue();
  EXPECT_FALSE(onMain);
}

TEST_F(VirtualTimeTest, QueueRunsItsBlocksAfterItsHandleIsGone) {
  dispatch_.makeSerialQueue("serial", QualityOfService::standard)->async(note("ran"));
  dispatch_.turnMainQueue();
  EXPECT_THAT(heard_, ElementsAre("ran"));
}

TEST_F(VirtualTimeTest, BlockMayDropItsOwnQueue) {
  auto queue = dispatch_.makeSerialQueue("serial", QualityOfService::standard);
  queue->async([&] { queue.reset(); });
  queue->async(note("second"));
  dispatch_.turnMainQueue();
  EXPECT_EQ(queue, nullptr);
  EXPECT_THAT(heard_, ElementsAre("second"));
}

TEST_F(VirtualTimeTest, OtherQueuesCanBeTurnedWithoutMain) {
  dispatch_.mainQueue().async(note("main"));
  dispatch_.serviceQueue().async(note("service"));
  dispatch_.turnOtherQueues();
  EXPECT_THAT(heard_, ElementsAre("service"));
  dispatch_.turnMainQueue();
  EXPECT_THAT(heard_, ElementsAre("service", "main"));
}

TEST_F(VirtualTimeTest, RepeatingTimerFiresEveryInterval) {
  std::vector<double> times;
  const auto timer = dispatch_.scheduledTimer(1, true, [&] { times.push_back(elapsed()); });
  dispatch_.advance(3.5);
  EXPECT_THAT(times, ElementsAre(1, 2, 3));
  EXPECT_EQ(timer->timeInterval(), 1);
}

TEST_F(VirtualTimeTest, TimerFiresOnceWhenItDoesNotRepeat) {
  const auto timer = dispatch_.scheduledTimer(1, false, note("fired"));
  EXPECT_TRUE(timer->isValid());
  dispatch_.advance(5);
  EXPECT_THAT(heard_, ElementsAre("fired"));
  EXPECT_FALSE(timer->isValid());
}

TEST_F(VirtualTimeTest, TimerGoesOnWithoutItsHandle) {
  dispatch_.scheduledTimer(1, true, note("fired"));
  dispatch_.advance(2);
  EXPECT_THAT(heard_, ElementsAre("fired", "fired"));
}

TEST_F(VirtualTimeTest, InvalidatedTimerFiresNoMore) {
  const auto timer = dispatch_.scheduledTimer(1, true, note("fired"));
  dispatch_.advance(1);
  timer->invalidate();
  EXPECT_FALSE(timer->isValid());
  dispatch_.advance(5);
  EXPECT_THAT(heard_, ElementsAre("fired"));
}

TEST_F(VirtualTimeTest, TimerMayInvalidateItselfWhileItFires) {
  std::shared_ptr<Timer> timer;
  timer = dispatch_.scheduledTimer(1, true, [&] {
    timer->invalidate();
    heard_.emplace_back("fired");
  });
  dispatch_.advance(5);
  EXPECT_THAT(heard_, ElementsAre("fired"));
}

TEST_F(VirtualTimeTest, WaitOnMainLetsTheServiceAnswerAndNeverRunsMain) {
  const auto semaphore = dispatch_.makeSemaphore(0);
  dispatch_.mainQueue().async(note("main"));
  dispatch_.serviceQueue().asyncAfter(0.25, [&] { semaphore->signal(); });
  EXPECT_TRUE(semaphore->wait(0.75));
  EXPECT_EQ(elapsed(), 0.25);
  EXPECT_TRUE(heard_.empty());
  dispatch_.turnMainQueue();
  EXPECT_THAT(heard_, ElementsAre("main"));
}

TEST_F(VirtualTimeTest, WaitGivesUpAtItsTimeout) {
  const auto semaphore = dispatch_.makeSemaphore(0);
  dispatch_.serviceQueue().asyncAfter(0.8, note("too late"));
  EXPECT_FALSE(semaphore->wait(0.75));
  EXPECT_EQ(elapsed(), 0.75);
  EXPECT_TRUE(heard_.empty());
}

TEST_F(VirtualTimeTest, SemaphoreCounts) {
  const auto semaphore = dispatch_.makeSemaphore(1);
  semaphore->signal();
  EXPECT_TRUE(semaphore->wait(0));
  EXPECT_TRUE(semaphore->wait(0));
  EXPECT_FALSE(semaphore->wait(0));
}

TEST_F(VirtualTimeTest, QueueThatWaitsRunsNoneOfItsOwnBlocksMeanwhile) {
  const auto queue = dispatch_.makeSerialQueue("serial", QualityOfService::standard);
  const auto semaphore = dispatch_.makeSemaphore(0);
  queue->async([&] {
    heard_.emplace_back("first begins");
    semaphore->wait(1);
    heard_.emplace_back("first ends");
  });
  queue->async(note("second"));
  dispatch_.mainQueue().async([&] { semaphore->signal(); });
  dispatch_.turnMainQueue();
  EXPECT_THAT(heard_, ElementsAre("first begins", "first ends", "second"));
}

TEST_F(VirtualTimeTest, TurnsMainUntilAConditionHolds) {
  bool done = false;
  dispatch_.mainAsyncAfter(3, [&done] { done = true; });
  EXPECT_TRUE(dispatch_.turnMainUntil([&done] { return done; }, 10));
  EXPECT_EQ(elapsed(), 3);
  EXPECT_FALSE(dispatch_.turnMainUntil([] { return false; }, 4));
  EXPECT_EQ(elapsed(), 7);
}

TEST_F(VirtualTimeTest, DrainingRunsWhatLateAnswersHandToMain) {
  dispatch_.serviceQueue().asyncAfter(5, [this] { dispatch_.mainQueue().async(note("answer")); });
  dispatch_.mainAsyncAfter(100, note("never"));
  dispatch_.scheduledTimer(50, true, note("never"));
  dispatch_.drain();
  EXPECT_THAT(heard_, ElementsAre("answer"));
}

TEST_F(VirtualTimeTest, DrainingRunsWhatDroppedBlocksHandIn) {
  struct NotesWhenItGoes {
    std::function<void()> go;
    ~NotesWhenItGoes() { go(); }
  };
  auto held = std::make_shared<NotesWhenItGoes>();
  held->go = [this] { dispatch_.mainQueue().async(note("gone")); };
  dispatch_.mainAsyncAfter(100, [last = held] {});
  held.reset();
  dispatch_.drain();
  EXPECT_THAT(heard_, ElementsAre("gone"));
}

}  // namespace
}  // namespace vistrel::platform::simulated
