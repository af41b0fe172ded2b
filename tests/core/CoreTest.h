#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "mirror/WindowMirrorHUDController.h"
#include "platform/simulated/SimulatedBackend.h"
#include "tests/core/MirrorInsides.h"
#include "tests/core/PanelParts.h"

namespace vistrel {

using platform::Color;
using platform::DesktopWindows;
using platform::Error;
using platform::ListedWindows;
using platform::Point;
using platform::rect;
using platform::Rect;
using platform::Redisplay;
using platform::ShareableWindow;
using platform::Size;
using platform::WindowID;
using platform::WindowRecord;
using platform::simulated::blackPixels;
using platform::simulated::ContentRequest;
using platform::simulated::Frame;
using platform::simulated::PeerCall;
using platform::simulated::Pixels;
using platform::simulated::Request;
using platform::simulated::SimulatedBackend;
using platform::simulated::SimulatedCapture;
using platform::simulated::SimulatedDesktop;
using platform::simulated::StreamCall;
using platform::simulated::StreamTap;
using testing::ElementsAre;
using testing::IsEmpty;

/// A simulated desktop in virtual time, and windows of other programs on it.
class CoreTest : public testing::Test {
 protected:
  explicit CoreTest(platform::simulated::Mode mode = platform::simulated::Mode::virtualTime)
      : desktop_(mode) {}

  /// An ordinary window of "App" with the title "Title", 1000 × 500 points, unless `change` makes
  /// it another.
  WindowRecord openSource(const std::function<void(ShareableWindow&)>& change = {});
  /// The one of an application's name and a title.
  WindowRecord openSource(const std::string& application, const std::string& title);

  static Pixels brightPixels(std::int64_t width = 40, std::int64_t height = 20);

  SimulatedCapture& capture() { return desktop_.screenCapture(); }
  SimulatedDesktop& windows() { return desktop_.windows(); }

  SimulatedBackend desktop_;
};

/// Stands in for the registry of mirrors.
struct RecordingHost : MirrorHost {
  Rect snap(const Rect& rect, const WindowMirrorHUDController&) const override {
    return {{rect.minX() + snapOffset.x, rect.minY() + snapOffset.y}, {1, 1}};
  }
  std::size_t mirrorCount() const override { return count; }
  void closeAll() override { ++closeAllCount; }

  Point snapOffset;
  std::size_t count = 1;
  int closeAllCount = 0;
};

/// With one mirror of one source, held by the test as the registry would hold it.
class MirrorTest : public CoreTest {
 protected:
  /// Makes the mirror, hidden.
  void makeMirror(const WindowRecord& source, int cascade = 0);
  /// Makes the mirror of an ordinary source, shows it, and lets its stream start.
  void showMirror();

  /// What a mirror's stream is to be configured with at a size in pixels.
  static platform::StreamConfiguration configurationOf(std::int64_t width, std::int64_t height);

  /// Delivers a frame to the mirror's last stream and lets it be handled.
  void deliver(Frame frame);
  void deliverPicture() { deliver({.image = brightPixels()}); }
  std::shared_ptr<StreamTap> stream() { return capture().lastStream(); }

  std::shared_ptr<const platform::Image> shownImage() {
    return partsOf(*mirror_).content->layer()->contents();
  }
  Color dot() { return *partsOf(*mirror_).liveDot->layer()->backgroundColor(); }
  std::string status() {
    return partsOf(*mirror_).statusLabel->isHidden() ? ""
                                                     : partsOf(*mirror_).statusLabel->stringValue();
  }

  std::shared_ptr<RecordingHost> host_ = std::make_shared<RecordingHost>();
  std::shared_ptr<WindowMirrorHUDController> mirror_;
  std::vector<WindowID> closed_;  // what `onClosed` was told
};

}  // namespace vistrel
