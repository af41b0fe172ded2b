#include <latch>
#include <thread>

#include "mirror/WindowMirrorHUDController.h"
#include "tests/contract/ContractTest.h"
#include "tests/support/Poll.h"

namespace vistrel::hostile {
namespace {

using platform::PixelBGRA;

/// A mirror with its views, on the real backend under a window manager.
class BusyMainThread : public contract::ContractTest {
 protected:
  bool shows(WindowMirrorHUDController& mirror, PixelBGRA color) {
    const platform::Size panel = mirror.panel()->frame().size;
    const platform::Point inFirstQuarter{panel.width / 4, panel.height / 3};
    return testing::Value(bed_->colorShown(*mirror.panel(), inFirstQuarter),
                          contract::IsColor(color));
  }
};

TEST_F(BusyMainThread, FreezesNoMirror) {
  const auto source = bed_->openSource({.colors = contract::fourColors});
  const auto mirror =
      WindowMirrorHUDController::make(listed(source->id()), 0, [](platform::WindowID) {});
  mirror->show();
  ASSERT_TRUE(turnUntil([&] { return shows(*mirror, contract::fourColors[0]); }));

  bool isFollowed = false;
  std::latch looked(1);
  std::jthread person([&] {
    source->paint(contract::otherColors);
    isFollowed = testbed::eventually([&] { return shows(*mirror, contract::otherColors[0]); });
    looked.count_down();
  });
  looked.wait();
  EXPECT_TRUE(isFollowed);
  mirror->close();
}

}  // namespace
}  // namespace vistrel::hostile
