#include <gtest/gtest.h>

#include "platform/linux/qt/FrameEchoes.h"

namespace vistrel::platform::linux_desktop {
namespace {

const QRect a(0, 0, 100, 100);
const QRect b(10, 0, 100, 100);
const QRect c(20, 0, 100, 100);
const QRect elsewhere(500, 300, 100, 100);

TEST(FrameEchoes, EveryFrameUnderWayIsConfirmedInTurn) {
  FrameEchoes echoes;
  for (const QRect& frame : {a, b, c}) echoes.asked(frame);
  EXPECT_TRUE(echoes.isEcho(a));
  EXPECT_TRUE(echoes.isEcho(b));
  EXPECT_TRUE(echoes.isEcho(c));
}

TEST(FrameEchoes, AFrameThatANewerOneHasOvertakenIsNotWaitedFor) {
  FrameEchoes echoes;
  for (const QRect& frame : {a, b, c}) echoes.asked(frame);
  EXPECT_TRUE(echoes.isEcho(c));
  EXPECT_FALSE(echoes.isEcho(a));
}

TEST(FrameEchoes, AMoveByAPersonIsNoEcho) {
  FrameEchoes echoes;
  EXPECT_FALSE(echoes.isEcho(a));
  echoes.asked(a);
  EXPECT_TRUE(echoes.isEcho(a));
  EXPECT_FALSE(echoes.isEcho(elsewhere));
}

TEST(FrameEchoes, NothingIsWaitedForOnceSomeoneElseHasDecided) {
  FrameEchoes echoes;
  echoes.asked(a);
  EXPECT_FALSE(echoes.isEcho(elsewhere));
  EXPECT_FALSE(echoes.isEcho(a));
}

TEST(FrameEchoes, AWindowThatIsNeverAnsweredCostsBoundedMemory) {
  FrameEchoes echoes;
  for (int x = 0; x < 1000; ++x) echoes.asked(QRect(x, 0, 100, 100));
  EXPECT_FALSE(echoes.isEcho(QRect(0, 0, 100, 100)));
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
