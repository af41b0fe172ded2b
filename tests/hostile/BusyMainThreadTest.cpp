#include <latch>
#include <thread>
#include <utility>

#include "tests/hostile/MirrorOnDesktop.h"
#include "tests/support/Poll.h"

namespace vistrel::hostile {
namespace {

using platform::PixelBGRA;

class BusyMainThread : public MirrorOnDesktop {
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
  auto mirror = mirrorOf(listed(source->id()));
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
  closeAndDrop(std::move(mirror));
}

}  // namespace
}  // namespace vistrel::hostile
