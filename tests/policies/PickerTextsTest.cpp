#include <gtest/gtest.h>

#include "picker/PickerTexts.h"

namespace vistrel {
namespace {

platform::ShareableWindow window(const char* application, const char* title) {
  platform::ShareableWindow result;
  if (title != nullptr) result.title = title;
  if (application != nullptr) {
    result.owningApplication = std::make_shared<platform::SharedApplication>(
        platform::SharedApplication{.applicationName = application});
  }
  return result;
}

TEST(PickerStatus, CountsTheWindows) {
  EXPECT_EQ(pickerStatus(1, true), "1 window — double-click to mirror.");
  EXPECT_EQ(pickerStatus(7, true), "7 windows — double-click to mirror.");
  EXPECT_EQ(pickerStatus(7, false), "7 windows — double-click to mirror.");
}

TEST(PickerStatus, TellsWhatToDoWhenThereIsNone) {
  EXPECT_EQ(pickerStatus(0, true),
            "No mirror-worthy windows found. Open an app window and Refresh.");
  EXPECT_EQ(pickerStatus(0, false),
            "Click “Allow Screen Recording…”, enable Vistrel, then Refresh.");
}

TEST(PickerStatus, TellsWhatItWaitsFor) {
  EXPECT_EQ(pickerStatusWhileLooking(true), "Looking for windows…");
  EXPECT_EQ(pickerStatusWhileLooking(false),
            "Vistrel needs Screen Recording permission to see and mirror windows.");
}

TEST(PickerRowText, NamesApplicationAndTitle) {
  EXPECT_EQ(pickerRowText(window("Notes", "Groceries"), false), "Notes — Groceries");
}

TEST(PickerRowText, MarksAMirroredWindow) {
  EXPECT_EQ(pickerRowText(window("Browser", "Start Page"), true), "● Browser — Start Page");
}

TEST(PickerRowText, NamesWhatHasNoName) {
  EXPECT_EQ(pickerRowText(window("Notes", nullptr), false), "Notes — Untitled");
  EXPECT_EQ(pickerRowText(window(nullptr, "Inbox"), false), "Unknown — Inbox");
}

TEST(PickerRowText, KeepsAnEmptyTitleEmpty) {
  EXPECT_EQ(pickerRowText(window("Notes", ""), false), "Notes — ");
}

}  // namespace
}  // namespace vistrel
