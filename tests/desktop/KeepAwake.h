#pragma once

#include <algorithm>
#include <array>
#include <functional>
#include <string>

#include "tests/desktop/ContextMenuUser.h"
#include "tests/support/MonitorReport.h"

namespace vistrel::testbed {

/// A person who has the source of a mirror parked out of sight. One source.
class KeepAwake : public ContextMenuUser {
 protected:
  static constexpr const char* keepAwake = "Keep Source Awake (Park Off-Screen)";
  static constexpr const char* stopKeepingAwake = "Stop Keeping Source Awake (Restore Window)";
  static constexpr Quadrants otherColours{yellow, blue, red, green};
  static constexpr int screenWidth = 1280;
  static constexpr int screenHeight = 1024;

  explicit KeepAwake(const PrivateDisplay::Options& options) : ContextMenuUser(options) {}

  std::string monitors() const { return monitorReport(display_); }
  bool isOnHiddenDisplay() const { return source_->area().x >= screenWidth; }
  /// Whether no more of it than managers insist on is on the screen.
  bool isInCorner() const {
    const Rect area = source_->area();
    return area.x >= screenWidth - std::max(40, area.width / 10) &&
           area.y >= screenHeight - std::max(40, area.height / 10);
  }
  /// Where a manager keeps all of each window on the screen.
  bool isBelowAllOthers() const {
    return hasState(connection_, source_->id(), "_NET_WM_STATE_BELOW");
  }
  ::testing::AssertionResult isBack(Rect home) {
    if (eventually([&] { return source_->area() == home; })) {
      return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure() << source_->area();
  }
  /// Whether what the source draws now comes to be seen in the panel. It draws more than once: a
  /// compositor of mutter's kind (43.8) may overlook a change just after the screen has grown.
  bool isLive(const PanelOnScreen& panel) {
    return std::ranges::all_of(std::array{otherColours, fourColours}, [&](const Quadrants& next) {
      return eventually([&] {
        source_->show(next);
        return panel.shows(next);
      });
    });
  }
  /// Parks the source, which is where `isParked` says, and takes it back.
  void keepAwakeForAWhile(const PanelOnScreen& panel, const std::function<bool()>& isParked) {
    const std::string before = monitors();
    const Rect home = source_->area();
    const Rect place = panel.area();
    choose(openMenu(panel), keepAwake);
    EXPECT_TRUE(eventually(isParked)) << source_->area();
    EXPECT_TRUE(isLive(panel));
    EXPECT_EQ(panel.area(), place) << "a panel has no business where nobody sees it";
    choose(openMenu(panel), stopKeepingAwake);
    EXPECT_TRUE(isBack(home));
    EXPECT_TRUE(eventually([&] { return monitors() == before; }));
    EXPECT_TRUE(isLive(panel));
  }
};

}  // namespace vistrel::testbed
