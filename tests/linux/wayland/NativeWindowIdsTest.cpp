#include <gtest/gtest.h>

#include "platform/linux/wayland/compositor/NativeWindowIds.h"

namespace vistrel::platform::linux_desktop {
namespace {

TEST(NativeWindowIds, AreNoneOfXsAndStayWithTheirWindow) {
  NativeWindowIds ids;
  const auto first = ids.idOf("{a}");
  const auto second = ids.idOf("{b}");
  EXPECT_TRUE(NativeWindowIds::isNative(first));
  EXPECT_FALSE(NativeWindowIds::isNative(0x1fffffff));
  EXPECT_NE(first, second);
  EXPECT_EQ(ids.idOf("{a}"), first);
  EXPECT_EQ(ids.uuidOf(second), "{b}");
}

TEST(NativeWindowIds, KnowNoWindowThatNobodyHasAskedFor) {
  NativeWindowIds ids;
  EXPECT_EQ(ids.uuidOf(0x80000000), "");
  EXPECT_EQ(ids.knownIdOf("{a}"), std::nullopt);
  const auto id = ids.idOf("{a}");
  EXPECT_EQ(ids.knownIdOf("{a}"), id);
}

TEST(NativeWindowIds, AreNeverGivenToAnotherWindow) {
  NativeWindowIds ids;
  const auto gone = ids.idOf("{a}");
  const auto kept = ids.idOf("{b}");
  ids.keepOnly({"{b}"});
  EXPECT_EQ(ids.uuidOf(gone), "");
  EXPECT_EQ(ids.idOf("{b}"), kept);
  const auto next = ids.idOf("{c}");
  EXPECT_NE(next, gone);
  EXPECT_NE(next, kept);
  EXPECT_NE(ids.idOf("{d}"), next);
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
