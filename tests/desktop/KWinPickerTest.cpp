#include <fstream>
#include <gmock/gmock.h>

#include "tests/desktop/KWinDesktopTest.h"

namespace vistrel::testbed {
namespace {

using ::testing::ElementsAre;

class KWinPicker : public KWinDesktopTest {
 protected:
  using KWinDesktopTest::KWinDesktopTest;

  /// What a person knows the program of `NativeWindow` by.
  void install(const std::string& name) const {
    std::ofstream(desktop_.home() / "data/applications/com.example.sample.desktop")
        << "[Desktop Entry]\nType=Application\nExec=sample\nName=" << name << '\n';
  }
};

TEST_F(KWinPicker, ListsEachWindowOnceByTheNamesThatPeopleKnow) {
  install("Photographs");
  const auto native = openNative({.title = "Native", .width = 600, .height = 300}, {40, 500});
  const TestWindow x(desktop_.xName(), {.title = "Of X", .application = "Zebra"});
  const TestWindow same(desktop_.xName(), {.title = "Of X", .application = "Zebra"});
  const TestWindow first(desktop_.xName(), {.title = "First", .application = "Abacus"});
  startVistrel(4);
  EXPECT_THAT(rows(), ElementsAre("Abacus — First", "Photographs — Native", "Zebra — Of X",
                                  "Zebra — Of X"));
  const PanelOnScreen panel = mirror("Photographs — Native");
  EXPECT_TRUE(becomes(panel, PanelOnScreen::computedArea({0, 0, 600, 300}, firstPanel)));
  EXPECT_TRUE(comesToShow(panel, fourColours));
  EXPECT_TRUE(eventually([&] { return panel.dot() == Dot::live; }));
  EXPECT_TRUE(eventually([&] { return rows().at(1) == "● Photographs — Native"; }));
}

/// The program, which may not see native windows.
class KWinPickerWithoutPermission : public KWinDesktopTest {
 protected:
  KWinPickerWithoutPermission() : KWinDesktopTest(KWinSession::Options{}) {}

  bool isShown(const std::string& beginning) const {
    const auto labels = program().all("label");
    return std::ranges::any_of(labels, [&](const Accessible& each) {
      return each.name().starts_with(beginning) && each.is(AccessibleState::showing);
    });
  }
};

TEST_F(KWinPickerWithoutPermission, ListsTheWindowsOfXAndNamesWhatIsMissing) {
  const auto native = openNative({.title = "Native"}, {40, 500});
  const TestWindow x(desktop_.xName(), {.title = "Of X", .application = "Zebra"});
  startVistrel(1);
  EXPECT_THAT(rows(), ElementsAre("Zebra — Of X"));
  EXPECT_TRUE(eventually([&] { return isShown("1 window — double-click to mirror."); }));
  EXPECT_TRUE(eventually([&] {
    return isShown(
        "Only windows of X programs can be mirrored: KWin shows native ones only to programs that "
        "have been granted it. To grant it, run this in a terminal, then start Vistrel again:\n");
  }));
  EXPECT_THAT(program().outline(), ::testing::HasSubstr("vistrel-kwin-grant " VISTREL_PROGRAM));
  const PanelOnScreen panel = mirror("Zebra — Of X");
  EXPECT_TRUE(comesToShow(panel, fourColours));
}

}  // namespace
}  // namespace vistrel::testbed
