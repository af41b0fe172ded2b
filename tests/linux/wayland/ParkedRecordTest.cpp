#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/linux/wayland/kwin/ParkedRecord.h"

namespace vistrel::platform::linux_desktop {
namespace {

using ::testing::IsEmpty;

TEST(ParkedRecord, SaysWhereWindowsBelongExactly) {
  const ParkedWindowsByUuid windows = {{"{a}", {{0.1, -7}, {1240, 984}}},
                                       {"{b}", {{1e6 / 3, 0}, {1240, 984}}}};
  EXPECT_EQ(parseRecord(recordText(windows)), windows);
}

TEST(ParkedRecord, LeavesOutWhatIsNotWhole) {
  const auto text = recordText({{"{a}", {{1, 2}, {3, 4}}}});
  for (std::size_t length = 0; length + 1 < text.size(); ++length) {
    EXPECT_THAT(parseRecord(text.substr(0, length)), IsEmpty()) << length;
  }
  EXPECT_THAT(parseRecord("{a} 1 2 three 4 .\n\n{b}\n"), IsEmpty());
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
