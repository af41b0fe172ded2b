#include <QApplication>
#include <QProxyStyle>
#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <utility>
#include <vector>

#include "platform/linux/qt/panel/RollAnimation.h"
#include "tests/linux/qt/OffscreenQt.h"

namespace vistrel::platform::linux_desktop {
namespace {

using testing::ElementsAre;

TEST(HeightOnTheWay, BeginsAndEndsWhereItShould) {
  for (const auto& [from, to] : {std::pair(196, 26), std::pair(26, 196), std::pair(40, 40)}) {
    EXPECT_EQ(heightOnTheWay(from, to, 0), from);
    EXPECT_EQ(heightOnTheWay(from, to, 1), to);
    EXPECT_EQ(heightOnTheWay(from, to, 7.5), to) << "a step that comes late";
  }
}

TEST(HeightOnTheWay, NeverTurnsBack) {
  int former = heightOnTheWay(900, 26, 0);
  for (int step = 1; step <= 100; ++step) {
    const int height = heightOnTheWay(900, 26, step / 100.0);
    EXPECT_LE(height, former);
    EXPECT_GE(height, 26);
    former = height;
  }
}

TEST(HeightOnTheWay, IsFastestInTheMiddle) {
  EXPECT_EQ(heightOnTheWay(0, 1000, 0.5), 500);
  EXPECT_LT(heightOnTheWay(0, 1000, 0.1), 50);
  EXPECT_GT(heightOnTheWay(0, 1000, 0.9), 950);
}

PanelChrome chromeOfThreeRows() {
  return {.width = 2,
          .height = 3,
          .pixels = {2, std::vector<std::uint32_t>{1, 2, 3, 4, 5, 6}},
          .contents = PixelRect{0, 1, 2, 2},
          .cornerRadius = 1};
}

TEST(TopOf, HasTheUpperRowsAndLeavesThePictureWhereItIs) {
  const PanelChrome top = topOf(chromeOfThreeRows(), 2);
  EXPECT_EQ(top.width, 2);
  EXPECT_EQ(top.height, 2);
  EXPECT_THAT(top.pixels.rows(0, 2), ElementsAre(1, 2, 3, 4));
  EXPECT_EQ(top.contents, (PixelRect{0, 1, 2, 2}));
  EXPECT_EQ(top.cornerRadius, 1);
}

TEST(TopOf, IsAllOfItWhereMoreIsAskedFor) {
  const PanelChrome all = topOf(chromeOfThreeRows(), 5);
  EXPECT_EQ(all.height, 3);
  EXPECT_EQ(all.pixels.height(), 3);
}

/// A desktop on which things move for so long.
class StyleOfDuration : public QProxyStyle {
 public:
  explicit StyleOfDuration(int milliseconds) : milliseconds_(milliseconds) {}
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* returned) const override {
    return hint == SH_Widget_Animation_Duration
               ? milliseconds_
               : QProxyStyle::styleHint(hint, option, widget, returned);
  }

 private:
  const int milliseconds_;
};

class RollAnimationTest : public testing::Test {
 protected:
  RollAnimationTest() {
    OffscreenQt::start();
    QApplication::setStyle(new StyleOfDuration(60));
  }
  ~RollAnimationTest() override { QApplication::setStyle(QStringLiteral("fusion")); }

  std::vector<int> heights_;
  RollAnimation roll_{[this] { heights_.push_back(roll_.height()); }};
};

TEST_F(RollAnimationTest, StepsToItsEndAndStops) {
  roll_.start(196, 26);
  EXPECT_TRUE(roll_.isRunning());
  EXPECT_TRUE(roll_.isRollingUp());
  EXPECT_EQ(roll_.height(), 196);
  while (roll_.isRunning()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  ASSERT_FALSE(heights_.empty());
  EXPECT_EQ(heights_.back(), 26);
  EXPECT_TRUE(std::is_sorted(heights_.rbegin(), heights_.rend()));
}

TEST_F(RollAnimationTest, IsNotLongWhateverTheDesktopSays) {
  QApplication::setStyle(new StyleOfDuration(5000));
  EXPECT_LE(rollDuration(), 200);
}

TEST_F(RollAnimationTest, DoesNotRunWhereTheDesktopWantsNoMotion) {
  QApplication::setStyle(new StyleOfDuration(0));
  roll_.start(196, 26);
  EXPECT_FALSE(roll_.isRunning());
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
