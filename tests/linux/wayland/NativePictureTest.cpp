#include <gtest/gtest.h>
#include <optional>
#include <string>

#include "platform/linux/wayland/PipeWireSource.h"
#include "tests/linux/pictures/TestMirror.h"
#include "tests/support/FakeInput.h"
#include "tests/support/KWinScripts.h"
#include "tests/support/KWinSession.h"
#include "tests/support/NativeWindow.h"
#include "tests/support/Poll.h"

namespace vistrel::platform::linux_desktop {
namespace {

using testbed::eventually;
using testbed::Rect;

constexpr WindowID anyId = 0x80000001;
constexpr testbed::Quadrants otherColours{testbed::white, testbed::blue, testbed::red,
                                          testbed::green};

/// A native window of 400 × 300 and a mirror of it in a panel half as large, in a session of KWin.
class NativePicture : public ::testing::Test {
 protected:
  static constexpr Rect panelArea{40, 40, 200, 150};
  static constexpr testbed::Point place{600, 300};
  static constexpr testbed::Point elsewhere{1200, 1000};

  NativePicture() {
    kwin_.moveTo(title, place);
    hand_.moveTo(elsewhere);
  }

  void mirror() {
    const auto uuid = kwin_.run("tell(String(win('" + std::string(title) + "').internalId))");
    mirror_.start(anyId, [uuid](const CapturingMirror& mirror, WindowID window) {
      return PipeWireSource::open(mirror, window, uuid);
    });
  }
  bool eventuallyShows(const testbed::Quadrants& picture, int width = 400, int height = 300) {
    return eventually([&] { return mirror_.shows(picture, {0, 0, width, height}); });
  }

  static constexpr const char* title = "Mine";
  testbed::KWinSession session_;
  const bool isAdopted_ = (session_.adoptEnvironment(), true);
  testbed::KWinScripts kwin_{session_.busAddress()};
  const testbed::WaylandClient client_;
  testbed::FakeInput hand_{client_};
  std::optional<testbed::NativeWindow> window_{std::in_place, session_.environment(),
                                               testbed::NativeWindow::Options{.title = title}};
  const testbed::XConnection x_{session_.xName()};
  TestMirror mirror_{x_, panelArea, TestMirror::Panels::composited};
};

TEST_F(NativePicture, ArrivesInAPanelAndFollowsTheWindow) {
  mirror();
  EXPECT_TRUE(eventuallyShows(testbed::fourColours));
  EXPECT_TRUE(mirror_.wasGiven(testbed::fourColours));
  window_->show(otherColours);
  EXPECT_TRUE(eventuallyShows(otherColours));
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
