#include <gtest/gtest.h>

#include "platform/Backend.h"
#include "platform/Factory.h"
#include "platform/Geometry.h"
#include "platform/Screen.h"
#include "tests/support/PrivateDisplay.h"

namespace vistrel::platform {
namespace {

/// Neither side makes whole points, of which the toolkit has 667 by 467.
constexpr int width = 1001;
constexpr int height = 701;

TEST(ScreensInPoints, AreAsLargeAsTheirMonitorsToThePixel) {
  const testbed::PrivateDisplay display(
      {.width = width, .height = height, .variables = {"QT_SCALE_FACTOR=1.5"}});
  display.adoptEnvironment();
  static char program[] = "screens";
  static char* arguments[] = {program, nullptr};
  const auto [backend, failure] = makeBackend(1, arguments, Instances::any);
  ASSERT_NE(backend, nullptr) << failure;
  const BackendInstallation installation(*backend);
  const auto screens = backend->windows().screens();
  ASSERT_EQ(screens.size(), 1u);
  EXPECT_EQ(screens.front().backingScaleFactor, 1.5);
  EXPECT_EQ(screens.front().frame, rect(0, 0, width / 1.5, height / 1.5));
}

}  // namespace
}  // namespace vistrel::platform
