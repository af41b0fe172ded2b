#include <gtest/gtest.h>

#include "platform/linux/qt/tray/MenuOpenings.h"

namespace vistrel::platform::linux_desktop {
namespace {

using enum MenuSign;
using std::chrono::milliseconds;

class MenuOpeningsTest : public ::testing::Test {
 protected:
  /// A sign that is given a tenth of a second after the last one.
  bool begins(MenuSign sign) { return openings_.begins(sign, now_ += milliseconds(100)); }

  MenuOpenings openings_;
  MenuOpenings::Time now_;
};

TEST_F(MenuOpeningsTest, OneOfAHostThatAsksReadsAndTellsBeginsWithTheQuestion) {
  for (int opening = 0; opening < 2; ++opening) {
    EXPECT_TRUE(begins(aboutToShow));
    EXPECT_FALSE(begins(layoutRead));
    EXPECT_FALSE(begins(opened));
    EXPECT_FALSE(begins(layoutRead));
  }
}

TEST_F(MenuOpeningsTest, OneOfAHostThatTellsFirstBeginsWithThat) {
  for (int opening = 0; opening < 2; ++opening) {
    EXPECT_TRUE(begins(opened));
    EXPECT_FALSE(begins(aboutToShow));
    EXPECT_FALSE(begins(layoutRead));
  }
}

TEST_F(MenuOpeningsTest, EverySignOfAHostThatGivesNoOtherBeginsOne) {
  for (const MenuSign sign : {opened, aboutToShow}) {
    openings_.menuWasClosed();
    EXPECT_TRUE(begins(sign));
    EXPECT_TRUE(begins(sign));
  }
}

TEST_F(MenuOpeningsTest, AReadingIsOneUnlessItBelongsToAnother) {
  EXPECT_TRUE(begins(layoutRead));
  EXPECT_FALSE(begins(layoutRead)) << "level by level";
  openings_.menuWasClosed();
  EXPECT_TRUE(begins(layoutRead));
  EXPECT_TRUE(begins(aboutToShow)) << "the menu was read ahead";
}

TEST_F(MenuOpeningsTest, ClosingEndsIt) {
  EXPECT_TRUE(begins(aboutToShow));
  openings_.menuWasClosed();
  EXPECT_TRUE(begins(opened));
}

TEST_F(MenuOpeningsTest, ItIsOverAfterAWhile) {
  EXPECT_TRUE(begins(aboutToShow));
  now_ += milliseconds(2000);
  EXPECT_TRUE(begins(opened));
  now_ += milliseconds(2000);
  EXPECT_TRUE(begins(layoutRead));
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
