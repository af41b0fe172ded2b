#include <atomic>
#include <optional>

#include "tests/linux/wayland/KWinTest.h"
#include "tests/support/NativeDock.h"
#include "tests/support/Poll.h"

namespace vistrel::platform::linux_desktop {
namespace {

using testbed::NativeDock;
using testbed::TestWindow;

/// What docks leave of two outputs.
class KWinDockAreasTest : public KWinTest {
 protected:
  using Areas = std::vector<PixelRect>;

  static inline const Areas monitors{{0, 0, 1280, 1024}, {1280, 0, 1280, 1024}};

  KWinDockAreasTest() : KWinTest(testbed::KWinSession::Options{.outputs = 2}) {
    session_->dockAreas->watch([] { ++changes; });
  }

  ::testing::AssertionResult become(const PixelRect& left, const PixelRect& right) {
    Areas free;
    const Areas expected{left, right};
    if (eventually([&] { return (free = session_->dockAreas->freeAreas(monitors)) == expected; })) {
      return ::testing::AssertionSuccess();
    }
    auto failure = ::testing::AssertionFailure();
    for (const auto& [x, y, width, height] : free) {
      failure << x << ' ' << y << ' ' << width << ' ' << height << "; ";
    }
    return failure;
  }

  static inline std::atomic<int> changes = 0;
};

TEST_F(KWinDockAreasTest, LeaveOfEachOutputWhatItsOwnDocksDo) {
  std::optional<NativeDock> dock(std::in_place, desktop_.environment(),
                                 testbed::Rect{1280, 984, 1280, 40});
  EXPECT_TRUE(become(monitors[0], {1280, 0, 1280, 984}));
  EXPECT_TRUE(eventually([&] { return changes > 0; }));

  const TestWindow ofX(desktop_.xName(), {.title = "Dock",
                                          .area = {0, 0, 1280, 30},
                                          .decorated = false,
                                          .struts = {0, 0, 30, 0, 0, 0, 0, 0, 0, 1279, 0, 0}});
  EXPECT_TRUE(become({0, 30, 1280, 994}, {1280, 0, 1280, 984}));

  dock->resize(1280, 60);
  dock->moveTo({1280, 964});
  EXPECT_TRUE(become({0, 30, 1280, 994}, {1280, 0, 1280, 964}));
  const int before = changes;
  dock.reset();
  EXPECT_TRUE(become({0, 30, 1280, 994}, monitors[1]));
  EXPECT_TRUE(eventually([&] { return changes > before; }));
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
