#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/linux/wayland/kwin/MergedWindows.h"

namespace vistrel::platform::linux_desktop {
namespace {

using ::testing::ElementsAre;

WindowRecord window(std::int32_t process, const std::string& title, double x = 0) {
  auto record = std::make_shared<ShareableWindow>();
  record->title = title;
  record->frame = rect(x, 0, 400, 300);
  record->owningApplication =
      std::make_shared<SharedApplication>(SharedApplication{"Any", process});
  return record;
}

MergedWindow fromX(std::size_t index) { return {MergedWindow::From::x, index}; }
MergedWindow fromKWin(std::size_t index) { return {MergedWindow::From::kwin, index}; }

TEST(MergeWindows, TakesAWindowThatBothKnowFromX) {
  EXPECT_THAT(mergeWindows({window(1, "Document")}, {window(1, "Document")}),
              ElementsAre(fromX(0)));
}

TEST(MergeWindows, TellsWindowsOfTwoProcessesApart) {
  EXPECT_THAT(mergeWindows({window(1, "Document")}, {window(2, "Document"), window(1, "Document")}),
              ElementsAre(fromKWin(0), fromX(0)));
}

TEST(MergeWindows, KeepsTheOrderOfKWin) {
  const std::vector<WindowRecord> x = {window(1, "A"), window(1, "B")};
  const std::vector<WindowRecord> kwin = {window(1, "B"), window(2, "Native"), window(1, "A")};
  EXPECT_THAT(mergeWindows(x, kwin), ElementsAre(fromX(1), fromKWin(1), fromX(0)));
}

TEST(MergeWindows, TellsWindowsOfOneTitleApartByTheirPlaces) {
  const std::vector<WindowRecord> x = {window(1, "A", 0), window(1, "A", 500)};
  const std::vector<WindowRecord> kwin = {window(1, "A", 501), window(1, "A", 1)};
  EXPECT_THAT(mergeWindows(x, kwin), ElementsAre(fromX(1), fromX(0)));
}

TEST(MergeWindows, FindsAWindowThatHasMovedMeanwhileByItsTitle) {
  EXPECT_THAT(mergeWindows({window(1, "A", 0)}, {window(1, "A", 900)}), ElementsAre(fromX(0)));
}

TEST(MergeWindows, FindsAWindowThatKWinGivesANumberByItsPlace) {
  const std::vector<WindowRecord> x = {window(1, "A", 0), window(1, "A", 500)};
  const std::vector<WindowRecord> kwin = {window(1, "A <2>", 500), window(1, "A", 0)};
  EXPECT_THAT(mergeWindows(x, kwin), ElementsAre(fromX(1), fromX(0)));
}

TEST(MergeWindows, FindsItWithWhatKWinPutsAroundItToo) {
  auto decorated = [](const char* title, double x) {
    auto record = std::make_shared<ShareableWindow>(*window(1, title, x));
    record->frame.origin.y -= 37;
    record->frame.size.height += 37;
    return record;
  };
  const std::vector<WindowRecord> x = {window(1, "A", 0), window(1, "A", 30)};
  const std::vector<WindowRecord> kwin = {decorated("A <2>", 30), decorated("A", 0)};
  EXPECT_THAT(mergeWindows(x, kwin), ElementsAre(fromX(1), fromX(0)));
}

TEST(MergeWindows, FindsAWindowWithoutAKnownProcessByTitleAndPlace) {
  EXPECT_THAT(mergeWindows({window(7, "A", 0)}, {window(-1, "A", 0)}), ElementsAre(fromX(0)));
  EXPECT_THAT(mergeWindows({window(7, "A", 0)}, {window(-1, "A", 50)}),
              ElementsAre(fromKWin(0), fromX(0)));
}

TEST(MergeWindows, TakesNoWindowOfXTwice) {
  const std::vector<WindowRecord> kwin = {window(1, "A", 700), window(1, "A", 0)};
  EXPECT_THAT(mergeWindows({window(1, "A", 0)}, kwin), ElementsAre(fromKWin(0), fromX(0)));
}

TEST(MergeWindows, KeepsAWindowThatKWinDoesNotKnowRightAboveWhatItIsAbove) {
  const std::vector<WindowRecord> x = {window(1, "Menu", 10), window(1, "A"),
                                       window(1, "Wallpaper", 20)};
  const std::vector<WindowRecord> kwin = {window(2, "Native"), window(1, "A")};
  EXPECT_THAT(mergeWindows(x, kwin), ElementsAre(fromKWin(0), fromX(0), fromX(1), fromX(2)));
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
