#include <cstdlib>
#include <gtest/gtest.h>
#include <memory>
#include <vector>

#include "tests/linux/pictures/MirrorInPanel.h"
#include "tests/linux/pictures/TestCursor.h"
#include "tests/support/InputDriver.h"
#include "tests/support/Poll.h"
#include "tests/support/ScreenReader.h"
#include "tests/support/XWindows.h"

namespace vistrel::platform::linux_desktop {
namespace {

using testbed::Point;
using testbed::Rect;
using testbed::TestWindow;

/// The mean difference of the channels between `picture` and `a`, where `a` and `b` differ.
double errorWhereDifferent(const Bitmap& picture, const Bitmap& a, const Bitmap& b) {
  double sum = 0;
  int count = 0;
  for (int y = 0; y < a.height(); ++y) {
    for (int x = 0; x < a.width(); ++x) {
      if (a.at(x, y) == b.at(x, y)) continue;
      const auto& one = picture.at(x, y);
      const auto& other = a.at(x, y);
      sum += std::abs(one.red - other.red) + std::abs(one.green - other.green) +
             std::abs(one.blue - other.blue);
      count += 3;
    }
  }
  return sum / count;
}

/// A source of 200 × 160 without decoration, and its mirror pixel for pixel beside it.
class CursorOverlayTest : public ::testing::Test {
 protected:
  static constexpr Rect sourceArea{300, 100, 200, 160};
  static constexpr Rect panelArea{20, 30, 200, 160};
  static constexpr Point elsewhere{900, 700};

  CursorOverlayTest() { input_.moveTo(elsewhere); }

  /// The pointer at a place of the source.
  void point(Point inSource) {
    input_.moveTo({sourceArea.x + inSource.x, sourceArea.y + inSource.y});
  }
  /// What stands on the screen there, which is without the pointer.
  Bitmap screen(Rect area) const { return testbed::ScreenReader(hand_).read(area); }
  Bitmap plain() const { return screen(sourceArea); }

  const testbed::PrivateDisplay display_{{.windowManager = testbed::WindowManager::none}};
  const std::unique_ptr<Connection> connection_ = [this] {
    display_.adoptEnvironment();
    return Connection::open();
  }();
  const testbed::XConnection hand_{display_.name()};
  testbed::InputDriver input_{hand_};
  TestWindow source_{display_.name(), {.area = sourceArea, .managed = false}};
};

TEST_F(CursorOverlayTest, IsDrawnPixelForPixelAndLeavesNoTrail) {
  MirrorInPanel mirror(display_, {.source = source_.id(), .panel = panelArea});
  const Bitmap plain = this->plain();
  EXPECT_TRUE(mirror.eventuallyShows(plain));
  for (const auto& look :
       {CursorLook::translucent(24, 24, {3, 5}), CursorLook::translucent(64, 64, {60, 2}),
        CursorLook::translucent(13, 31, {6, 30})}) {
    const CursorOfWindow cursor(*connection_, source_.id(), {look});
    // In the middle, over the edges between the colours, over all edges of the picture.
    for (const Point place :
         {Point{50, 40}, {53, 40}, {100, 80}, {0, 0}, {199, 159}, {199, 0}, {0, 159}, {120, 30}}) {
      point(place);
      EXPECT_TRUE(mirror.eventuallyShows(withCursor(plain, look, place)))
          << look.width << " wide at " << place.x << ", " << place.y;
    }
    input_.moveTo(elsewhere);
    EXPECT_TRUE(mirror.eventuallyShows(plain));
  }
}

TEST_F(CursorOverlayTest, ChangesItsLookWhileItRests) {
  MirrorInPanel mirror(display_, {.source = source_.id(), .panel = panelArea});
  const Bitmap plain = this->plain();
  const Point place{80, 70};
  point(place);
  const auto first = CursorLook::uniform(16, 16, testbed::white);
  const auto second = CursorLook::uniform(20, 12, testbed::black);
  {
    const CursorOfWindow cursor(*connection_, source_.id(), {first});
    EXPECT_TRUE(mirror.eventuallyShows(withCursor(plain, first, place)));
    const CursorOfWindow other(*connection_, source_.id(), {second});
    EXPECT_TRUE(mirror.eventuallyShows(withCursor(plain, second, place)));
  }
  {
    const CursorOfWindow animated(*connection_, source_.id(), {first, second}, 300);
    for (const auto& look : {first, second, first, second}) {
      EXPECT_TRUE(mirror.eventuallyShows(withCursor(plain, look, place)));
    }
  }
  const CursorOfWindow cursor(*connection_, source_.id(), {first});
  EXPECT_TRUE(mirror.eventuallyShows(withCursor(plain, first, place)));
  const CursorOfWindow invisible(*connection_, source_.id(), {CursorLook{1, 1, {0}}});
  EXPECT_TRUE(mirror.eventuallyShows(plain));
}

TEST_F(CursorOverlayTest, IsDrawnOnlyWhileItIsOverTheSource) {
  const auto look = CursorLook::translucent(24, 24, {3, 5});
  const CursorOfWindow cursor(*connection_, source_.id(), {look});
  MirrorInPanel mirror(display_, {.source = source_.id(), .panel = panelArea});
  const Bitmap plain = this->plain();
  const Point place{80, 70};
  point(place);
  EXPECT_TRUE(mirror.eventuallyShows(withCursor(plain, look, place)));
  {
    SCOPED_TRACE("another window comes between, and goes");
    TestWindow cover(display_.name(), {.area = {350, 150, 60, 60}, .managed = false});
    EXPECT_TRUE(mirror.eventuallyShows(plain));
    // Still over the source's area, and next to what covers it.
    point({20, 20});
    EXPECT_TRUE(mirror.eventuallyShows(withCursor(plain, look, {20, 20})));
    point(place);
    EXPECT_TRUE(mirror.eventuallyShows(plain));
    cover.destroy();
  }
  EXPECT_TRUE(mirror.eventuallyShows(withCursor(plain, look, place)));
  {
    SCOPED_TRACE("the source moves under the pointer");
    source_.moveTo({sourceArea.x + 30, sourceArea.y - 10});
    EXPECT_TRUE(mirror.eventuallyShows(withCursor(plain, look, {place.x - 30, place.y + 10})));
    source_.moveTo({sourceArea.x + 300, sourceArea.y});
    EXPECT_TRUE(mirror.eventuallyShows(plain));
    source_.moveTo({sourceArea.x, sourceArea.y});
    EXPECT_TRUE(mirror.eventuallyShows(withCursor(plain, look, place)));
  }
  {
    SCOPED_TRACE("a hidden source keeps its picture");
    source_.unmap();
    source_.map();
    EXPECT_TRUE(mirror.eventuallyShows(withCursor(plain, look, place)));
  }
}

TEST_F(CursorOverlayTest, IsDrawnOverWindowsInsideTheSource) {
  const auto child = xcb_generate_id(hand_.get());
  const std::uint32_t colour = hand_.screen().white_pixel;
  xcb_create_window(hand_.get(), XCB_COPY_FROM_PARENT, child, source_.id(), 40, 40, 60, 60, 0,
                    XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXEL,
                    &colour);
  xcb_map_window(hand_.get(), child);
  hand_.sync();
  const auto outside = CursorLook::translucent(24, 24, {3, 5});
  const auto inside = CursorLook::translucent(16, 30, {8, 8});
  const CursorOfWindow cursor(*connection_, source_.id(), {outside});
  const CursorOfWindow childsCursor(*connection_, child, {inside});
  MirrorInPanel mirror(display_, {.source = source_.id(), .panel = panelArea});
  const Bitmap plain = this->plain();
  for (const Point place : {Point{39, 60}, {40, 60}, {70, 70}, {99, 99}, {100, 100}}) {
    point(place);
    const bool isInside = place.x >= 40 && place.x < 100;
    EXPECT_TRUE(mirror.eventuallyShows(withCursor(plain, isInside ? inside : outside, place)))
        << place.x << ", " << place.y;
  }
}

TEST_F(CursorOverlayTest, IsNotDrawnWhereThePanelItselfCoversTheSource) {
  const auto look = CursorLook::translucent(24, 24, {3, 5});
  const CursorOfWindow cursor(*connection_, source_.id(), {look});
  const Bitmap plain = this->plain();
  const Rect overSource{sourceArea.x + 100, sourceArea.y + 10, 200, 160};
  MirrorInPanel mirror(display_, {.source = source_.id(), .panel = overSource});
  point({50, 50});
  EXPECT_TRUE(mirror.eventuallyShows(withCursor(plain, look, {50, 50})));
  point({150, 50});
  EXPECT_TRUE(mirror.eventuallyShows(plain));
}

TEST_F(CursorOverlayTest, IsLeftOutWhereTheStreamLeavesItOut) {
  const auto look = CursorLook::uniform(16, 16, testbed::white);
  const CursorOfWindow cursor(*connection_, source_.id(), {look});
  MirrorInPanel with(display_, {.source = source_.id(), .panel = panelArea});
  MirrorInPanel without(
      display_, {.source = source_.id(), .panel = {20, 300, 200, 160}, .showsCursor = false});
  const Bitmap plain = this->plain();
  EXPECT_TRUE(without.eventuallyShows(plain));
  for (const Point place : {Point{80, 70}, {81, 70}, {10, 10}}) {
    point(place);
    EXPECT_TRUE(with.eventuallyShows(withCursor(plain, look, place)));
    EXPECT_EQ(without.shown(), plain);
  }
  // Its frames take in what changes.
  source_.paint({0, 0, 100, 80}, testbed::yellow);
  EXPECT_TRUE(without.eventuallyShows(this->plain()));
}

TEST_F(CursorOverlayTest, IsScaledWithThePicture) {
  const auto look = CursorLook::framed(24, 24);
  const CursorOfWindow cursor(*connection_, source_.id(), {look});
  const Bitmap plain = this->plain();
  for (const PixelSize size :
       {PixelSize{400, 320}, {150, 120}, {100, 80}, {67, 54}, {55, 44}, {25, 20}}) {
    MirrorInPanel mirror(display_,
                         {.source = source_.id(), .panel = {600, 200, size.width, size.height}});
    for (const Point place : {Point{60, 50}, {63, 51}, {190, 150}, {66, 52}}) {
      point(place);
      const Bitmap without = areaAveraged(plain, size);
      const Bitmap with = areaAveraged(withCursor(plain, look, place), size);
      EXPECT_TRUE(testbed::eventually([&] {
        return errorWhereDifferent(mirror.shown(), with, without) < 30;
      })) << size.width
          << " wide, " << place.x << ", " << place.y << ": "
          << errorWhereDifferent(mirror.shown(), with, without);
    }
    input_.moveTo(elsewhere);
  }
}

TEST_F(CursorOverlayTest, ARestingPointerCausesNoFrames) {
  const CursorOfWindow cursor(*connection_, source_.id(), {CursorLook::translucent(24, 24, {})});
  MirrorInPanel mirror(display_, {.source = source_.id(), .panel = panelArea});
  const Bitmap plain = this->plain();
  point({80, 70});
  EXPECT_TRUE(
      mirror.eventuallyShows(withCursor(plain, CursorLook::translucent(24, 24, {}), {80, 70})));
  const auto before = mirror.frames().size();
  // As long as a lively source takes for a second's frames.
  TestWindow lively(display_.name(), {.area = {600, 400, 50, 50}, .managed = false});
  MirrorInPanel other(display_, {.source = lively.id(), .panel = {20, 300, 50, 50}});
  bool flip = false;
  EXPECT_TRUE(testbed::eventually([&] {
    flip = !flip;
    lively.paint({0, 0, 50, 50}, flip ? testbed::white : testbed::red);
    return other.frames().size() > 30;
  }));
  EXPECT_EQ(mirror.frames().size(), before);
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
