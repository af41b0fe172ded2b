#include <set>
#include <unistd.h>

#include "tests/managed/ManagedTest.h"

namespace vistrel::testbed {
namespace {

class ManagedList : public ManagedTest {
 protected:
  std::set<std::string> ordinaryTitles() {
    std::set<std::string> titles;
    for (const auto& each : session_.listed()) {
      if (each->windowLayer == 0) {
        titles.insert(each->title.value_or(""));
      }
    }
    return titles;
  }
  bool isOnScreen(const TestWindow& window) {
    const auto record = session_.listed(window.id(), platform::ListedWindows::all);
    return record && record->isOnScreen;
  }
};

TEST_P(ManagedList, HoldsTheWindowsOfApplicationsAndNoneOfTheManagersOwn) {
  const auto framed = open({.title = "Framed", .area = {100, 100, 300, 200}});
  const auto plain = open({.title = "Plain", .area = {500, 100, 300, 200}, .decorated = false});
  const auto menu = open({.title = "Menu", .area = {900, 100, 200, 200}, .managed = false});
  // Managers list a window some time after they have put it on the screen.
  const std::set<std::string> theirs{"Framed", "Plain"};
  EXPECT_TRUE(eventually([&] { return ordinaryTitles() == theirs; }))
      << ::testing::PrintToString(ordinaryTitles());
}

TEST_P(ManagedList, GivesTheFrameThatAPersonSees) {
  const auto window = open();
  const auto isSeenAsListed = [&] {
    const Rect listed = listedFrame(window->id());
    return listed.width > 0 && listed == seenOverWallpaper();
  };
  EXPECT_TRUE(eventually(isSeenAsListed)) << listedFrame(window->id());
  EXPECT_GT(listedFrame(window->id()).height, 300) << "without a title bar";
  addStates(*window, {"_NET_WM_STATE_MAXIMIZED_HORZ", "_NET_WM_STATE_MAXIMIZED_VERT"});
  EXPECT_TRUE(eventually([&] { return listedFrame(window->id()) == wholeScreen; }));
  EXPECT_TRUE(eventually(isSeenAsListed));
  removeStates(*window, {"_NET_WM_STATE_MAXIMIZED_HORZ", "_NET_WM_STATE_MAXIMIZED_VERT"});
  EXPECT_TRUE(eventually([&] { return listedFrame(window->id()) != wholeScreen; }));
  EXPECT_TRUE(eventually(isSeenAsListed));
  // mutter 43.8 leaves the former frame's extents on the window.
  setDecorated(*window, false);
  EXPECT_TRUE(eventually([&] { return listedFrame(window->id()) == window->area(); }));
  EXPECT_TRUE(eventually(isSeenAsListed)) << listedFrame(window->id());
}

TEST_P(ManagedList, LeavesOutWhatIsNotOnScreen) {
  const auto window = open();
  ASSERT_TRUE(eventually([&] { return isOnScreen(*window); }));
  constexpr std::uint32_t iconicState = 3;
  connection().sendToManager(window->id(), "WM_CHANGE_STATE", {iconicState});
  EXPECT_TRUE(eventually([&] { return !isOnScreen(*window); })) << "minimised";
  activate(*window);
  EXPECT_TRUE(eventually([&] { return isOnScreen(*window); })) << "back";
  sendToDesktop(*window, 1);
  EXPECT_TRUE(eventually([&] { return !isOnScreen(*window); })) << "on another desktop";
  sendToDesktop(*window, 0);
  EXPECT_TRUE(eventually([&] { return isOnScreen(*window); })) << "on this desktop again";
  addStates(*window, {"_NET_WM_STATE_SHADED"});
  EXPECT_TRUE(eventually([&] { return !isOnScreen(*window); })) << "rolled up";
  removeStates(*window, {"_NET_WM_STATE_SHADED"});
  EXPECT_TRUE(eventually([&] { return isOnScreen(*window); })) << "rolled down";
}

VISTREL_WITH_EACH_MANAGER(ManagedList);

class UnmanagedList : public ManagedTest {
 protected:
  UnmanagedList() : ManagedTest(WindowManager::none) {}
};

TEST_F(UnmanagedList, HoldsTheWindowsOfApplicationsAsTheyAre) {
  const auto window = open();
  const auto menu = open({.title = "Menu", .area = {900, 100, 200, 200}, .managed = false});
  ASSERT_NE(session_.listed(menu->id()), nullptr);
  EXPECT_NE(session_.listed(menu->id())->windowLayer, 0);
  EXPECT_EQ(session_.listed(window->id())->windowLayer, 0);
  EXPECT_EQ(listedFrame(window->id()), window->area());
}

}  // namespace
}  // namespace vistrel::testbed
