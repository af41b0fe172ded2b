#include <chrono>
#include <filesystem>
#include <fstream>
#include <sys/stat.h>

#include "tests/desktop/DesktopTest.h"

namespace vistrel::testbed {
namespace {

class Picker : public DesktopTest {
 protected:
  /// Types once the picker has the keyboard.
  void typeIntoPicker(std::uint32_t keysym) {
    const xcb_window_t picker = vistrel_->picker().id();
    ASSERT_TRUE(eventually([&] { return activeWindow() == picker; }));
    input_.type(keysym);
  }
  /// Makes a window white without its program's knowing.
  void wipeOut(xcb_window_t window) {
    xcb_connection_t* const xcb = connection_.get();
    const xcb_gcontext_t pen = xcb_generate_id(xcb);
    constexpr std::uint32_t whitePixel = 0xFFFFFF;
    xcb_create_gc(xcb, pen, window, XCB_GC_FOREGROUND, &whitePixel);
    constexpr xcb_rectangle_t everything{0, 0, 0xFFFF, 0xFFFF};
    xcb_poly_fill_rectangle(xcb, window, pen, 1, &everything);
    xcb_free_gc(xcb, pen);
    connection_.sync();
  }
};

TEST_F(Picker, ADoubleClickOpensAPanelOfTheComputedSizeAtTheComputedPlace) {
  const auto source = openSource();
  startVistrel();
  const PanelOnScreen panel = mirrorRow(0, 1, 1);
  EXPECT_TRUE(eventually([&] {
    return panel.area() == PanelOnScreen::computedArea(sourceArea, firstPanel);
  })) << panel.area();
}

TEST_F(Picker, IsDrawnOnceMoreAtRestForACompositingManagerThatOverlooksDrawings) {
  startVistrel();
  const PickerOnScreen picker = vistrel_->picker();
  vistrel_->pickerRows(0);
  const Rect area = picker.area();
  const Point corner{area.x + 4, area.y + area.height - 4};
  const Rgb background = screen_.pixel(corner);
  ASSERT_NE(background, white);
  // On a busy machine the drawing at rest may come before it is wiped out.
  EXPECT_TRUE(eventually([&] {
    input_.clickAt(picker.refreshButton());
    wipeOut(picker.id());
    constexpr std::chrono::seconds aFewRests{3};
    return eventually([&] { return screen_.pixel(corner) == background; }, aFewRests);
  }));
}

TEST_F(Picker, ReturnMirrorsTheSelectedRow) {
  const auto source = openSource();
  startVistrel();
  const Rect row = vistrel_->pickerRows(1).front();
  const ScreenReader screen(connection_);
  const Point behindText = row.at(0.9, 0.5);
  const Rgb background = screen.pixel(behindText);
  input_.clickAt(row.centre());
  // A manager may hold the click back for a while, which the key would overtake.
  ASSERT_TRUE(eventually([&] { return screen.pixel(behindText) != background; }));
  typeIntoPicker(keyReturn);
  const PanelOnScreen panel = vistrel_->panels(1).front();
  EXPECT_TRUE(eventually(
      [&] { return panel.area() == PanelOnScreen::computedArea(sourceArea, firstPanel); }));
}

TEST_F(Picker, ReturnWithoutASelectionDoesNothing) {
  const auto source = openSource();
  startVistrel();
  vistrel_->pickerRows(1);
  typeIntoPicker(keyReturn);
  // The click comes after the key: had the key opened a panel, this one would be forward already.
  input_.clickAt(vistrel_->picker().mirrorButton());
  const PanelOnScreen panel = mirrorRow(0, 1, 1);
  EXPECT_TRUE(becomes(panel, PanelOnScreen::computedArea(sourceArea, firstPanel)));
}

TEST_F(Picker, TheMirrorButtonMirrorsTheSelectedRow) {
  const auto source = openSource();
  startVistrel();
  input_.clickAt(vistrel_->pickerRows(1).front().centre());
  input_.clickAt(vistrel_->picker().mirrorButton());
  EXPECT_EQ(vistrel_->panels(1).size(), 1u);
}

TEST_F(Picker, RowsAreInTheOrderOfProgramsAndTitles) {
  const auto third = openSource({.title = "a",
                                 .application = "Zebra",
                                 .area = sourceArea,
                                 .picture = Quadrants::uniform(blue)});
  const auto second = openSource({.title = "b",
                                  .application = "alpha",
                                  .area = sourceArea,
                                  .picture = Quadrants::uniform(green)});
  const auto first = openSource({.title = "A",
                                 .application = "alpha",
                                 .area = sourceArea,
                                 .picture = Quadrants::uniform(red)});
  startVistrel();
  const std::array expected{red, green, blue};
  for (std::size_t row = 0; row < expected.size(); ++row) {
    const PanelOnScreen panel = mirrorRow(row, expected.size(), row + 1);
    EXPECT_TRUE(eventually([&] {
      return similar(screen_.pixel(panel.contents().at(0.9, 0.9)), expected[row], 6);
    })) << "row "
        << row;
  }
}

TEST_F(Picker, EachFurtherPanelStepsRightAndDown) {
  const auto first = openSource({.title = "1", .area = sourceArea, .decorated = false});
  const auto second = openSource({.title = "2", .area = sourceArea, .decorated = false});
  startVistrel();
  mirrorRow(0, 2, 1);
  const PanelOnScreen panel = mirrorRow(1, 2, 2);
  const Point stepped{firstPanel.x + cascadeStep, firstPanel.y + cascadeStep};
  EXPECT_TRUE(
      eventually([&] { return panel.area() == PanelOnScreen::computedArea(sourceArea, stepped); }));
}

TEST_F(Picker, TheProgramsOwnWindowsAreNeverListed) {
  const auto source = openSource();
  mirrorOnlySource();
  const auto later = openSource({.title = "Later", .area = {300, 750, 400, 200}});
  input_.clickAt(vistrel_->picker().refreshButton());
  EXPECT_EQ(vistrel_->pickerRows(2).size(), 2u);
}

TEST_F(Picker, AMirroredRowTurnsGreenAndThePickerStays) {
  const auto first = openSource({.title = "1", .area = sourceArea, .decorated = false});
  const auto second = openSource({.title = "2", .area = sourceArea, .decorated = false});
  startVistrel();
  mirrorRow(0, 2, 1);
  // The selection's own colours give way when another row is selected.
  const std::vector<Rect> rows = vistrel_->pickerRows(2);
  input_.rest(betweenClicks);
  input_.clickAt(rows[1].centre());
  EXPECT_TRUE(eventually([&] { return vistrel_->picker().isMarked(rows[0]); }));
  EXPECT_FALSE(vistrel_->picker().isMarked(rows[1]));
}

TEST_F(Picker, ASecondRequestBringsTheMirrorForward) {
  const auto first = openSource({.title = "1", .area = sourceArea, .decorated = false});
  const auto second = openSource({.title = "2", .area = sourceArea, .decorated = false});
  startVistrel();
  const PanelOnScreen lower = mirrorRow(0, 2, 1);
  const PanelOnScreen upper = mirrorRow(1, 2, 2);
  EXPECT_TRUE(eventually([&] { return isAbove(connection_, upper.id(), lower.id()); }));
  mirrorRow(0, 2, 2);
  EXPECT_TRUE(eventually([&] { return isAbove(connection_, lower.id(), upper.id()); }));
  EXPECT_EQ(vistrel_->panels().size(), 2u);
}

TEST_F(Picker, ASecondRequestUnrollsTheMirrorWhereItIs) {
  const auto source = openSource();
  const PanelOnScreen panel = mirrorOnlySource();
  const Rect opened = panel.area();
  const Point from = panel.titleBar();
  input_.drag(from, {700, 200});
  ASSERT_TRUE(eventually([&] {
    return panel.area() ==
           Rect{opened.x + 700 - from.x, opened.y + 200 - from.y, opened.width, opened.height};
  }));
  input_.rest(betweenClicks);
  input_.clickAt({700, 200}, 2);
  ASSERT_TRUE(eventually([&] { return panel.area().height == PanelOnScreen::titleBarHeight; }));
  const Rect rolledUp = panel.area();
  mirrorRow(0, 1, 1);
  EXPECT_TRUE(eventually([&] {
    return panel.area() == PanelOnScreen::computedArea(sourceArea, {rolledUp.x, rolledUp.y});
  }));
}

TEST_F(Picker, ClosingItLeavesTheMirrorsAlive) {
  const auto source = openSource();
  const PanelOnScreen panel = mirrorOnlySource();
  const PickerOnScreen picker = vistrel_->picker();
  connection_.sendToManager(picker.id(), "_NET_CLOSE_WINDOW", {0, 2});
  EXPECT_TRUE(eventually([&] { return !picker.isOnScreen(); }));
  source->show(Quadrants::uniform(blue));
  EXPECT_TRUE(eventually([&] { return panel.shows(Quadrants::uniform(blue)); }));
}

TEST_F(Picker, ItsFrameIsTheSameAfterARestart) {
  const auto source = openSource();
  startVistrel();
  const PickerOnScreen picker = vistrel_->picker();
  vistrel_->pickerRows(1);
  const Rect before = picker.area();
  // The manager's own way to move and resize: gravity of the frame itself, x, y, width, height, as
  // asked by a person (EWMH 1.5, _NET_MOVERESIZE_WINDOW).
  constexpr std::uint32_t staticAllFieldsByPerson = 10 | 0xf << 8 | 2 << 12;
  connection_.sendToManager(picker.id(), "_NET_MOVERESIZE_WINDOW",
                            {staticAllFieldsByPerson, 50, 90, 600, 500});
  const Rect moved{50, 90, 600, 500};
  ASSERT_TRUE(eventually([&] { return picker.area() == moved; }));
  ASSERT_NE(before, moved);
  // Once it answers at its new place the program knows of it. A click may come before the list is
  // painted there.
  ASSERT_TRUE(eventually([&] {
    for (const Rect& row : picker.rows()) {
      input_.rest(betweenClicks);
      input_.clickAt(row.centre(), 2);
    }
    return !vistrel_->panels().empty();
  }));
  vistrel_.reset();
  startVistrel();
  EXPECT_TRUE(eventually([&] { return vistrel_->picker().area() == moved; }));
}

// Out of reach, larger than any screen, smaller than a person can make it, or no frame at all.
TEST_F(Picker, AKeptFrameThatCannotBeLeavesItInTheMiddle) {
  const auto state = display_.home() / "state/vistrel";
  const auto file = state / "VistrelPicker.frame";
  std::filesystem::create_directories(state);
  const auto areaAtStart = [&] {
    startVistrel();
    const Rect area = vistrel_->picker().area();
    vistrel_.reset();
    return area;
  };
  const Rect middle = areaAtStart();
  EXPECT_EQ(middle.width, 460);
  for (const char* kept :
       {"5000 300 460 439\n", "100 100 30000 900\n", "100 100 9 9\n", "nonsense"}) {
    std::filesystem::remove(file);
    std::ofstream(file) << kept;
    EXPECT_EQ(areaAtStart(), middle) << kept;
  }
  std::filesystem::remove(file);
  ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
  EXPECT_EQ(areaAtStart(), middle) << "a pipe";
}

}  // namespace
}  // namespace vistrel::testbed
