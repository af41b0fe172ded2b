#include <gtest/gtest.h>

#include "picker/PickerWindowController.h"
#include "tests/core/CoreTest.h"

namespace vistrel {
namespace {

using platform::Alert;
using platform::Button;
using platform::Font;
using platform::FontWeight;
using platform::Label;
using platform::View;

class PickerTest : public CoreTest {
 protected:
  const platform::Window& window() { return *picker_->window(); }

  void reload() {
    picker_->reload();
    desktop_.turnMainQueue();
  }
  std::string status() { return picker_->statusLabel()->stringValue(); }
  std::shared_ptr<Label> cell(int row) {
    const auto view = picker_->tableView()->cellForRow(row);
    return dynamic_cast<platform::TableCellView&>(*view).textField();
  }
  std::vector<std::string> rows() {
    std::vector<std::string> texts;
    for (int row = 0; row < picker_->tableView()->numberOfRows(); ++row) {
      texts.push_back(cell(row)->stringValue());
    }
    return texts;
  }
  template <class Kind>
  std::shared_ptr<Kind> viewWith(const std::function<bool(const Kind&)>& isWanted) {
    for (const auto& view : window().contentView()->subviews()) {
      const auto candidate = std::dynamic_pointer_cast<Kind>(view);
      if (candidate && isWanted(*candidate)) return candidate;
    }
    ADD_FAILURE() << "no such view";
    return nullptr;
  }
  std::shared_ptr<Button> button(const std::string& title) {
    return viewWith<Button>([&](const Button& button) { return button.title() == title; });
  }
  std::shared_ptr<Label> heading() {
    return viewWith<Label>([](const Label& l) { return l.stringValue() == "Mirror a window"; });
  }
  std::shared_ptr<platform::ScrollView> scrollView() {
    return viewWith<platform::ScrollView>([](const auto&) { return true; });
  }
  /// From the content's top-left.
  static Rect fromTop(const View& view) { return view.frameInWindowFromTop(); }

  std::shared_ptr<WindowMirrorManager> manager_ = WindowMirrorManager::make();
  std::shared_ptr<PickerWindowController> picker_ = PickerWindowController::make(manager_);
};

TEST_F(PickerTest, HasAnOrdinaryWindow) {
  EXPECT_EQ(window().title(), "Vistrel");
  EXPECT_EQ(window().styleMask(), 15U);
  EXPECT_FALSE(window().isPanel());
  EXPECT_EQ(window().contentView()->frame().size, (Size{460, 420}));
  EXPECT_EQ(window().frameAutosaveName(), "VistrelPicker");
  EXPECT_FALSE(window().isVisible());
}

TEST_F(PickerTest, OpensInTheMiddleOfTheScreen) {
  EXPECT_EQ(window().frame().midX(), 720);
  EXPECT_EQ(window().frame().midY(), 450);
}

TEST_F(PickerTest, OpensWhereItWasLeft) {
  windows().moveWindow(*picker_->window(), rect(11, 22, 700, 500));
  picker_ = PickerWindowController::make(manager_);
  EXPECT_EQ(window().frame(), rect(11, 22, 700, 500));
}

TEST_F(PickerTest, DressesItsTexts) {
  EXPECT_EQ(heading()->font(), (Font{15, FontWeight::bold}));
  EXPECT_EQ(picker_->statusLabel()->font(), (Font{11, FontWeight::regular}));
  EXPECT_EQ(picker_->statusLabel()->textColor(), Color::secondaryLabel());
}

TEST_F(PickerTest, HasATableWithoutHeaderInAScrollView) {
  const platform::TableView& table = *picker_->tableView();
  ASSERT_EQ(table.tableColumns().size(), 1U);
  EXPECT_EQ(table.tableColumns().front().identifier, "win");
  EXPECT_EQ(table.tableColumns().front().title, "Window");
  EXPECT_EQ(table.tableColumns().front().width, 420);
  EXPECT_FALSE(table.hasHeaderView());
  EXPECT_EQ(table.rowHeight(), 24);
  EXPECT_EQ(table.doubleAction().selector(), "mirrorSelected");
  EXPECT_EQ(scrollView()->documentView(), picker_->tableView());
  EXPECT_TRUE(scrollView()->hasVerticalScroller());
  EXPECT_EQ(scrollView()->borderType(), platform::BorderType::bezel);
}

TEST_F(PickerTest, HasThreeButtons) {
  EXPECT_EQ(button("Refresh")->action().selector(), "reload");
  EXPECT_EQ(picker_->grantButton(), button("Allow Screen Recording…"));
  EXPECT_EQ(picker_->grantButton()->action().selector(), "grantScreenRecording");
  EXPECT_TRUE(picker_->grantButton()->isHidden());
  EXPECT_EQ(picker_->mirrorButton(), button("Mirror"));
  EXPECT_EQ(picker_->mirrorButton()->action().selector(), "mirrorSelected");
  EXPECT_EQ(picker_->mirrorButton()->keyEquivalent(), "\r");
  for (const char* title : {"Refresh", "Allow Screen Recording…", "Mirror"}) {
    EXPECT_EQ(button(title)->bezelStyle(), platform::BezelStyle::rounded);
    EXPECT_EQ(button(title)->action().target(), picker_);
  }
}

TEST_F(PickerTest, LaysItselfOutByConstraints) {
  reload();
  for (const auto& view : window().contentView()->subviews()) {
    EXPECT_FALSE(view->translatesAutoresizingMaskIntoConstraints());
  }
  EXPECT_EQ(window().contentView()->constraints().size(), 14U);
  const Rect top = fromTop(*heading());
  EXPECT_EQ(top.origin, (Point{18, 16}));
  const Rect line = fromTop(*picker_->statusLabel());
  EXPECT_EQ(line.origin, (Point{18, top.maxY() + 4}));
  EXPECT_EQ(fromTop(*scrollView()), rect(18, line.maxY() + 10, 424, 354 - line.maxY()));
  const Rect refresh = fromTop(*button("Refresh"));
  EXPECT_EQ(refresh.minX(), 18);
  EXPECT_EQ(refresh.maxY(), 406);
  EXPECT_EQ(fromTop(*picker_->grantButton()).minX(), refresh.maxX() + 8);
  EXPECT_EQ(fromTop(*picker_->grantButton()).midY(), refresh.midY());
  EXPECT_EQ(fromTop(*picker_->mirrorButton()).maxX(), 442);
  EXPECT_EQ(fromTop(*picker_->mirrorButton()).maxY(), 406);
}

TEST_F(PickerTest, GivesAllItsGrowthToTheTable) {
  desktop_.turnMainQueue();
  const Rect before = fromTop(*scrollView());
  Rect frame = window().frame();
  frame.size = {frame.width() + 100, frame.height() + 50};
  windows().moveWindow(*picker_->window(), frame);
  const Rect after = fromTop(*scrollView());
  EXPECT_EQ(after.origin, before.origin);
  EXPECT_EQ(after.size, (Size{before.width() + 100, before.height() + 50}));
}

TEST_F(PickerTest, ListsWindowsInTheCataloguesOrder) {
  openSource("Notes", "b");
  openSource("Browser", "a");
  reload();
  EXPECT_THAT(rows(), ElementsAre("Browser — a", "Notes — b"));
  EXPECT_EQ(picker_->windows().size(), 2U);
}

TEST_F(PickerTest, NamesWhatHasNoName) {
  openSource([](ShareableWindow& w) {
    w.title = "Inbox";
    w.owningApplication = nullptr;
  });
  reload();
  EXPECT_THAT(rows(), ElementsAre("Unknown — Inbox"));
  EXPECT_EQ(cell(0)->textColor(), Color::label());
}

TEST_F(PickerTest, CountsTheWindowsItFound) {
  reload();
  EXPECT_EQ(status(), "No mirror-worthy windows found. Open an app window and Refresh.");
  openSource();
  reload();
  EXPECT_EQ(status(), "1 window — double-click to mirror.");
  for (int i = 0; i < 6; ++i) openSource();
  reload();
  EXPECT_EQ(status(), "7 windows — double-click to mirror.");
}

TEST_F(PickerTest, KeepsTheFormerListWhileItLooks) {
  openSource();
  reload();
  openSource();
  picker_->reload();
  EXPECT_EQ(status(), "Looking for windows…");
  EXPECT_EQ(picker_->tableView()->numberOfRows(), 1);
  desktop_.turnMainQueue();
  EXPECT_EQ(picker_->tableView()->numberOfRows(), 2);
}

TEST_F(PickerTest, OffersToGrantAccessWhereItHasNone) {
  capture().setAccess(false, false);
  reload();
  EXPECT_FALSE(picker_->grantButton()->isHidden());
  EXPECT_EQ(status(), "Click “Allow Screen Recording…”, enable Vistrel, then Refresh.");
  capture().setAccess(true, true);
  reload();
  EXPECT_TRUE(picker_->grantButton()->isHidden());
}

TEST_F(PickerTest, ShowsTheGrantButtonAsAccessIsWhenTheListArrives) {
  capture().answers().hold(Request::content);
  picker_->reload();
  desktop_.turnMainQueue();
  capture().setAccess(false, false);
  capture().answers().release(Request::content);
  desktop_.turnMainQueue();
  EXPECT_FALSE(picker_->grantButton()->isHidden());
}

TEST_F(PickerTest, SaysThatItNeedsPermissionWhileItAsksForIt) {
  capture().setAccess(false, true);
  capture().answers().hold(Request::content);
  picker_->reload();
  EXPECT_EQ(status(), "Vistrel needs Screen Recording permission to see and mirror windows.");
}

TEST_F(PickerTest, ShowsTheListThatArrivesLastWhenRefreshedTwice) {
  capture().answers().hold(Request::content);
  const auto first = openSource("App", "first");
  picker_->reload();
  capture().closeWindow(first->windowID);
  openSource("App", "second");
  picker_->reload();
  capture().answers().releaseOne(Request::content, 1);
  desktop_.turnMainQueue();
  EXPECT_THAT(rows(), ElementsAre("App — second"));
  capture().answers().release(Request::content);
  desktop_.turnMainQueue();
  EXPECT_THAT(rows(), ElementsAre("App — first"));
}

TEST_F(PickerTest, MirrorsTheSelectedRowAndMarksIt) {
  openSource("Browser", "Start Page");
  openSource("Notes", "b");
  reload();
  EXPECT_THAT(rows(), ElementsAre("Browser — Start Page", "Notes — b"));
  picker_->window()->makeKeyAndOrderFront();
  picker_->tableView()->personDidSelectRow(0);
  picker_->mirrorSelected();
  EXPECT_EQ(manager_->mirrors().size(), 1U);
  EXPECT_THAT(rows(), ElementsAre("● Browser — Start Page", "Notes — b"));
  EXPECT_EQ(cell(0)->textColor(), Color::systemGreen());
  EXPECT_EQ(cell(1)->textColor(), Color::label());
  EXPECT_EQ(picker_->tableView()->selectedRow(), 0);
  EXPECT_TRUE(window().isVisible());
}

TEST_F(PickerTest, DrawsTheRowAloneThatItMirrors) {
  openSource("A", "w1");
  openSource("B", "w2");
  reload();
  EXPECT_THAT(rows(), ElementsAre("A — w1", "B — w2"));
  cell(1)->setStringValue("as it was");
  picker_->tableView()->personDidSelectRow(0);
  picker_->mirrorSelected();
  EXPECT_THAT(rows(), ElementsAre("● A — w1", "as it was"));
}

TEST_F(PickerTest, MirrorsOnDoubleClickReturnAndTheMirrorButton) {
  const std::function<void()> ways[] = {
      [this] { picker_->tableView()->personDidDoubleClick(); },
      [this] { picker_->window()->performKeyEquivalent("\r"); },
      [this] { picker_->mirrorButton()->performClick(); },
  };
  openSource();
  reload();
  for (const auto& mirrorIt : ways) {
    picker_->tableView()->personDidSelectRow(0);
    mirrorIt();
    EXPECT_EQ(manager_->mirrors().size(), 1U);
    manager_->closeAll();
  }
}

TEST_F(PickerTest, MirrorsNothingWithoutASelection) {
  openSource();
  reload();
  picker_->mirrorSelected();
  EXPECT_TRUE(picker_->window()->performKeyEquivalent("\r"));
  EXPECT_THAT(manager_->mirrors(), IsEmpty());
}

TEST_F(PickerTest, RefreshesFromItsButton) {
  openSource();
  button("Refresh")->performClick();
  desktop_.turnMainQueue();
  EXPECT_EQ(picker_->tableView()->numberOfRows(), 1);
}

TEST_F(PickerTest, ReusesItsCells) {
  openSource();
  reload();
  const auto before = cell(0);
  EXPECT_EQ(before->identifier(), "tf");
  EXPECT_EQ(before->lineBreakMode(), platform::LineBreakMode::truncatingTail);
  reload();
  EXPECT_EQ(cell(0), before);
}

TEST_F(PickerTest, ColoursAReusedCellForItsWindow) {
  openSource("A", "w1");
  reload();
  picker_->tableView()->personDidSelectRow(0);
  picker_->mirrorSelected();
  const auto green = cell(0);
  EXPECT_EQ(green->textColor(), Color::systemGreen());
  manager_->closeAll();
  reload();
  EXPECT_EQ(cell(0), green);
  EXPECT_EQ(cell(0)->textColor(), Color::label());
}

TEST_F(PickerTest, LaysOutACellWithItsLabelInTheMiddle) {
  openSource("Notes", "b");
  reload();
  const auto view = picker_->tableView()->cellForRow(0);
  view->setFrame(rect(0, 0, 420, 24));
  view->layoutSubtreeIfNeeded();
  EXPECT_EQ(cell(0)->frame().minX(), 4);
  EXPECT_EQ(cell(0)->frame().maxX(), 416);
  EXPECT_EQ(cell(0)->frame().midY(), 12);
}

TEST_F(PickerTest, DropsAListThatArrivesAfterItIsGone) {
  capture().answers().hold(Request::content);
  openSource();
  picker_->reload();
  const auto line = picker_->statusLabel();
  picker_.reset();
  desktop_.turnMainQueue();
  EXPECT_THAT(windows().windowsFrontToBack(), IsEmpty()) << "the question keeps the picker";
  capture().answers().release(Request::content);
  desktop_.turnMainQueue();
  EXPECT_EQ(line->stringValue(), "Looking for windows…");
}

class GrantTest : public PickerTest {
 protected:
  GrantTest() { capture().setAccess(false, false); }
  void answer(int code) {
    windows().setAlertAnswer([code](const Alert&) { return code; });
  }
};

TEST_F(GrantTest, AsksOpensTheSettingsAndExplains) {
  picker_->grantButton()->setHidden(false);
  picker_->grantButton()->performClick();
  EXPECT_EQ(capture().requestCount(), 1);
  EXPECT_EQ(desktop_.workspace().openedURLs().size(), 1U);
  ASSERT_EQ(windows().alerts().size(), 1U);
  const Alert& alert = windows().alerts().front();
  EXPECT_EQ(alert.messageText, "Allow Screen Recording for Vistrel");
  EXPECT_EQ(alert.informativeText,
            "In System Settings ▸ Privacy & Security ▸ Screen Recording, turn on Vistrel.\n\n"
            "macOS only applies the change after the app relaunches. "
            "Click “Relaunch Now” once you've enabled it.");
  EXPECT_THAT(alert.buttonTitles, ElementsAre("Relaunch Now", "Later"));
}

TEST_F(GrantTest, DoesNotAskWhatIsAlreadyGranted) {
  capture().setAccess(true, true);
  picker_->grantScreenRecording();
  EXPECT_EQ(capture().requestCount(), 0);
  EXPECT_EQ(windows().alerts().size(), 1U);
}

TEST_F(GrantTest, DoesNothingMoreLater) {
  answer(1001);
  picker_->grantScreenRecording();
  EXPECT_THAT(desktop_.workspace().startedInstances(), IsEmpty());
  EXPECT_EQ(desktop_.application().terminateCount(), 0);
}

TEST_F(GrantTest, RelaunchesNow) {
  desktop_.workspace().setMainBundlePath("/there/Vistrel.app");
  answer(1000);
  picker_->grantScreenRecording();
  EXPECT_THAT(desktop_.workspace().startedInstances(), ElementsAre("/there/Vistrel.app"));
  EXPECT_EQ(desktop_.application().terminateCount(), 1);
}

TEST_F(GrantTest, QuitsAlsoWhenTheRelaunchFails) {
  desktop_.workspace().setStartsInstances(false);
  answer(1000);
  picker_->grantScreenRecording();
  EXPECT_EQ(desktop_.application().terminateCount(), 1);
}

}  // namespace
}  // namespace vistrel
