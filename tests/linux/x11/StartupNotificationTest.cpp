#include <gtest/gtest.h>

#include "platform/linux/x11/instance/StartupNotification.h"

namespace vistrel::platform::linux_desktop {
namespace {

TEST(TimeOfStart, IsWhatTheIDEndsWith) {
  EXPECT_EQ(timeOfStart("launcher/vistrel/12-0-host_TIME8123456"), 8123456u);
  EXPECT_EQ(timeOfStart("_TIME1_TIME4294967295"), 4294967295u);
}

TEST(TimeOfStart, OfOtherIDsIsUnknown) {
  for (const char* id : {"", "launcher-12", "a_TIME", "a_TIME0", "a_TIME12x", "a_TIME-5",
                         "a_TIME4294967296", "a_TIME 7", "a_time7"}) {
    EXPECT_EQ(timeOfStart(id), std::nullopt) << id;
  }
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
