#include <csignal>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>

#include "tests/desktop/KeepAwake.h"
#include "tests/support/GlobalMenu.h"
#include "tests/support/SessionManager.h"

namespace vistrel::testbed {
namespace {

constexpr const char* hideThis = "Hide This Mirror";
constexpr auto fullScreen = "_NET_WM_STATE_FULLSCREEN";

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

TEST_F(KeepAwakeOnAScreenThatGrows, TheSourceStaysOutOfSightWhereSomebodyCutsTheHiddenDisplayOff) {
  const PanelOnScreen panel = openPanel();
  choose(openMenu(panel), keepAwake);
  ASSERT_TRUE(eventually([&] { return isOnHiddenDisplay(); }));
  letProgramCatchUp();
  const std::string parked = monitors();
  ChildProcess cutting(
      {.arguments = {"xrandr", "--fb", "1280x1024"}, .environment = display_.environment()});
  ASSERT_TRUE(cutting.waitForEnd().has_value());
  EXPECT_TRUE(eventually([&] { return monitors() == parked; })) << monitors();
  EXPECT_TRUE(eventually([&] { return isOnHiddenDisplay(); }));
  EXPECT_TRUE(isLive(panel));
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

TEST_F(KeepAwakeOnAScreenThatGrows, TheSourceComesBackWhenTheProgramIsKilled) {
  const std::string before = monitors();
  const PanelOnScreen panel = openPanel();
  connection_.sendToManager(source_->id(), "_NET_WM_STATE",
                            {1, connection_.atom(fullScreen), 0, byPerson, 0});
  const Rect home{0, 0, screenWidth, screenHeight};
  ASSERT_TRUE(isBack(home));
  choose(openMenu(panel), keepAwake);
  ASSERT_TRUE(eventually([&] { return isOnHiddenDisplay(); }));
  const std::string parked = monitors();
  startAnother();
  EXPECT_EQ(monitors(), parked) << "somebody still has it";
  vistrel_->process().sendSignal(SIGKILL);
  ASSERT_TRUE(vistrel_->process().waitForEnd().has_value());
  vistrel_.reset();
  EXPECT_TRUE(isBack(home));
  EXPECT_TRUE(eventually([&] { return hasState(connection_, source_->id(), fullScreen); }));
  EXPECT_TRUE(eventually([&] { return monitors() == before; }));
}

TEST_F(KeepAwakeOnAScreenThatGrows, TheSourceComesBackThoughTheManagerHangsWhenTheProgramEnds) {
  const std::string before = monitors();
  const PanelOnScreen panel = openPanel();
  const Rect home = source_->area();
  choose(openMenu(panel), keepAwake);
  ASSERT_TRUE(eventually([&] { return isOnHiddenDisplay(); }));
  letProgramCatchUp();
  const pid_t manager = display_.windowManagerPid();
  ::kill(manager, SIGSTOP);
  vistrel_->process().sendSignal(SIGTERM);
  EXPECT_TRUE(vistrel_->process().waitForEnd().has_value());
  vistrel_.reset();
  ::kill(manager, SIGCONT);
  EXPECT_TRUE(isBack(home));
  EXPECT_TRUE(eventually([&] { return monitors() == before; }));
}

TEST_F(KeepAwakeOnAScreenThatGrows, TheSourceComesBackWhereNothingCanBeKeptFromRunToRun) {
  // What stands in the way of the directory is no directory.
  const auto state = display_.home() / "state";
  std::filesystem::remove_all(state);
  std::ofstream(state) << "";
  const PanelOnScreen panel = openPanel();
  const Rect home = source_->area();
  choose(openMenu(panel), keepAwake);
  ASSERT_TRUE(eventually([&] { return isOnHiddenDisplay(); }));
  vistrel_->process().sendSignal(SIGKILL);
  ASSERT_TRUE(vistrel_->process().waitForEnd().has_value());
  vistrel_.reset();
  EXPECT_TRUE(isBack(home));
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

/// A session manager that is there before the session's programs are.
class WithSessionManager {
 protected:
  SessionManager manager_;
};

class KeepAwakeInASession : private WithSessionManager, public KeepAwake {
 protected:
  KeepAwakeInASession()
      : KeepAwake({.server = DisplayServer::growable,
                   .variables = {"SESSION_MANAGER=" + manager_.address()}}) {}
  void beginEnd() { manager_.beginEnd(); }
  void cancelEnd() { manager_.cancelEnd(); }
};

TEST_F(KeepAwakeInASession, TheSourceIsAtHomeWhileProgramsSaveAndLeavesAgainIfTheSessionGoesOn) {
  const PanelOnScreen panel = openPanel();
  const Rect home = source_->area();
  choose(openMenu(panel), keepAwake);
  ASSERT_TRUE(eventually([&] { return isOnHiddenDisplay(); }));
  beginEnd();
  EXPECT_TRUE(isBack(home));
  cancelEnd();
  EXPECT_TRUE(eventually([&] { return isOnHiddenDisplay(); }));
  choose(openMenu(panel), stopKeepingAwake);
  EXPECT_TRUE(isBack(home));
}

/// A toolkit whose windows do not go: it waits for the desktop's bus, to take their menus back.
class KeepAwakeUntilAnEndThatHangs : public KeepAwake {
 protected:
  KeepAwakeUntilAnEndThatHangs()
      : KeepAwake({.server = DisplayServer::growable, .variables = {"VISTREL_TRACE=manager"}}) {}

  /// The picker has no menu bar of its own there, by which others find its rows.
  PanelOnScreen openPanelByReader() {
    reader_ = std::make_unique<AccessibilityBus>(display_);
    startVistrel();
    const Accessible program = reader_->program(vistrel_->process().pid());
    EXPECT_TRUE(eventually([&] { return program.all("list item").size() == 1; }));
    program.all("list item").at(0).perform("Press");
    return vistrel_->panels(1).front();
  }

  const GlobalMenu menu_{display_};
};

TEST_F(KeepAwakeUntilAnEndThatHangs, TheSourceIsSentHomeBeforeThat) {
  const PanelOnScreen panel = openPanelByReader();
  const Rect home = source_->area();
  const xcb_window_t picker = vistrel_->picker().id();
  ASSERT_TRUE(eventually([&] { return menu_.hasMenuOf(picker); }));
  choose(openMenu(panel), keepAwake);
  ASSERT_TRUE(eventually([&] { return isOnHiddenDisplay(); }));
  activate(picker);
  ::kill(display_.busPid(), SIGSTOP);
  input_.typeHolding(keyControl, 'q');
  ASSERT_TRUE(vistrel_->process().waitForEnd().has_value());
  // By the program itself: what the guard does would be told of nowhere.
  EXPECT_THAT(vistrel_->process().standardError(), ::testing::HasSubstr("goes home"));
  ::kill(display_.busPid(), SIGCONT);
  vistrel_.reset();
  EXPECT_TRUE(isBack(home));
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
    return isBelowAllOthers() &&
           description() ==
               "The source could not be moved out of sight. It is kept awake below all other "
               "windows.";
  });
  EXPECT_TRUE(eventually([&] { return description().empty(); }));
  EXPECT_FALSE(isBelowAllOthers());
}

}  // namespace
}  // namespace vistrel::testbed
