#pragma once

#include <algorithm>
#include <gtest/gtest.h>
#include <memory>
#include <ostream>
#include <set>
#include <string>
#include <vector>

#include "tests/managed/ParkingBed.h"
#include "tests/support/ManagerProbe.h"
#include "tests/support/Poll.h"
#include "tests/support/XWindows.h"

namespace vistrel::testbed {

using States = std::set<std::string>;

/// What a window has that parking must not cost it.
struct Belongings {
  Rect area;
  States states;
  std::vector<std::uint32_t> desktop;
  bool isViewable = false;

  friend bool operator==(const Belongings&, const Belongings&) = default;
  friend std::ostream& operator<<(std::ostream& stream, const Belongings& all) {
    stream << all.area;
    for (const auto& each : all.states) {
      stream << ", " << each;
    }
    return stream << ", desktop " << (all.desktop.empty() ? -1 : int(all.desktop.front()))
                  << (all.isViewable ? ", viewable" : "");
  }
};

/// Windows that are parked and come back, in the place that the test's parameter names.
class Parked : public ::testing::TestWithParam<ParkingPlace> {
 protected:
  static constexpr int screenWidth = 1280;
  static constexpr int screenHeight = 1024;
  static constexpr std::uint32_t byPerson = 2;
  static constexpr auto horizontally = "_NET_WM_STATE_MAXIMIZED_HORZ";
  static constexpr auto vertically = "_NET_WM_STATE_MAXIMIZED_VERT";
  static constexpr auto fullScreen = "_NET_WM_STATE_FULLSCREEN";
  static constexpr auto rolledUp = "_NET_WM_STATE_SHADED";
  static constexpr auto minimised = "_NET_WM_STATE_HIDDEN";
  static constexpr auto above = "_NET_WM_STATE_ABOVE";
  static constexpr auto below = "_NET_WM_STATE_BELOW";
  static constexpr auto sticky = "_NET_WM_STATE_STICKY";

  const XConnection& connection() { return bed_.connection(); }
  std::unique_ptr<TestWindow> open(const TestWindow::Options& options = {
                                       .area = {300, 250, 400, 300}}) {
    return std::make_unique<TestWindow>(bed_.session().display().name(), options);
  }
  void setGravity(const TestWindow& window, std::uint32_t gravity) {
    auto hints = connection().numbers(window.id(), "WM_NORMAL_HINTS");
    hints.at(17) = gravity;
    connection().setNumbers(window.id(), "WM_NORMAL_HINTS", XCB_ATOM_WM_SIZE_HINTS, hints);
    connection().sync();
  }

  Belongings belongingsOf(const TestWindow& window) {
    Belongings all{.area = window.area(),
                   .desktop = connection().numbers(window.id(), "_NET_WM_DESKTOP"),
                   .isViewable = isViewable(connection(), window.id())};
    for (const auto* each :
         {horizontally, vertically, fullScreen, rolledUp, minimised, above, below, sticky}) {
      if (hasState(connection(), window.id(), each)) {
        all.states.insert(each);
      }
    }
    return all;
  }
  /// Once the manager has nothing more to do with it, as far as one can see.
  Belongings settledBelongingsOf(const TestWindow& window) {
    Belongings last;
    int timesSame = 0;
    EXPECT_TRUE(eventually([&] {
      // One that is held up does nothing, which proves nothing.
      awaitManager(connection());
      const Belongings now = belongingsOf(window);
      timesSame = now == last ? timesSame + 1 : 0;
      last = now;
      return timesSame == 8;
    }));
    return last;
  }
  void setStates(const TestWindow& window, bool areOn, const States& states) {
    std::vector<std::uint32_t> atoms;
    for (const auto& each : states) {
      atoms.push_back(connection().atom(each));
    }
    atoms.resize(2);
    connection().sendToManager(window.id(), "_NET_WM_STATE",
                               {areOn ? 1U : 0U, atoms[0], atoms[1], byPerson, 0});
    ASSERT_TRUE(eventually([&] {
      const States now = belongingsOf(window).states;
      return std::ranges::all_of(states,
                                 [&](const auto& each) { return now.contains(each) == areOn; });
    })) << (areOn ? "with " : "without ")
        << ::testing::PrintToString(states) << ": " << belongingsOf(window);
  }
  void goToDesktop(std::uint32_t number) {
    connection().sendToManager(connection().root(), "_NET_CURRENT_DESKTOP", {number, 0});
    ASSERT_TRUE(eventually([&] {
      return connection().numbers(connection().root(), "_NET_CURRENT_DESKTOP") ==
             std::vector<std::uint32_t>{number};
    }));
  }
  /// Whether nothing of it is on the screen that a person sees, or no more than the corner.
  bool isOutOfSight(const TestWindow& window) {
    const Rect area = window.area();
    if (GetParam().hasHiddenDisplay) {
      return area.x >= screenWidth;
    }
    // Managers may keep a tenth of a window on the screen.
    return area.x >= screenWidth - std::max(64, screenWidth / 10) &&
           area.y >= screenHeight - std::max(64, screenHeight / 10);
  }
  ::testing::AssertionResult comesBackTo(const Belongings& before, const TestWindow& window) {
    if (eventually([&] { return belongingsOf(window) == before; })) {
      return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure() << belongingsOf(window) << " instead of " << before;
  }

  ParkingBed bed_{GetParam()};
};

}  // namespace vistrel::testbed
