#include <array>
#include <xcb/shape.h>

#include "tests/managed/ManagedTest.h"

namespace vistrel::testbed {
namespace {

constexpr Rect area{300, 250, 400, 300};
/// A window in the shape of a T: both lower corners are cut away, at odd columns and rows.
constexpr int stemLeft = 101;
constexpr int stemRight = 299;
constexpr int stemTop = 201;

bool isInside(int x, int y) { return y < stemTop || (x >= stemLeft && x < stemRight); }

/// The four pixels that one of half the size is made of.
bool isWhollyInside(int x, int y) {
  return isInside(x, y) && isInside(x + 1, y) && isInside(x, y + 1) && isInside(x + 1, y + 1);
}

class ShapedPicture : public ManagedTest {
 protected:
  using ManagedTest::ManagedTest;

  std::unique_ptr<TestWindow> openWhite() {
    return open({.area = area, .picture = Quadrants::uniform(white), .decorated = false});
  }
  void cutToShape(const TestWindow& window) {
    const std::array<xcb_rectangle_t, 2> shape{
        {{0, 0, area.width, stemTop},
         {stemLeft, stemTop, stemRight - stemLeft, area.height - stemTop}}};
    xcb_shape_rectangles(connection().get(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING,
                         XCB_CLIP_ORDERING_UNSORTED, window.id(), 0, 0, shape.size(), shape.data());
    connection().sync();
  }
  static bool isCut(const Picture& picture, Rgb inside) {
    for (int y = 0; y < picture.height(); ++y) {
      for (int x = 0; x < picture.width(); ++x) {
        if (picture.at(x, y) != (isInside(x, y) ? inside : black)) {
          return false;
        }
      }
    }
    return picture.width() == area.width;
  }
};

TEST_P(ShapedPicture, IsBlackWhereTheWindowIsCutAway) {
  const auto window = openWhite();
  const auto streamed = session_.stream(window->id());
  ASSERT_TRUE(eventually([&] { return matchesScreen(*streamed, window->id()); }));
  cutToShape(*window);
  EXPECT_TRUE(eventually([&] { return isCut(streamed->picture(), white); }));
  window->show(Quadrants::uniform(green));
  EXPECT_TRUE(eventually([&] { return isCut(streamed->picture(), green); }));
}

VISTREL_WITH_EACH_MANAGER(ShapedPicture);

class ShapedPanel : public ShapedPicture {
 protected:
  ShapedPanel() : ShapedPicture(WindowManager::none) {}
};

TEST_F(ShapedPanel, MixesNothingIntoAnEdgeThatWasCutAway) {
  const auto window = openWhite();
  const auto streamed = session_.stream(window->id());
  cutToShape(*window);
  // White stays what has been cut away.
  window->show(Quadrants::uniform(green));
  ASSERT_TRUE(eventually([&] { return isCut(streamed->picture(), green); }));

  const Rect half{0, 0, area.width / 2, area.height / 2};
  const auto panel = open({.area = half, .managed = false});
  const auto surface = session_.providers().panelWindows->makeSurface(panel->id());
  surface->setChrome(
      {.width = half.width,
       .height = half.height,
       .pixels = {half.width, std::vector<std::uint32_t>(
                                  static_cast<std::size_t>(half.width * half.height), 0)},
       .contents = platform::linux_desktop::PixelRect{0, 0, half.width, half.height}},
      nullptr);
  surface->setContents(streamed->image());
  EXPECT_TRUE(eventually([&] {
    const Picture shown = session_.screen().read(half);
    for (int y = 0; y < half.height; ++y) {
      for (int x = 0; x < half.width; ++x) {
        if (shown.at(x, y) != (isWhollyInside(2 * x, 2 * y) ? green : black)) {
          return false;
        }
      }
    }
    return true;
  }));
  surface->detach();
}

}  // namespace
}  // namespace vistrel::testbed
