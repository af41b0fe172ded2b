#include <atomic>

#include "tests/contract/ContractTest.h"

namespace vistrel::contract {
namespace {

using platform::rect;

using ListingContract = ContractTest;

TEST_F(ListingContract, TellsWhatAWindowIs) {
  const auto source = bed_->openSource({.title = "Título — 文書", .application = "Sample"});
  const auto record = listed(source->id());
  ASSERT_NE(record, nullptr);
  EXPECT_EQ(record->title, "Título — 文書");
  EXPECT_EQ(record->frame, source->frame());
  ASSERT_NE(record->owningApplication, nullptr);
  EXPECT_EQ(record->owningApplication->applicationName, "Sample");
  EXPECT_TRUE(record->isOnScreen);
  EXPECT_EQ(record->windowLayer, 0);
}

TEST_F(ListingContract, TellsWindowsApart) {
  const auto first = bed_->openSource({.title = "First"});
  const auto second = bed_->openSource({.title = "Second"});
  EXPECT_EQ(listed(first->id())->title, "First");
  EXPECT_EQ(listed(second->id())->title, "Second");
}

TEST_F(ListingContract, FollowsAWindowThatMovesAndGrows) {
  const auto source = bed_->openSource({.size = {400, 300}});
  const auto before = listed(source->id());
  source->moveBy(30, 40);
  const auto moved = listed(source->id());
  EXPECT_EQ(moved->frame, source->frame());
  EXPECT_EQ(moved->frame.minX(), before->frame.minX() + 30);
  EXPECT_EQ(moved->frame.minY(), before->frame.minY() + 40);
  source->resize({500, 200});
  EXPECT_EQ(listed(source->id())->frame, source->frame());
}

TEST_F(ListingContract, NeverChangesARecordThatWasHandedOut) {
  const auto source = bed_->openSource({.title = "Document"});
  const auto record = listed(source->id());
  const platform::Rect frame = record->frame;
  source->moveBy(30, 40);
  source->close();
  EXPECT_EQ(record->frame, frame);
  EXPECT_EQ(record->title, "Document");
}

TEST_F(ListingContract, ListsAHiddenWindowOnlyAmongAllWindows) {
  const auto source = bed_->openSource({});
  EXPECT_NE(listed(source->id(), platform::ListedWindows::onScreen), nullptr);
  source->hide();
  EXPECT_EQ(listed(source->id(), platform::ListedWindows::onScreen), nullptr);
  const auto record = listed(source->id());
  ASSERT_NE(record, nullptr);
  EXPECT_FALSE(record->isOnScreen);
  source->show();
  EXPECT_NE(listed(source->id(), platform::ListedWindows::onScreen), nullptr);
}

TEST_F(ListingContract, ForgetsAWindowThatWasClosed) {
  const auto source = bed_->openSource({});
  const auto id = source->id();
  source->close();
  EXPECT_EQ(listed(id), nullptr);
}

TEST_F(ListingContract, AnswersOnceAndNeverOnMain) {
  struct Answers {
    std::atomic<int> count = 0;
    std::atomic<bool> onMain = false;
  };
  const auto answers = std::make_shared<Answers>();
  platform::getShareableContent(platform::DesktopWindows::included,
                                platform::ListedWindows::onScreen,
                                [answers](const auto&, const auto&) {
                                  answers->onMain = platform::mainQueue().isCurrent();
                                  ++answers->count;
                                });
  ASSERT_TRUE(turnUntil([&answers] { return answers->count > 0; }));
  listed(0);  // long enough for a second answer to show
  EXPECT_EQ(answers->count, 1);
  EXPECT_FALSE(answers->onMain);
}

TEST_F(ListingContract, AnswersWhileTheMainThreadWaits) {
  const auto answered = platform::makeSemaphore(0);
  platform::getShareableContent(platform::DesktopWindows::included,
                                platform::ListedWindows::onScreen,
                                [answered](const auto&, const auto&) { answered->signal(); });
  EXPECT_TRUE(answered->wait(60));
}

TEST_F(ListingContract, IsAllowed) { EXPECT_TRUE(platform::preflightScreenCaptureAccess()); }

}  // namespace
}  // namespace vistrel::contract
