#include <gtest/gtest.h>
#include <vector>

#include "platform/linux/wayland/stream/ShadowMargins.h"

namespace vistrel::platform::linux_desktop {
namespace {

constexpr std::uint32_t black = 0xff000000;
constexpr std::uint32_t grey = 0xff808080;

/// A frame of a stream, black at first.
class Frame {
 public:
  explicit Frame(PixelSize size)
      : size_(size), pixels_(static_cast<std::size_t>(size.width) * size.height, black) {}

  Frame& fill(const PixelRect& area, std::uint32_t color = grey) {
    for (int y = area.y; y < area.y + area.height; ++y) {
      for (int x = area.x; x < area.x + area.width; ++x) {
        pixels_[static_cast<std::size_t>(y) * size_.width + x] = color;
      }
    }
    return *this;
  }
  PixelRect windowBy(ShadowMargins& margins) const {
    return margins.windowIn(
        {reinterpret_cast<const std::uint8_t*>(pixels_.data()), size_.width * 4}, size_);
  }

 private:
  PixelSize size_;
  std::vector<std::uint32_t> pixels_;
};

constexpr PixelSize size{400, 300};
constexpr PixelRect all{0, 0, 400, 300};
/// Inside margins as GTK 3 has them.
constexpr PixelRect inside{26, 23, 348, 248};

PixelRect windowIn(const Frame& frame) {
  ShadowMargins margins;
  return frame.windowBy(margins);
}

TEST(ShadowMargins, AreCutOffOnAllSides) { EXPECT_EQ(windowIn(Frame(size).fill(inside)), inside); }

TEST(ShadowMargins, AreToldByAllSidesWithRoundCornersToo) {
  Frame frame(size);
  frame.fill(inside);
  for (const int x : {inside.x, inside.x + inside.width - 9}) {
    for (const int y : {inside.y, inside.y + inside.height - 9}) frame.fill({x, y, 9, 9}, black);
  }
  EXPECT_EQ(windowIn(frame), inside);
}

TEST(ShadowMargins, AreNotThereWhereAllOfTheFrameIsDrawn) {
  EXPECT_EQ(windowIn(Frame(size).fill(all)), all);
}

TEST(ShadowMargins, AreNotToldOfABlackFrame) { EXPECT_EQ(windowIn(Frame(size)), all); }

TEST(ShadowMargins, DoNotTakeTheFourthByteForColour) {
  EXPECT_EQ(windowIn(Frame(size).fill(all, 0x00000000).fill(inside)), inside);
}

TEST(ShadowMargins, LeaveAFilmsBarsAlone) {
  EXPECT_EQ(windowIn(Frame(size).fill({0, 40, 400, 220})), all);
  EXPECT_EQ(windowIn(Frame(size).fill({50, 0, 300, 300})), all);
}

TEST(ShadowMargins, LeaveADarkWindowWithSomeTextAlone) {
  EXPECT_EQ(windowIn(Frame(size).fill({20, 20, 60, 8}).fill({20, 32, 340, 8}).fill({20, 44, 9, 8})),
            all);
}

TEST(ShadowMargins, LeaveAWideBlackFrameAlone) {
  EXPECT_EQ(windowIn(Frame(size).fill({100, 90, 200, 120})), all);
}

TEST(ShadowMargins, LeaveMarginsOfVeryDifferentWidthAlone) {
  EXPECT_EQ(windowIn(Frame(size).fill({4, 4, 336, 292})), all);
}

TEST(ShadowMargins, OfADarkTerminalAreCutOffWhereItsTitleBarTellsOfThem) {
  // As xterm's under mutter: a title bar, and a prompt at the top of what is black otherwise.
  EXPECT_EQ(windowIn(Frame(size).fill({10, 8, 380, 30}).fill({14, 44, 60, 10})),
            (PixelRect{10, 8, 380, 292}));
}

TEST(ShadowMargins, ShrinkForGoodOnceSomethingIsDrawnInThem) {
  ShadowMargins margins;
  ASSERT_EQ(Frame(size).fill(inside).windowBy(margins), inside);
  EXPECT_EQ(Frame(size).fill(inside).fill({0, 0, 2, 2}).windowBy(margins), all);
  EXPECT_EQ(Frame(size).fill(inside).windowBy(margins), all);
}

TEST(ShadowMargins, StayWhenTheWindowTurnsBlack) {
  ShadowMargins margins;
  ASSERT_EQ(Frame(size).fill(inside).windowBy(margins), inside);
  EXPECT_EQ(Frame(size).windowBy(margins), inside);
}

TEST(ShadowMargins, AreToldByALaterFrameWhereTheFirstIsBlack) {
  ShadowMargins margins;
  ASSERT_EQ(Frame(size).windowBy(margins), all);
  EXPECT_EQ(Frame(size).fill(inside).windowBy(margins), inside);
}

TEST(ShadowMargins, AreLookedForAnewInAnotherSize) {
  ShadowMargins margins;
  ASSERT_EQ(Frame(size).fill(inside).windowBy(margins), inside);
  EXPECT_EQ(Frame({200, 200}).fill({0, 0, 200, 200}).windowBy(margins),
            (PixelRect{0, 0, 200, 200}));
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
