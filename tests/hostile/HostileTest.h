#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>

#include "platform/linux/x11/server/StrayErrors.h"
#include "tests/hostile/RawSource.h"
#include "tests/linux/pictures/TestMirror.h"
#include "tests/support/Poll.h"
#include "tests/support/PrivateDisplay.h"

namespace vistrel::hostile {

using platform::linux_desktop::TestMirror;

inline constexpr testbed::Quadrants otherColours{testbed::yellow, testbed::blue, testbed::green,
                                                 testbed::red};
/// Where panels lie, beside the sources.
inline constexpr testbed::Rect panelArea{900, 20, 300, 240};

/// The X11 half alone on a display with nothing but misbehaving programs. Whatever they do, no
/// request of ours fails without somebody knowing that it may.
class HostileTest : public testing::Test {
 protected:
  explicit HostileTest(const testbed::PrivateDisplay::Options& options =
                           {.windowManager = testbed::WindowManager::none})
      : display_(options), connection_(adopted(display_).name()) {}

  ~HostileTest() override { platform::linux_desktop::shutDownSerialQueues(); }

  void TearDown() override {
    const auto errors = platform::linux_desktop::strayErrors();
    EXPECT_EQ(errors.count, 0) << errors.first;
  }

  testbed::PrivateDisplay display_;
  testbed::XConnection connection_;

 private:
  static const testbed::PrivateDisplay& adopted(const testbed::PrivateDisplay& display) {
    display.adoptEnvironment();
    return display;
  }
};

}  // namespace vistrel::hostile
