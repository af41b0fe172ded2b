#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>

#include "catalogue/MirrorWorthyWindows.h"
#include "platform/Text.h"
#include "platform/simulated/SimulatedBackend.h"

namespace vistrel {
namespace {

using platform::rect;
using platform::ShareableWindow;
using platform::WindowID;
using platform::WindowRecord;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::int32_t ownProcess = 77;

std::shared_ptr<const platform::SharedApplication> application(const std::string& name,
                                                               std::int32_t pid = 5) {
  return std::make_shared<platform::SharedApplication>(
      platform::SharedApplication{.applicationName = name, .processID = pid});
}

/// A window that is listed unless `change` makes it unworthy.
WindowRecord window(WindowID id, const std::function<void(ShareableWindow&)>& change = {}) {
  ShareableWindow facts{.windowID = id,
                        .title = "Title",
                        .frame = rect(0, 0, 400, 300),
                        .owningApplication = application("App"),
                        .isOnScreen = true,
                        .windowLayer = 0};
  if (change) change(facts);
  return std::make_shared<ShareableWindow>(std::move(facts));
}

WindowRecord named(WindowID id, const char* applicationName, const std::string& title) {
  return window(id, [&](ShareableWindow& w) {
    w.title = title;
    w.owningApplication = applicationName == nullptr ? nullptr : application(applicationName);
  });
}

WindowRecord sized(WindowID id, double width, double height) {
  return window(id, [&](ShareableWindow& w) { w.frame = rect(0, 0, width, height); });
}

class MirrorWorthyWindowsTest : public testing::Test {
 protected:
  std::vector<WindowID> listed(const std::vector<WindowRecord>& windows) {
    std::vector<WindowID> ids;
    for (const auto& record : mirrorWorthyWindows(windows, ownProcess)) {
      ids.push_back(record->windowID);
    }
    return ids;
  }

  platform::simulated::SimulatedBackend desktop_;
};

TEST_F(MirrorWorthyWindowsTest, ListsOrdinaryTitledWindowsOnScreen) {
  EXPECT_THAT(listed({window(1)}), ElementsAre(1));
  EXPECT_THAT(listed({}), IsEmpty());
}

TEST_F(MirrorWorthyWindowsTest, HandsOutTheRecordsThemselves) {
  const auto record = window(1);
  EXPECT_THAT(mirrorWorthyWindows({record}, ownProcess), ElementsAre(record));
}

TEST_F(MirrorWorthyWindowsTest, DropsWindowsThatAreNotOnScreen) {
  EXPECT_THAT(listed({window(1, [](auto& w) { w.isOnScreen = false; })}), IsEmpty());
}

TEST_F(MirrorWorthyWindowsTest, DropsWindowsOnOtherLayers) {
  EXPECT_THAT(listed({window(1, [](auto& w) { w.windowLayer = 25; }),
                      window(2, [](auto& w) { w.windowLayer = -1; })}),
              IsEmpty());
}

TEST_F(MirrorWorthyWindowsTest, DropsUntitledWindowsAndKeepsATitleOfBlanks) {
  EXPECT_THAT(
      listed({window(1, [](auto& w) { w.title = std::nullopt; }),
              window(2, [](auto& w) { w.title = ""; }), window(3, [](auto& w) { w.title = " "; })}),
      ElementsAre(3));
}

TEST_F(MirrorWorthyWindowsTest, KeepsWindowsOfEightyBySixtyPointsAndDropsSmallerOnes) {
  EXPECT_THAT(listed({sized(1, 80, 60), sized(2, 79.9, 60), sized(3, 80, 59.9)}), ElementsAre(1));
}

TEST_F(MirrorWorthyWindowsTest, DropsTheProgramsOwnWindows) {
  EXPECT_THAT(
      listed({window(1, [](auto& w) { w.owningApplication = application("A", ownProcess); }),
              window(2)}),
      ElementsAre(2));
}

TEST_F(MirrorWorthyWindowsTest, KeepsWindowsWithoutAnApplicationAndListsThemFirst) {
  EXPECT_THAT(listed({named(1, "alpha", "a"), named(2, nullptr, "z")}), ElementsAre(2, 1));
}

TEST_F(MirrorWorthyWindowsTest, SortsApplicationsWithoutRegardToCase) {
  EXPECT_THAT(listed({named(1, "Beta", "a"), named(2, "alpha", "b")}), ElementsAre(2, 1));
}

TEST_F(MirrorWorthyWindowsTest, SortsTitlesOfAnApplicationWithoutRegardToCase) {
  EXPECT_THAT(listed({named(1, "App", "b"), named(2, "App", "A")}), ElementsAre(2, 1));
}

TEST_F(MirrorWorthyWindowsTest, KeepsTheServicesOrderOfWindowsThatCompareAlike) {
  EXPECT_THAT(listed({named(3, "App", "same"), named(1, "App", "Same"), named(2, "App", "SAME")}),
              ElementsAre(3, 1, 2));
}

TEST_F(MirrorWorthyWindowsTest, InterleavesApplicationsThatDifferInCaseAlone) {
  EXPECT_THAT(listed({named(1, "Foo", "z"), named(2, "foo", "a"), named(3, "Foo", "z")}),
              ElementsAre(1, 2, 3));
  EXPECT_THAT(listed({named(1, "foo", "b"), named(2, "Foo", "a")}), ElementsAre(1, 2));
}

TEST_F(MirrorWorthyWindowsTest, SortsNeighboursOfOneSpellingByTitleAndMovesNoneOverAnother) {
  EXPECT_THAT(listed({named(1, "Foo", "d"), named(2, "Foo", "c"), named(3, "foo", "b"),
                      named(4, "Foo", "b"), named(5, "Foo", "a"), named(6, "FOO", "z")}),
              ElementsAre(2, 1, 3, 5, 4, 6));
}

TEST_F(MirrorWorthyWindowsTest, CountsAsNeighboursThoseWithOtherApplicationsBetweenThem) {
  EXPECT_THAT(listed({named(1, "Foo", "b"), named(2, "Bar", "x"), named(3, "Foo", "a"),
                      named(4, "foo", "c"), named(5, "Zoo", "x"), named(6, "Foo", "a")}),
              ElementsAre(2, 3, 1, 4, 6, 5));
}

class RandomWindows {
 public:
  explicit RandomWindows(unsigned seed) : random_(seed) {}

  std::vector<WindowRecord> some() {
    std::vector<WindowRecord> windows(below(300));
    WindowID id = 1;
    for (auto& record : windows) record = one(id++);
    return windows;
  }

 private:
  std::size_t below(std::size_t limit) { return random_() % limit; }

  WindowRecord one(WindowID id) {
    static const char* const names[] = {"alpha", "Alpha", "Beta",  "BETA", "beta",
                                        "gamma", "Ärger", "ärger", "жук",  "Жук"};
    static const char* const titles[] = {"", " ", "a", "A", "b", "Ж", "ж", "zebra"};
    const double widths[] = {79.9, 80, 500};
    const double heights[] = {59.9, 60, 500};
    ShareableWindow w{.windowID = id,
                      .frame = rect(0, 0, widths[below(3)], heights[below(3)]),
                      .isOnScreen = below(5) != 0,
                      .windowLayer = below(6) == 0 ? 3 : 0};
    if (below(6) != 0) w.title = titles[below(std::size(titles))];
    if (below(6) != 0) {
      const std::int32_t pid = below(8) == 0 ? ownProcess : 5;
      w.owningApplication = application(names[below(std::size(names))], pid);
    }
    return std::make_shared<ShareableWindow>(std::move(w));
  }

  std::mt19937 random_;
};

/// Swaps neighbours as long as any are the wrong way round.
template <class Precedes>
void swapNeighbours(std::vector<WindowRecord>& windows, const Precedes& precedes) {
  for (bool changed = true; changed;) {
    changed = false;
    for (std::size_t i = 1; i < windows.size(); ++i) {
      if (!precedes(windows[i], windows[i - 1])) continue;
      std::swap(windows[i], windows[i - 1]);
      changed = true;
    }
  }
}

/// The rules one after the other, and sorts that move one window at a time.
std::vector<WindowRecord> naively(const std::vector<WindowRecord>& windows) {
  std::vector<WindowRecord> kept;
  for (const auto& w : windows) {
    if (!w->isOnScreen || w->windowLayer != 0) continue;
    if (!w->title || w->title->empty()) continue;
    if (w->frame.width() < 80 || w->frame.height() < 60) continue;
    if (w->owningApplication && w->owningApplication->processID == ownProcess) continue;
    kept.push_back(w);
  }
  const auto name = [](const WindowRecord& w) {
    return w->owningApplication ? w->owningApplication->applicationName : std::string();
  };
  const auto isAscending = [](const std::string& a, const std::string& b) {
    return platform::localizedCaseInsensitiveCompare(a, b) == platform::ComparisonResult::ascending;
  };
  const auto byName = [&](const WindowRecord& a, const WindowRecord& b) {
    return isAscending(name(a), name(b));
  };
  const auto byTitle = [&](const WindowRecord& a, const WindowRecord& b) {
    return name(a) == name(b) && isAscending(*a->title, *b->title);
  };
  swapNeighbours(kept, byName);
  swapNeighbours(kept, byTitle);
  return kept;
}

TEST_F(MirrorWorthyWindowsTest, AgreesWithANaiveModelForRandomWindows) {
  RandomWindows random(17);
  for (int round = 0; round < 300; ++round) {
    const auto windows = random.some();
    ASSERT_EQ(mirrorWorthyWindows(windows, ownProcess), naively(windows)) << "round " << round;
  }
}

TEST_F(MirrorWorthyWindowsTest, ChangesNothingInAListThatItMade) {
  RandomWindows random(19);
  for (int round = 0; round < 100; ++round) {
    const auto once = mirrorWorthyWindows(random.some(), ownProcess);
    ASSERT_EQ(mirrorWorthyWindows(once, ownProcess), once);
  }
}

}  // namespace
}  // namespace vistrel
