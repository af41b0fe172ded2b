#include <algorithm>
#include <array>
#include <csignal>
#include <functional>

#include "tests/desktop/ContextMenuUser.h"
#include "tests/support/MonitorReport.h"

namespace vistrel::testbed {
namespace {

constexpr const char* keepAwake = "Keep Source Awake (Park Off-Screen)";
constexpr const char* stopKeepingAwake = "Stop Keeping Source Awake (Restore Window)";
constexpr const char* hideThis = "Hide This Mirror";
constexpr Quadrants otherColours{yellow, blue, red, green};
constexpr int screenWidth = 1280;
constexpr int screenHeight = 1024;
constexpr auto fullScreen = "_NET_WM_STATE_FULLSCREEN";

class KeepAwake : public ContextMenuUser {
 protected:
  explicit KeepAwake(const PrivateDisplay::Options& options) : ContextMenuUser(options) {}

  std::string monitors() const { return monitorReport(display_); }
  bool isOnHiddenDisplay() const { return source_->area().x >= screenWidth; }
  /// Whether no more of it than managers insist on is on the screen.
  bool isInCorner() const {
    const Rect area = source_->area();
    return area.x >= screenWidth - std::max(40, area.width / 10) &&
           area.y >= screenHeight - std::max(40, area.height / 10);
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

class KeepAwakeOnAScreenThatGrows : public KeepAwake {
 protected:
  KeepAwakeOnAScreenThatGrows() : KeepAwake({.server = DisplayServer::growable}) {}

  /// Starts the program once more, which ends by itself.
  void startAnother() {
    ChildProcess another(RunningVistrel::command({"--vddiag"}, display_.environment()));
    const auto ending = another.waitForEnd();
    ASSERT_TRUE(ending.has_value());
    EXPECT_EQ(ending->exitStatus, 0);
  }
};

TEST_F(KeepAwakeOnAScreenThatGrows, TheSourceIsOutOfSightAndLiveUntilItIsTakenBack) {
  const std::string before = monitors();
  const PanelOnScreen panel = openPanel();
  keepAwakeForAWhile(panel, [&] { return isOnHiddenDisplay(); });

  connection_.sendToManager(source_->id(), "_NET_WM_STATE",
                            {1, connection_.atom(fullScreen), 0, byPerson, 0});
  ASSERT_TRUE(isBack({0, 0, screenWidth, screenHeight}));
  choose(openMenu(panel), keepAwake);
  EXPECT_TRUE(eventually([&] { return isOnHiddenDisplay(); }));
  choose(openMenu(panel), hideThis);
  EXPECT_TRUE(isBack({0, 0, screenWidth, screenHeight}));
  EXPECT_TRUE(eventually([&] { return hasState(connection_, source_->id(), fullScreen); }));
  EXPECT_TRUE(eventually([&] { return monitors() == before; }));
}

TEST_F(KeepAwakeOnAScreenThatGrows, TheSourceComesBackWhenTheProgramEnds) {
  const std::string before = monitors();
  const PanelOnScreen panel = openPanel();
  const Rect home = source_->area();
  choose(openMenu(panel), keepAwake);
  ASSERT_TRUE(eventually([&] { return isOnHiddenDisplay(); }));
  vistrel_->process().sendSignal(SIGTERM);
  const auto ending = vistrel_->process().waitForEnd();
  ASSERT_TRUE(ending.has_value());
  EXPECT_EQ(ending->signal, std::nullopt);
  EXPECT_EQ(vistrel_->process().standardError(), "");
  vistrel_.reset();
  EXPECT_TRUE(isBack(home));
  EXPECT_EQ(monitors(), before);
}

TEST_F(KeepAwakeOnAScreenThatGrows, TheDisplayOfAProgramThatWasKilledIsTidiedUpByTheNextOne) {
  const std::string before = monitors();
  choose(openMenu(openPanel()), keepAwake);
  ASSERT_TRUE(eventually([&] { return isOnHiddenDisplay(); }));
  const std::string parked = monitors();
  startAnother();
  EXPECT_EQ(monitors(), parked) << "somebody still has it";
  vistrel_->process().sendSignal(SIGKILL);
  ASSERT_TRUE(vistrel_->process().waitForEnd().has_value());
  vistrel_.reset();
  EXPECT_EQ(monitors(), parked);
  startAnother();
  EXPECT_EQ(monitors(), before);
}

TEST_F(KeepAwakeOnAScreenThatGrows, WithoutAManagerThatMovesWindowsThePersonIsTold) {
  const PanelOnScreen panel = openPanel();
  const Rect home = source_->area();
  const std::string before = monitors();
  display_.replaceWindowManager(WindowManager::none);
  choose(openMenu(panel), keepAwake);
  const auto alerts = [&] {
    auto all = reader_->program(vistrel_->process().pid()).all("alert message");
    // A panel's status is one too.
    std::erase_if(all, [](const Accessible& each) { return each.name() != "Vistrel"; });
    return all;
  };
  for (const char* text : {"none runs on this display", "Allow Accessibility for Vistrel"}) {
    ASSERT_TRUE(eventually([&] {
      const auto all = alerts();
      return all.size() == 1 && all.front().outline().find(text) != std::string::npos;
    })) << text;
    EXPECT_EQ(source_->area(), home);
    EXPECT_EQ(monitors(), before);
    const Accessible alert = alerts().front();
    alert.only("push button", "OK").perform("Press");
    EXPECT_TRUE(eventually([&] { return alert.isDefunct(); }));
  }
}

class KeepAwakeUnderMutter : public KeepAwake {
 protected:
  KeepAwakeUnderMutter()
      : KeepAwake({.windowManager = WindowManager::mutter, .server = DisplayServer::xorg}) {}
};

TEST_F(KeepAwakeUnderMutter, TheSourceIsOutOfSightAndLiveUntilItIsTakenBack) {
  keepAwakeForAWhile(openPanel(), [&] { return isOnHiddenDisplay(); });
}

class KeepAwakeInTheCorner : public KeepAwake {
 protected:
  KeepAwakeInTheCorner()
      : KeepAwake({.windowManager = WindowManager::xfwm4, .server = DisplayServer::growable}) {}
};

TEST_F(KeepAwakeInTheCorner, TheSourceIsLiveWhereTheManagerHidesNothing) {
  keepAwakeForAWhile(openPanel(), [&] { return isInCorner(); });
}

class KeepAwakeInSight : public KeepAwake {
 protected:
  KeepAwakeInSight() : KeepAwake({.windowManager = WindowManager::marco}) {}

  std::string description() const {
    const Accessible program = reader_->program(vistrel_->process().pid());
    return program.only("frame", "Sample — Document").description();
  }
};

TEST_F(KeepAwakeInSight, TheSourceIsLiveBelowAllOthersAndThePersonIsToldSo) {
  const PanelOnScreen panel = openPanel();
  keepAwakeForAWhile(panel, [&] {
    return hasState(connection_, source_->id(), "_NET_WM_STATE_BELOW") &&
           description() ==
               "The source could not be moved out of sight. It is kept awake below all other "
               "windows.";
  });
  EXPECT_TRUE(eventually([&] { return description().empty(); }));
  EXPECT_FALSE(hasState(connection_, source_->id(), "_NET_WM_STATE_BELOW"));
}

class KeepAwakeOnAFixedScreen : public KeepAwake {
 protected:
  KeepAwakeOnAFixedScreen() : KeepAwake(PrivateDisplay::Options{}) {}
};

TEST_F(KeepAwakeOnAFixedScreen, TheSourceIsLiveInTheCorner) {
  keepAwakeForAWhile(openPanel(), [&] { return isInCorner(); });
}

}  // namespace
}  // namespace vistrel::testbed
