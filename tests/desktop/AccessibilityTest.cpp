#include <algorithm>
#include <csignal>

#include "tests/desktop/DesktopTest.h"
#include "tests/support/AccessibilityBus.h"

namespace vistrel::testbed {
namespace {

using enum AccessibleState;

/// The program as someone uses it who has the screen read aloud.
class Accessibility : public DesktopTest {
 protected:
  /// Starts the program with a screen reader and waits until its picker lists `count` windows.
  void startReading(std::size_t count) {
    screenReader_ = std::make_unique<AccessibilityBus>(display_);
    startVistrel();
    ASSERT_TRUE(eventually([&] { return rows().size() == count; }));
  }

  Accessible program() const { return screenReader_->program(vistrel_->process().pid()); }
  std::vector<Accessible> rows() const { return program().all("list item"); }
  Accessible pickerWindow() const { return program().only("frame", "Vistrel"); }
  Accessible panelWindow() const { return program().only("frame", "Sample — Document"); }
  Accessible status() const { return panelWindow().all("alert message").at(0); }

  /// Mirrors row `row` by what a screen reader does to it; gives the newest panel.
  PanelOnScreen pressRow(std::size_t row, std::size_t panelsAfter = 1) {
    rows().at(row).perform("Press");
    return vistrel_->panels(panelsAfter).back();
  }

  /// Starts the program without a screen reader and mirrors the only source there is.
  PanelOnScreen mirrorByClicks() {
    startVistrel();
    input_.clickAt(vistrel_->pickerRows(1).front().centre());
    input_.clickAt(vistrel_->picker().mirrorButton());
    return vistrel_->panels(1).front();
  }

  /// Whether that has been told of the object.
  bool isTold(const Accessible& object, const std::string& kind, int detail) {
    std::ranges::move(screenReader_->events(), std::back_inserter(told_));
    const AccessibilityBus::Event event{kind, detail, object.object().path()};
    return std::ranges::find(told_, event) != told_.end();
  }

  std::unique_ptr<AccessibilityBus> screenReader_;
  std::vector<AccessibilityBus::Event> told_;
};

TEST_F(Accessibility, ThePickerIsReadAndItsRowsArePressed) {
  const auto first = openSource();
  const auto second = openSource({.title = "Second"});
  startReading(2);
  EXPECT_EQ(pickerWindow().outline(), R"(frame "Vistrel"
  filler ""
    label "Mirror a window"
    label "2 windows — double-click to mirror."
    list "Window" [SetFocus]
      list item "Sample — Document" [Press, SetFocus]
      list item "Sample — Second" [Press, SetFocus]
    push button "Refresh" [Press, SetFocus]
    push button "Mirror" [Press, SetFocus]
  menu bar ""
    menu item "Vistrel" [ShowMenu]
    menu item "Mirror" [ShowMenu]
    menu item "Window" [ShowMenu]
)");
  EXPECT_FALSE(pickerWindow().only("push button", "Allow Screen Recording…").is(showing));

  const Accessible row = rows().at(0);
  EXPECT_FALSE(row.is(selected));
  const PanelOnScreen panel = pressRow(0);
  EXPECT_TRUE(eventually([&] { return row.name() == "● Sample — Document"; }));
  EXPECT_TRUE(row.is(selected));
  EXPECT_TRUE(eventually([&] { return isTold(row, "PropertyChange accessible-name", 0); }));
  EXPECT_EQ(pickerWindow().at(row.area().centre()), row);

  panelWindow().only("push button", "Close").perform("Press");
  EXPECT_TRUE(eventually([&] { return !panel.isOnScreen(); }));
}

TEST_F(Accessibility, KeysAloneChooseAndMirrorARow) {
  const auto first = openSource();
  const auto second = openSource({.title = "Second"});
  startReading(2);
  const xcb_window_t picker = vistrel_->picker().id();
  ASSERT_TRUE(eventually([&] { return activeWindow() == picker; }));
  input_.type(keyDown);
  input_.type(keyDown);
  EXPECT_TRUE(eventually([&] { return rows().at(1).is(focused) && rows().at(1).is(selected); }));
  input_.type(keyReturn);
  EXPECT_TRUE(eventually([&] { return rows().at(1).name() == "● Sample — Second"; }));
  input_.type(keyTab);
  const Accessible refresh = pickerWindow().only("push button", "Refresh");
  EXPECT_TRUE(eventually([&] { return refresh.is(focused); }));
  input_.type(keyTab);
  const Accessible mirror = pickerWindow().only("push button", "Mirror");
  EXPECT_TRUE(eventually([&] { return mirror.is(focused); }));
}

TEST_F(Accessibility, WhatThePickerSaysAfterARefreshIsTold) {
  const auto first = openSource();
  startReading(1);
  const Accessible row = rows().at(0);
  const Accessible text = pickerWindow().only("label", "1 window — double-click to mirror.");
  const auto second = openSource({.title = "Second"});
  screenReader_->events();
  pickerWindow().only("push button", "Refresh").perform("Press");
  EXPECT_TRUE(eventually([&] { return text.name() == "2 windows — double-click to mirror."; }));
  EXPECT_TRUE(eventually([&] { return isTold(text, "PropertyChange accessible-name", 0); }));
  EXPECT_TRUE(eventually([&] { return rows().size() == 2; }));
  EXPECT_TRUE(row.isDefunct());
}

TEST_F(Accessibility, APanelIsReadByAScreenReaderThatComesLater) {
  const auto source = openSource();
  const PanelOnScreen panel = mirrorByClicks();
  screenReader_ = std::make_unique<AccessibilityBus>(display_);
  const std::string expected = R"(frame "Sample — Document"
  graphic "Sample — Document"
  graphic "Vistrel" (Vistrel — live window mirror)
  graphic "Live"
  label "Sample — Document"
  push button "Close" [Press]
  grip "Resize" [Increase, Decrease]
)";
  EXPECT_TRUE(eventually([&] {
    // The dot tells of a picture that changes.
    source->show(Quadrants::uniform(blue));
    source->show(Quadrants::uniform(red));
    return panelWindow().outline() == expected;
  })) << panelWindow().outline();
  const Accessible dot = panelWindow().all("graphic").at(2);
  EXPECT_TRUE(eventually([&] { return dot.name() == "Not updating"; }));

  const Accessible close = panelWindow().only("push button", "Close");
  EXPECT_EQ(panelWindow().area(), panel.area());
  EXPECT_EQ(close.area(), (Rect{348, 36, 18, 18}));
  EXPECT_EQ(panelWindow().at(panel.closeButton()), close);
  EXPECT_EQ(panelWindow().at(panel.grip()).role(), "grip");
  EXPECT_EQ(panelWindow().at(panel.contents().centre()).role(), "graphic");
  EXPECT_FALSE(close.is(focusable));
  EXPECT_FALSE(panelWindow().is(active));
}

TEST_F(Accessibility, APictureThatStandsSinceItsSourceIsOnAnotherDesktopSaysSo) {
  const auto source = openSource();
  startReading(1);
  pressRow(0);
  const Accessible picture = panelWindow().all("graphic").at(0);
  const auto areDescribed = [&](const std::string& description) {
    return eventually([&] {
      return picture.description() == description && panelWindow().description() == description;
    });
  };
  EXPECT_TRUE(areDescribed(""));
  connection_.sendToManager(source->id(), "_NET_WM_DESKTOP", {1, byPerson});
  EXPECT_TRUE(
      areDescribed("The source is on another desktop, where nothing draws it.\n"
                   "Keep Source Awake, or showing it on all desktops, keeps the picture "
                   "live."))
      << picture.description();
  EXPECT_TRUE(
      eventually([&] { return isTold(picture, "PropertyChange accessible-description", 0); }));
  connection_.sendToManager(source->id(), "_NET_WM_DESKTOP", {0, byPerson});
  EXPECT_TRUE(areDescribed(""));
}

TEST_F(Accessibility, AClosedPanelIsGoneForAScreenReaderThatHoldsIt) {
  const auto source = openSource();
  startReading(1);
  const PanelOnScreen panel = pressRow(0);
  const Accessible window = panelWindow();
  const std::vector<Accessible> views = window.children();
  ASSERT_EQ(views.size(), 7u);
  window.only("push button", "Close").perform("Press");
  EXPECT_TRUE(eventually([&] { return !panel.isOnScreen(); }));
  EXPECT_TRUE(eventually([&] { return window.isDefunct(); }));
  for (const Accessible& view : views) {
    EXPECT_TRUE(view.isDefunct());
  }
  EXPECT_TRUE(eventually([&] { return isTold(program(), "ChildrenChanged remove", -1); }));
  EXPECT_EQ(program().all("frame").size(), 1u);
}

TEST_F(Accessibility, TheProgramEndsInOrderUnderAScreenReader) {
  const auto source = openSource();
  startReading(1);
  pressRow(0);
  EXPECT_EQ(program().all("grip").size(), 1u);
  const std::unique_ptr<RunningVistrel> ended = std::move(vistrel_);
  ended->process().sendSignal(SIGTERM);
  const auto ending = ended->process().waitForEnd();
  ASSERT_TRUE(ending.has_value());
  EXPECT_EQ(ending->exitStatus, 0);
  EXPECT_EQ(ended->process().standardError(), "");
}

TEST_F(Accessibility, TheGripResizesInStepsDownToTheMinimum) {
  const auto source = openSource();
  startReading(1);
  const PanelOnScreen panel = pressRow(0);
  const Accessible grip = panelWindow().only("grip", "Resize");
  const Rect before = panel.area();
  grip.perform("Increase");
  EXPECT_TRUE(eventually([&] {
    return panel.area() == Rect{before.x, before.y, before.width + 40, before.height + 40};
  })) << panel.area();
  EXPECT_TRUE(eventually([&] { return panelWindow().area() == panel.area(); }));
  for (int step = 0; step < 6; ++step) {
    grip.perform("Decrease");
  }
  EXPECT_TRUE(eventually([&] {
    return panel.area() == Rect{before.x, before.y, 160, 120};
  })) << panel.area();
}

TEST_F(Accessibility, EachStepCountsWhileTheManagerIsHeldUp) {
  constexpr std::uint32_t longerThanAFreeManagerTakes = 2500;
  const auto source = openSource();
  startReading(1);
  const PanelOnScreen panel = pressRow(0);
  const Accessible grip = panelWindow().only("grip", "Resize");
  const Rect before = panel.area();
  const auto isLargerBy = [&](int steps) {
    return eventually([&] {
      return panel.area() ==
             Rect{before.x, before.y, before.width + 40 * steps, before.height + 40 * steps};
    });
  };
  grip.perform("Increase");
  ASSERT_TRUE(isLargerBy(1)) << panel.area();
  const pid_t manager = display_.windowManagerPid();
  ::kill(manager, SIGSTOP);
  grip.perform("Increase");
  input_.rest(longerThanAFreeManagerTakes);
  input_.moveTo({1200, 1000});
  grip.perform("Increase");
  ::kill(manager, SIGCONT);
  EXPECT_TRUE(isLargerBy(3)) << panel.area();
}

TEST_F(Accessibility, AVanishedSourceIsAnnounced) {
  auto source = openSource();
  startReading(1);
  source.reset();
  pressRow(0);
  EXPECT_TRUE(eventually([&] { return status().is(showing); }));
  EXPECT_EQ(status().name(), "Source window is no longer available.");
  EXPECT_TRUE(eventually([&] { return isTold(status(), "StateChanged showing", 1); }));
}

TEST_F(Accessibility, ARolledUpPanelIsItsTitleBar) {
  const auto source = openSource();
  startReading(1);
  const PanelOnScreen panel = pressRow(0);
  const Accessible grip = panelWindow().only("grip", "Resize");
  ASSERT_TRUE(grip.is(showing));
  input_.clickAt(panel.titleBar(), 2);
  EXPECT_TRUE(eventually([&] { return !grip.is(showing); }));
  EXPECT_TRUE(eventually([&] { return isTold(grip, "StateChanged showing", 0); }));
  EXPECT_EQ(panelWindow().at(panel.titleBar()).role(), "label");
  const std::string rolledUp = panelWindow().outline();
  EXPECT_EQ(rolledUp.find("Resize"), std::string::npos) << rolledUp;
  EXPECT_NE(rolledUp.find("Close"), std::string::npos) << rolledUp;
}

TEST_F(Accessibility, NothingIsStartedWithoutAScreenReader) {
  const auto source = openSource();
  mirrorByClicks();
  const BusObject session(connectToBus(display_.busAddress()), "org.freedesktop.DBus",
                          "/org/freedesktop/DBus");
  BusMessage answer = session.call("org.freedesktop.DBus", "NameHasOwner", "s", "org.a11y.Bus");
  EXPECT_FALSE(answer.truth());
}

}  // namespace
}  // namespace vistrel::testbed
