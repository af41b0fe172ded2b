#include <gtest/gtest.h>
#include <vector>

#include "platform/linux/x11/panel/AwaitedChromes.h"

namespace vistrel::platform::linux_desktop {
namespace {

AwaitedChrome chromeOf(int width, int height) {
  const auto chrome = std::make_shared<PanelChrome>();
  chrome->width = width;
  chrome->height = height;
  return {chrome, [] {}};
}

/// The width of what a window of that size is to show; none when it keeps what it has.
std::optional<int> widthTakenFor(AwaitedChromes& chromes, PixelSize window,
                                 Beside beside = Beside::nothing) {
  const auto taken = chromes.takeFor(window, beside);
  return taken ? std::optional(taken->chrome->width) : std::nullopt;
}

TEST(AwaitedChromes, AChromeWaitsUntilTheWindowHasRoomForIt) {
  AwaitedChromes chromes;
  chromes.add(chromeOf(300, 200));
  EXPECT_EQ(widthTakenFor(chromes, {300, 199}), std::nullopt);
  EXPECT_EQ(widthTakenFor(chromes, {299, 200}), std::nullopt);
  EXPECT_EQ(widthTakenFor(chromes, {300, 200}), 300);
  EXPECT_EQ(widthTakenFor(chromes, {300, 200}), std::nullopt) << "it is shown once";
}

TEST(AwaitedChromes, AWindowThatGrowsStepByStepShowsEachStep) {
  AwaitedChromes chromes;
  for (const int width : {310, 320, 330}) chromes.add(chromeOf(width, 200));
  EXPECT_EQ(widthTakenFor(chromes, {310, 200}), 310);
  EXPECT_EQ(widthTakenFor(chromes, {320, 200}), 320);
  EXPECT_EQ(widthTakenFor(chromes, {330, 200}), 330);
}

TEST(AwaitedChromes, TheNewestThatFitsIsShownAndOlderOnesNeverMore) {
  AwaitedChromes chromes;
  for (const int width : {310, 320, 200}) chromes.add(chromeOf(width, 200));
  EXPECT_EQ(widthTakenFor(chromes, {315, 200}), 200);
  EXPECT_EQ(widthTakenFor(chromes, {400, 200}), std::nullopt);
}

TEST(AwaitedChromes, AWindowFarBehindStillGetsTheOldestAndTheNewest) {
  AwaitedChromes chromes;
  for (int width = 301; width <= 400; ++width) chromes.add(chromeOf(width, 200));
  EXPECT_EQ(widthTakenFor(chromes, {301, 200}), 301);
  EXPECT_EQ(widthTakenFor(chromes, {399, 200}), 303) << "few are kept";
  EXPECT_EQ(widthTakenFor(chromes, {400, 200}), 400);
}

TEST(AwaitedChromes, OneThatIsPutBackIsTheNextAgainUnlessANewerFits) {
  AwaitedChromes chromes;
  chromes.add(chromeOf(310, 200));
  chromes.add(chromeOf(320, 200));
  chromes.putBack(*chromes.takeFor({310, 200}, Beside::nothing));
  EXPECT_EQ(chromes.newest()->chrome->width, 320);
  EXPECT_EQ(widthTakenFor(chromes, {310, 200}), 310);
  EXPECT_EQ(widthTakenFor(chromes, {320, 200}), 320);
}

TEST(AwaitedChromes, WhereTheManagersFrameWouldBeSeenTheWindowShrinksFirst) {
  AwaitedChromes chromes;
  int asked = 0;
  AwaitedChrome small = chromeOf(300, 200);
  small.shown = [&] { ++asked; };
  chromes.add(small);
  EXPECT_EQ(widthTakenFor(chromes, {340, 200}, Beside::managersFrame), std::nullopt);
  EXPECT_EQ(asked, 1);
  EXPECT_EQ(widthTakenFor(chromes, {300, 200}, Beside::managersFrame), 300);
}

TEST(AwaitedChromes, AWindowThatIsToShrinkIsNotAskedToGrowByALargerOneThatIsShown) {
  AwaitedChromes chromes;
  std::vector<int> told;
  for (const int width : {320, 300}) {
    AwaitedChrome chrome = chromeOf(width, 200);
    chrome.shown = [&told, width] { told.push_back(width); };
    chromes.add(chrome);
  }
  const auto taken = chromes.takeFor({320, 200}, Beside::managersFrame);
  ASSERT_TRUE(taken.has_value());
  taken->shown();
  EXPECT_EQ(told, std::vector{300});
}

TEST(AwaitedChromes, AWindowThatShrinksStepByStepShowsEachStep) {
  AwaitedChromes chromes;
  for (const int width : {330, 320, 310}) chromes.add(chromeOf(width, 200));
  for (const int width : {330, 320, 310}) {
    EXPECT_EQ(widthTakenFor(chromes, {width, 200}, Beside::managersFrame), width);
  }
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
