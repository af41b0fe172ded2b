#include <algorithm>
#include <array>
#include <gmock/gmock.h>
#include <limits>
#include <random>

#include "platform/linux/x11/monitors/Struts.h"

namespace vistrel::platform::linux_desktop {
namespace {

using testing::ElementsAre;
using Values = std::vector<std::uint32_t>;

TEST(StrutsOfAWindow, AreReadEdgeByEdge) {
  EXPECT_EQ(strutsFrom({1, 2, 3, 4, 10, 11, 20, 21, 30, 31, 40, 41}, {}),
            (Struts{{1, 10, 11}, {2, 20, 21}, {3, 30, 31}, {4, 40, 41}}));
}

TEST(StrutsOfAWindow, MeanWholeEdgesWhereNoPartsAreNamed) {
  constexpr int last = 32767;
  EXPECT_EQ(strutsFrom({}, {1, 2, 3, 4}),
            (Struts{{1, 0, last}, {2, 0, last}, {3, 0, last}, {4, 0, last}}));
}

TEST(StrutsOfAWindow, AreThoseOfPartsWhereBothAreThere) {
  const auto struts = strutsFrom({0, 0, 30, 0, 0, 0, 0, 0, 5, 9, 0, 0}, {0, 0, 99, 0});
  ASSERT_TRUE(struts);
  EXPECT_EQ(struts->top, (Strut{30, 5, 9}));
}

TEST(StrutsOfAWindow, AreNoneWhenPropertiesAreOfAWrongLength) {
  EXPECT_EQ(strutsFrom({}, {}), std::nullopt);
  EXPECT_EQ(strutsFrom(Values(11, 1), Values(3, 1)), std::nullopt);
  EXPECT_EQ(strutsFrom(Values(13, 1), Values(5, 1)), std::nullopt);
}

TEST(StrutsOfAWindow, LeaveOutEdgesWhoseValuesMakeNoSense) {
  const auto backwards = strutsFrom({0, 0, 30, 0, 0, 0, 0, 0, 9, 8, 0, 0}, {});
  EXPECT_EQ(backwards, Struts{});
  const auto tooDeep = strutsFrom({}, {0xffffffff, 40000, 32768, 20});
  ASSERT_TRUE(tooDeep);
  EXPECT_EQ(tooDeep->left, Strut{});
  EXPECT_EQ(tooDeep->right, Strut{});
  EXPECT_EQ(tooDeep->top, Strut{});
  EXPECT_EQ(tooDeep->bottom.depth, 20);
}

TEST(StrutsOfAWindow, MayEndBeyondEverything) {
  const auto struts = strutsFrom({0, 0, 30, 0, 0, 0, 0, 0, 5, 0xffffffff, 0, 0}, {});
  ASSERT_TRUE(struts);
  EXPECT_EQ(struts->top, (Strut{30, 5, 32767}));
}

TEST(WorkArea, IsThatOfTheDesktop) {
  const Values property{0, 30, 1280, 994, 10, 20, 300, 400};
  EXPECT_EQ(workAreaFrom(property, 0), (PixelRect{0, 30, 1280, 994}));
  EXPECT_EQ(workAreaFrom(property, 1), (PixelRect{10, 20, 300, 400}));
}

TEST(WorkArea, IsNoneWhenThePropertyIsMalformed) {
  EXPECT_EQ(workAreaFrom({}, 0), std::nullopt);
  EXPECT_EQ(workAreaFrom({0, 0, 10, 10}, 1), std::nullopt);
  EXPECT_EQ(workAreaFrom({0, 0, 10, 10, 5}, 0), std::nullopt);
  EXPECT_EQ(workAreaFrom({0, 0xfffffff0, 10, 10}, 0), std::nullopt);
}

constexpr PixelRect single{0, 0, 1280, 1024};
constexpr PixelRect left{0, 0, 1280, 800};
constexpr PixelRect right{1280, 0, 1280, 1024};
constexpr PixelSize rootOfTwo{2560, 1024};

Dock topBar(const PixelRect& window, int depth) {
  return {window, {.top = {depth, window.x, window.x + window.width - 1}}};
}

TEST(FreeArea, IsTheMonitorWhereNothingIsReserved) {
  EXPECT_THAT(freeAreas({left, right}, {.root = rootOfTwo}), ElementsAre(left, right));
  EXPECT_TRUE(freeAreas({}, {.root = rootOfTwo, .docks = {topBar(left, 30)}}).empty());
}

TEST(FreeArea, LeavesOutTheDeepestDockOfEachEdge) {
  const Dock bar = topBar({0, 0, 1280, 30}, 30);
  const Dock second = topBar({0, 30, 1280, 20}, 50);
  const Dock side{{1200, 0, 80, 1024}, {.right = {80, 0, 1023}}};
  EXPECT_THAT(freeAreas({single}, {.root = {1280, 1024}, .docks = {second, bar, side}}),
              ElementsAre(PixelRect{0, 50, 1200, 974}));
}

TEST(FreeArea, LosesNothingToADockOfAnotherMonitor) {
  const Dock leftOfRight{{1280, 0, 60, 1024}, {.left = {1340, 0, 1023}}};
  EXPECT_THAT(freeAreas({left, right}, {.root = rootOfTwo, .docks = {leftOfRight}}),
              ElementsAre(left, PixelRect{1340, 0, 1220, 1024}));
  const Dock rightOfLeft{{1220, 0, 60, 800}, {.right = {1340, 0, 799}}};
  EXPECT_THAT(freeAreas({left, right}, {.root = rootOfTwo, .docks = {rightOfLeft}}),
              ElementsAre(PixelRect{0, 0, 1220, 800}, right));
  const Dock wholeTopEdge{{0, 0, 1280, 30}, {.top = {30, 0, 32767}}};
  EXPECT_THAT(freeAreas({left, right}, {.root = rootOfTwo, .docks = {wholeTopEdge}}),
              ElementsAre(PixelRect{0, 30, 1280, 770}, right));
}

TEST(FreeArea, EndsAboveADockOnAShortMonitor) {
  const Dock bar{{0, 760, 1280, 40}, {.bottom = {264, 0, 1279}}};
  EXPECT_THAT(freeAreas({left, right}, {.root = rootOfTwo, .docks = {bar}}),
              ElementsAre(PixelRect{0, 0, 1280, 760}, right));
}

TEST(FreeArea, IsSmallerOnEveryMonitorThatADockLiesAcross) {
  EXPECT_THAT(
      freeAreas({left, right}, {.root = rootOfTwo, .docks = {topBar({0, 0, 2560, 30}, 30)}}),
      ElementsAre(PixelRect{0, 30, 1280, 770}, PixelRect{1280, 30, 1280, 994}));
}

TEST(FreeArea, IsThatOfTheNearestMonitorForADockThatHasSlidOff) {
  const Dock hidden{{1400, 1030, 600, 50}, {.bottom = {50, 1400, 1999}}};
  EXPECT_THAT(freeAreas({left, right}, {.root = rootOfTwo, .docks = {hidden}}),
              ElementsAre(left, PixelRect{1280, 0, 1280, 974}));
}

TEST(FreeArea, DoesNotBelieveInMoreThanHalfOfAMonitor) {
  const auto areaUnder = [](int depth) {
    return freeAreas({single}, {.root = {1280, 1024}, .docks = {topBar(single, depth)}}).front();
  };
  EXPECT_EQ(areaUnder(512), (PixelRect{0, 512, 1280, 512}));
  EXPECT_EQ(areaUnder(513), single);
}

TEST(FreeArea, IsNeverSqueezedBetweenOppositeEdges) {
  const auto areaBetween = [](int top, int bottom) {
    const Dock both{single, {.top = {top, 0, 1279}, .bottom = {bottom, 0, 1279}}};
    return freeAreas({single}, {.root = {1280, 1024}, .docks = {both}}).front();
  };
  EXPECT_EQ(areaBetween(512, 256), (PixelRect{0, 512, 1280, 256}));
  EXPECT_EQ(areaBetween(512, 257), single);
}

TEST(FreeArea, HeedsTheManagersWorkAreaOnASingleMonitor) {
  const Reservations reservations{.root = {1280, 1024}, .workArea = PixelRect{0, 24, 1280, 960}};
  EXPECT_THAT(freeAreas({single}, reservations), ElementsAre(PixelRect{0, 24, 1280, 960}));
  EXPECT_THAT(freeAreas({left, right}, reservations), ElementsAre(left, right));
}

TEST(FreeArea, IgnoresAWorkAreaOfNothing) {
  EXPECT_THAT(freeAreas({single}, {.root = {1280, 1024}, .workArea = PixelRect{}}),
              ElementsAre(single));
  EXPECT_THAT(freeAreas({single}, {.root = {1280, 1024}, .workArea = PixelRect{0, 0, 9000, 9000}}),
              ElementsAre(single));
}

// What follows decides everything pixel by pixel.

bool holds(const PixelRect& rect, int x, int y) {
  return x >= rect.x && x < rect.x + rect.width && y >= rect.y && y < rect.y + rect.height;
}

template <class Visit>
void visitPixels(const PixelRect& rect, const Visit& visit) {
  for (int y = rect.y; y < rect.y + rect.height; ++y) {
    for (int x = rect.x; x < rect.x + rect.width; ++x) visit(x, y);
  }
}

bool overlap(const PixelRect& a, const PixelRect& b) {
  bool found = false;
  visitPixels(a, [&](int x, int y) { found = found || holds(b, x, y); });
  return found;
}

int squaredDistance(const PixelRect& a, const PixelRect& b) {
  int least = std::numeric_limits<int>::max();
  visitPixels({a.x, a.y, a.width + 1, a.height + 1}, [&](int ax, int ay) {
    visitPixels({b.x, b.y, b.width + 1, b.height + 1}, [&](int bx, int by) {
      least = std::min(least, (ax - bx) * (ax - bx) + (ay - by) * (ay - by));
    });
  });
  return least;
}

bool isOn(const PixelRect& monitor, const Dock& dock, const std::vector<PixelRect>& monitors) {
  const bool isShown = std::any_of(monitors.begin(), monitors.end(), [&](const PixelRect& each) {
    return overlap(each, dock.window);
  });
  if (isShown) return overlap(monitor, dock.window);
  std::vector<int> distances;
  for (const auto& each : monitors) distances.push_back(squaredDistance(each, dock.window));
  const auto least = std::min_element(distances.begin(), distances.end()) - distances.begin();
  return monitors[static_cast<std::size_t>(least)] == monitor;
}

/// The bands of the root window in which a dock reserves, in the order of the property.
std::array<PixelRect, 4> bandsOf(const Struts& struts, const PixelSize& root) {
  const auto length = [](const Strut& strut) { return strut.last - strut.first + 1; };
  const auto& [atLeft, atRight, atTop, atBottom] = struts;
  return {{{0, atLeft.first, atLeft.depth, length(atLeft)},
           {root.width - atRight.depth, atRight.first, atRight.depth, length(atRight)},
           {atTop.first, 0, length(atTop), atTop.depth},
           {atBottom.first, root.height - atBottom.depth, length(atBottom), atBottom.depth}}};
}

/// Of a monitor the columns, or the rows, with a pixel in the band; none of more than half.
int reservedOf(const PixelRect& monitor, const PixelRect& band, bool countsColumns) {
  std::vector<bool> reserved(
      static_cast<std::size_t>(countsColumns ? monitor.width : monitor.height));
  visitPixels(monitor, [&](int x, int y) {
    const int line = countsColumns ? x - monitor.x : y - monitor.y;
    if (holds(band, x, y)) reserved[static_cast<std::size_t>(line)] = true;
  });
  const auto count = std::count(reserved.begin(), reserved.end(), true);
  return 2 * count > static_cast<long>(reserved.size()) ? 0 : static_cast<int>(count);
}

PixelRect naiveArea(const PixelRect& monitor, const std::vector<PixelRect>& monitors,
                    const Reservations& reservations) {
  std::array<int, 4> most{};
  for (const auto& dock : reservations.docks) {
    if (!isOn(monitor, dock, monitors)) continue;
    const auto bands = bandsOf(dock.struts, reservations.root);
    for (std::size_t i = 0; i < bands.size(); ++i) {
      most[i] = std::max(most[i], reservedOf(monitor, bands[i], i < 2));
    }
  }
  if (4 * (monitor.width - most[0] - most[1]) < monitor.width) most[0] = most[1] = 0;
  if (4 * (monitor.height - most[2] - most[3]) < monitor.height) most[2] = most[3] = 0;
  return {monitor.x + most[0], monitor.y + most[2], monitor.width - most[0] - most[1],
          monitor.height - most[2] - most[3]};
}

/// Small desktops of one to four monitors with docks anywhere.
class AnyDesktop {
 public:
  explicit AnyDesktop(std::mt19937& random) : random_(random) {
    const int columns = number(1, 2);
    const int rows = number(1, 2);
    const int width = number(8, 16);
    const int height = number(8, 16);
    for (int row = 0; row < rows; ++row) {
      for (int column = 0; column < columns; ++column) {
        monitors.push_back(
            {column * width, row * height, number(width / 2, width), number(height / 2, height)});
      }
    }
    reservations.root = {columns * width, rows * height};
    for (int i = number(0, 4); i > 0; --i) reservations.docks.push_back(dock());
  }

  std::vector<PixelRect> monitors;
  Reservations reservations;

 private:
  int number(int least, int most) {
    return std::uniform_int_distribution<int>(least, most)(random_);
  }
  Strut strut(int longest) {
    const int first = number(0, longest);
    return {number(0, 1) * number(0, longest), first, number(first, longest)};
  }
  Dock dock() {
    const auto& [width, height] = reservations.root;
    return {{number(-6, width + 4), number(-6, height + 4), number(1, width), number(1, 6)},
            {strut(width), strut(width), strut(height), strut(height)}};
  }

  std::mt19937& random_;
};

TEST(FreeArea, IsWhatCountingPixelsGives) {
  std::mt19937 random(7);
  for (int i = 0; i < 400; ++i) {
    const AnyDesktop desktop(random);
    const auto areas = freeAreas(desktop.monitors, desktop.reservations);
    ASSERT_EQ(areas.size(), desktop.monitors.size());
    for (std::size_t k = 0; k < areas.size(); ++k) {
      const auto& monitor = desktop.monitors[k];
      ASSERT_EQ(areas[k], naiveArea(monitor, desktop.monitors, desktop.reservations))
          << "desktop " << i << ", monitor " << k;
      ASSERT_GE(4 * areas[k].width, monitor.width);
      ASSERT_GE(4 * areas[k].height, monitor.height);
    }
  }
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
