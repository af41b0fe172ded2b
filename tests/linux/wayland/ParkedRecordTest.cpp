#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>

#include "platform/linux/wayland/kwin/ParkedRecord.h"
#include "tests/support/TemporaryDirectory.h"

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

/// One file at two descriptors has two owners, like that of two processes.
TEST(ParkedRecord, IsTheNextOnesToWriteOnceItsOwnerHasGone) {
  const testbed::TemporaryDirectory directory;
  ::setenv("XDG_RUNTIME_DIR", directory.path().c_str(), 1);
  ::setenv("WAYLAND_DISPLAY", "wayland-0", 1);
  const ParkedWindowsByUuid former = {{"{a}", {{1, 2}, {3, 4}}}};
  const ParkedWindowsByUuid next = {{"{b}", {{5, 6}, {7, 8}}}};
  auto owner = std::make_unique<ParkedRecord>();
  owner->write(former);
  ParkedRecord other;
  other.write(next);
  EXPECT_THAT(other.read(), IsEmpty());
  EXPECT_EQ(owner->read(), former);
  owner.reset();
  other.write(next);
  EXPECT_EQ(other.read(), next);
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
