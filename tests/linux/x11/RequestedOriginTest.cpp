#include <gtest/gtest.h>
#include <xcb/xproto.h>

#include "platform/linux/x11/manager/RequestedOrigin.h"

namespace vistrel::platform::linux_desktop {
namespace {

constexpr PixelRect client{200, 150, 400, 300};
constexpr Extents frame{.left = 4, .right = 6, .top = 20, .bottom = 8};

TEST(RequestedOrigin, IsTheFramesCornerForWindowsThatHoldOntoIt) {
  EXPECT_EQ(requestedOrigin(client, frame, XCB_GRAVITY_NORTH_WEST), (RequestedOrigin{196, 130}));
}

TEST(RequestedOrigin, KeepsTheFramesFarEdgesWhereTheClientsWere) {
  // The client without a frame ends where the frame is to end.
  EXPECT_EQ(requestedOrigin(client, frame, XCB_GRAVITY_NORTH_EAST), (RequestedOrigin{206, 130}));
  EXPECT_EQ(requestedOrigin(client, frame, XCB_GRAVITY_SOUTH_WEST), (RequestedOrigin{196, 158}));
  EXPECT_EQ(requestedOrigin(client, frame, XCB_GRAVITY_SOUTH_EAST), (RequestedOrigin{206, 158}));
}

TEST(RequestedOrigin, KeepsTheMiddles) {
  EXPECT_EQ(requestedOrigin(client, frame, XCB_GRAVITY_CENTER), (RequestedOrigin{201, 144}));
  EXPECT_EQ(requestedOrigin(client, frame, XCB_GRAVITY_NORTH), (RequestedOrigin{201, 130}));
  EXPECT_EQ(requestedOrigin(client, frame, XCB_GRAVITY_EAST), (RequestedOrigin{206, 144}));
}

TEST(RequestedOrigin, IsTheClientsOwnCornerWithStaticGravity) {
  EXPECT_EQ(requestedOrigin(client, frame, XCB_GRAVITY_STATIC), (RequestedOrigin{200, 150}));
}

TEST(Gravity, IsReadFromTheHintsThatNameOne) {
  std::vector<std::uint32_t> hints(18);
  hints[17] = XCB_GRAVITY_SOUTH_EAST;
  EXPECT_EQ(gravityFrom(hints), std::uint32_t{XCB_GRAVITY_NORTH_WEST}) << "not said to be meant";
  hints[0] = 1 << 9;
  EXPECT_EQ(gravityFrom(hints), std::uint32_t{XCB_GRAVITY_SOUTH_EAST});
  hints[17] = XCB_GRAVITY_STATIC;
  EXPECT_EQ(gravityFrom(hints), std::uint32_t{XCB_GRAVITY_STATIC});
}

TEST(Gravity, IsNorthWestWhereTheHintsAreMissingOrNonsense) {
  EXPECT_EQ(gravityFrom({}), std::uint32_t{XCB_GRAVITY_NORTH_WEST});
  std::vector<std::uint32_t> hints(18);
  hints[0] = 1 << 9;
  for (const std::uint32_t nonsense : {0U, 11U, 0xffffffffU}) {
    hints[17] = nonsense;
    EXPECT_EQ(gravityFrom(hints), std::uint32_t{XCB_GRAVITY_NORTH_WEST});
  }
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
