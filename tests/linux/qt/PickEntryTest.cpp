#include <QObject>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <vector>

#include "platform/linux/qt/menus/PickEntry.h"
#include "tests/linux/qt/OffscreenQt.h"
#include "tests/linux/qt/TestPicking.h"

namespace vistrel::platform::linux_desktop {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PickEntryTest : public testing::Test {
 protected:
  PickEntryTest() {
    OffscreenQt::start();
    entry_ = PickEntry::make(picking_);
    entry_->setCallbacks(
        {.parent = [] { return 42U; },
         .picked = [this](const WindowRecord& picked) { picked_.push_back(picked); }});
  }
  void choose() { performAction(entry_->item()); }

  const WindowRecord window_ = std::make_shared<ShareableWindow>();
  TestPicking picking_;
  std::shared_ptr<PickEntry> entry_;
  std::vector<WindowRecord> picked_;
};

TEST_F(PickEntryTest, OpensTheDialogInFrontOfAWindowAndPassesOnWhatIsPicked) {
  choose();
  EXPECT_THAT(picking_.parents(), ElementsAre(42U));
  EXPECT_THAT(picked_, IsEmpty());
  picking_.answer(window_);
  EXPECT_THAT(picked_, ElementsAre(window_));
}

TEST_F(PickEntryTest, PassesNothingOnWhereNothingIsPicked) {
  choose();
  picking_.answer(nullptr);
  EXPECT_THAT(picked_, IsEmpty());
}

TEST_F(PickEntryTest, ChosenOnceMoreWhileTheDialogIsOpenDoesNothing) {
  choose();
  choose();
  picking_.answer(window_);
  EXPECT_EQ(picking_.parents().size(), 1U);
  EXPECT_EQ(picked_.size(), 1U);
}

TEST_F(PickEntryTest, CannotBeChosenWhereThereIsNoDialog) {
  picking_.become(false, "");
  choose();
  EXPECT_THAT(picking_.parents(), IsEmpty());
}

TEST_F(PickEntryTest, DoesNothingMoreOnceTheEventLoopHasEnded) {
  choose();
  entry_->setCallbacks({});
  picking_.answer(window_);
  choose();
  EXPECT_EQ(picking_.parents().size(), 1U);
  EXPECT_THAT(picked_, IsEmpty());
}

TEST_F(PickEntryTest, NeedNotBeThereWhenTheDialogAnswers) {
  choose();
  entry_.reset();
  picking_.answer(window_);
  picking_.become(false, "");
  EXPECT_THAT(picked_, IsEmpty());
}

TEST_F(PickEntryTest, FollowersHearOnceOfWhatChangesTogetherUntilTheyGo) {
  int heard = 0;
  auto follower = std::make_unique<QObject>();
  entry_->follow(*follower, [&] { ++heard; });
  picking_.become(false, "");
  picking_.become(false, "The service that shows the dialog does not answer.");
  QCoreApplication::processEvents();
  EXPECT_EQ(heard, 1);
  follower.reset();
  picking_.become(true, "");
  QCoreApplication::processEvents();
  EXPECT_EQ(heard, 1);
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
