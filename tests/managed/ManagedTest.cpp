#include "tests/managed/ManagedTest.h"

#include <algorithm>
#include <utility>

#include "tests/support/ManagerProbe.h"

namespace vistrel::testbed {
namespace {

/// Rounded corners of frames fit into squares of this size.
constexpr int cornerSize = 8;

bool isInCorner(const Picture& picture, int x, int y) {
  const int fromSide = std::min(x, picture.width() - 1 - x);
  const int fromEnd = std::min(y, picture.height() - 1 - y);
  return fromSide < cornerSize && fromEnd < cornerSize;
}

/// The wallpaper, or a shadow on it.
bool isWallpaper(Rgb pixel) { return pixel.green == 0 && pixel.red == pixel.blue && pixel.red > 0; }

/// As the managers' frames are painted, and the black around them; neither the wallpaper nor what a
/// test window shows is.
bool isGrey(Rgb pixel) { return similar(pixel, {pixel.green, pixel.green, pixel.green}, 4); }

/// In a rounded corner a pixel may be the frame's, the wallpaper's, or, where a compositor smooths
/// the edge, between the two: nothing but the frame may be left in the picture.
bool isCornerOf(Rgb pixel, Rgb onScreen) {
  return pixel == onScreen ? !isWallpaper(pixel) : isGrey(pixel);
}

}  // namespace

std::unique_ptr<TestWindow> ManagedTest::openWallpaper() {
  auto window = open({.title = "Wallpaper",
                      .area = wholeScreen,
                      .picture = Quadrants::uniform(magenta),
                      .decorated = false});
  // Managers look at a window's type when it is mapped.
  window->unmap();
  connection().setNumbers(window->id(), "_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM,
                          {connection().atom("_NET_WM_WINDOW_TYPE_DESKTOP")});
  connection().sync();
  window->map();
  return window;
}

void ManagedTest::changeStates(const TestWindow& window, std::uint32_t action,
                               const std::vector<std::string>& states) const {
  std::vector<std::uint32_t> data{action};
  for (const std::string& state : states) {
    data.push_back(connection().atom(state));
  }
  data.resize(3);
  data.push_back(byPerson);
  connection().sendToManager(window.id(), "_NET_WM_STATE", data);
}

Picture ManagedTest::settledScreen() const {
  constexpr int looksAlike = 30;
  Picture screen;
  int looks = 0;
  EXPECT_TRUE(eventually([&] {
    // One that is held up paints nothing, which proves nothing.
    awaitManager(connection());
    const Picture former = std::exchange(screen, session_.screen().readAll());
    looks = screen == former ? looks + 1 : 0;
    return looks == looksAlike;
  }));
  return screen;
}

Rect ManagedTest::seenOverWallpaper() const {
  const Picture screen = session_.screen().readAll();
  int left = screen.width();
  int top = screen.height();
  int right = 0;
  int bottom = 0;
  for (int y = 0; y < screen.height(); ++y) {
    for (int x = 0; x < screen.width(); ++x) {
      if (isWallpaper(screen.at(x, y))) {
        continue;
      }
      left = std::min(left, x);
      right = std::max(right, x + 1);
      top = std::min(top, y);
      bottom = std::max(bottom, y + 1);
    }
  }
  return right > left ? Rect{left, top, right - left, bottom - top} : Rect{};
}

Rect ManagedTest::listedFrame(xcb_window_t window) {
  const auto record = session_.listed(window);
  if (!record) {
    return {};
  }
  const auto& frame = record->frame;
  return {static_cast<int>(frame.minX()), static_cast<int>(frame.minY()),
          static_cast<int>(frame.width()), static_cast<int>(frame.height())};
}

bool ManagedTest::matchesScreen(const StreamedWindow& stream, xcb_window_t window) {
  const Rect frame = listedFrame(window);
  const Picture picture = stream.picture();
  if (picture.width() != frame.width || picture.height() != frame.height || frame.width == 0) {
    return false;
  }
  const Picture screen = session_.screen().read(frame);
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      const Rgb pixel = picture.at(x, y);
      const Rgb onScreen = screen.at(x, y);
      if (isInCorner(picture, x, y) ? !isCornerOf(pixel, onScreen) : pixel != onScreen) {
        return false;
      }
    }
  }
  return true;
}

}  // namespace vistrel::testbed
