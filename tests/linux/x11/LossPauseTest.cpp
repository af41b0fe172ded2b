#include <gtest/gtest.h>

#include "platform/linux/x11/source/LossPause.h"

namespace vistrel::platform::linux_desktop {
namespace {

TEST(LossPause, IsOverAtFirst) {
  const LossPause pause;
  EXPECT_LT(pause.end(), 0);
}

TEST(LossPause, EndsSoonAfterTheLastLoss) {
  LossPause pause;
  pause.lost(10);
  pause.lost(10.03);
  EXPECT_DOUBLE_EQ(pause.end(), 10.08);
}

TEST(LossPause, EndsForAWindowThatGoesOnLosingParts) {
  LossPause pause;
  for (int i = 0; i <= 24; ++i) pause.lost(10 + 0.01 * i);
  EXPECT_DOUBLE_EQ(pause.end(), 10.25);
}

TEST(LossPause, BeginsAnewWithTheNextLossAfterItsEnd) {
  LossPause pause;
  pause.lost(10);
  pause.lost(10.06);
  EXPECT_DOUBLE_EQ(pause.end(), 10.11);
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
