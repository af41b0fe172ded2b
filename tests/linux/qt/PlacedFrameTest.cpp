#include <gtest/gtest.h>

#include "platform/linux/qt/windows/PlacedFrame.h"

namespace vistrel::platform::linux_desktop {
namespace {

const QRect a(0, 0, 100, 100);
const QRect b(10, 0, 100, 100);
const QRect c(20, 0, 100, 100);
const QRect elsewhere(500, 300, 100, 100);

TEST(PlacedFrame, AFrameIsAskedForOnce) {
  PlacedFrame placed;
  EXPECT_TRUE(placed.ask(a));
  EXPECT_FALSE(placed.ask(a));
  EXPECT_EQ(placed.current(), a);
}

TEST(PlacedFrame, NoConfirmationOfAFrameUnderWayIsAMove) {
  PlacedFrame placed;
  for (const QRect& frame : {a, b, c}) placed.ask(frame);
  for (const QRect& frame : {a, b, c}) EXPECT_FALSE(placed.isMovedTo(frame));
  EXPECT_EQ(placed.current(), c);
}

TEST(PlacedFrame, AFrameThatANewerOneHasOvertakenIsNotWaitedFor) {
  PlacedFrame placed;
  for (const QRect& frame : {a, b, c}) placed.ask(frame);
  EXPECT_FALSE(placed.isMovedTo(c));
  EXPECT_TRUE(placed.isMovedTo(a));
}

TEST(PlacedFrame, AConfirmationThatIsRepeatedAfterTheNextRequestIsNoMove) {
  PlacedFrame placed;
  placed.ask(a);
  EXPECT_FALSE(placed.isMovedTo(a));
  placed.ask(b);
  EXPECT_FALSE(placed.isMovedTo(a));
  EXPECT_EQ(placed.current(), b);
  EXPECT_FALSE(placed.isMovedTo(b));
}

TEST(PlacedFrame, APersonsMoveIsTakenOver) {
  PlacedFrame placed;
  placed.ask(a);
  EXPECT_FALSE(placed.isMovedTo(a));
  EXPECT_TRUE(placed.isMovedTo(elsewhere));
  EXPECT_EQ(placed.current(), elsewhere);
  EXPECT_FALSE(placed.isMovedTo(elsewhere));
  EXPECT_FALSE(placed.ask(elsewhere));
}

TEST(PlacedFrame, NothingIsWaitedForOnceSomeoneElseHasDecided) {
  PlacedFrame placed;
  placed.ask(a);
  EXPECT_TRUE(placed.isMovedTo(elsewhere));
  EXPECT_TRUE(placed.isMovedTo(a));
}

TEST(PlacedFrame, AManagerThatRepeatsTheOldFrameIsBelievedInTheEnd) {
  PlacedFrame placed;
  placed.ask(a);
  EXPECT_FALSE(placed.isMovedTo(a));
  placed.ask(b);
  placed.ask(c);
  EXPECT_FALSE(placed.isMovedTo(a));
  EXPECT_EQ(placed.current(), c) << "the answer may be on its way";
  EXPECT_TRUE(placed.isRefused());
  EXPECT_EQ(placed.current(), a);
  EXPECT_FALSE(placed.isRefused()) << "it is told once";
  EXPECT_TRUE(placed.ask(c)) << "code may try again";
}

TEST(PlacedFrame, AnAnswerThatCameTooLateIsBelievedToo) {
  PlacedFrame placed;
  placed.ask(a);
  EXPECT_FALSE(placed.isMovedTo(a));
  placed.ask(b);
  EXPECT_TRUE(placed.isRefused());
  EXPECT_TRUE(placed.isMovedTo(b));
  EXPECT_EQ(placed.current(), b);
}

TEST(PlacedFrame, WhatIsHeardLastCountsOnceNothingIsUnderWay) {
  PlacedFrame placed;
  placed.ask(a);
  placed.ask(b);
  for (const QRect& frame : {elsewhere, b, a}) placed.hear(frame);
  EXPECT_EQ(placed.current(), b);
  EXPECT_TRUE(placed.isRefused());
  EXPECT_EQ(placed.current(), a);
}

TEST(PlacedFrame, IsElsewhereOnceTheDesktopHasSaidWhatNobodyAskedFor) {
  PlacedFrame placed;
  placed.ask(a);
  placed.ask(b);
  placed.hear(a);
  EXPECT_FALSE(placed.isElsewhere()) << "the answer to an older request";
  placed.hear(elsewhere);
  EXPECT_TRUE(placed.isElsewhere());
  placed.hear(b);
  EXPECT_FALSE(placed.isElsewhere());
}

TEST(PlacedFrame, ADesktopThatHasConfirmedOlderFramesAloneIsBehind) {
  PlacedFrame placed;
  placed.ask(a);
  EXPECT_FALSE(placed.isBehind()) << "it has said nothing yet";
  placed.hear(a);
  EXPECT_FALSE(placed.isBehind());
  placed.ask(b);
  placed.ask(c);
  EXPECT_TRUE(placed.isBehind());
  placed.hear(a);
  EXPECT_TRUE(placed.isBehind()) << "it says the same once more";
  placed.hear(b);
  EXPECT_TRUE(placed.isBehind());
  placed.hear(c);
  EXPECT_FALSE(placed.isBehind());
}

TEST(PlacedFrame, ADesktopThatDecidesOtherwiseIsNotBehind) {
  PlacedFrame placed;
  placed.ask(a);
  placed.hear(a);
  placed.ask(b);
  placed.hear(elsewhere);
  EXPECT_FALSE(placed.isBehind());
  placed.ask(c);
  placed.hear(elsewhere);
  EXPECT_FALSE(placed.isBehind());
}

TEST(PlacedFrame, NothingIsRefusedThatWasAnswered) {
  PlacedFrame placed;
  placed.ask(a);
  EXPECT_FALSE(placed.isRefused()) << "the desktop has said nothing yet";
  EXPECT_EQ(placed.current(), a);
  placed.ask(b);
  EXPECT_FALSE(placed.isMovedTo(b));
  EXPECT_FALSE(placed.isRefused());
  EXPECT_EQ(placed.current(), b);
}

TEST(PlacedFrame, AWindowThatIsNeverAnsweredCostsBoundedMemory) {
  PlacedFrame placed;
  for (int x = 0; x < 1000; ++x) placed.ask(QRect(x, 0, 100, 100));
  EXPECT_TRUE(placed.isMovedTo(QRect(0, 0, 100, 100)));
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
