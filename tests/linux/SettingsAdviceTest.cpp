#include <gtest/gtest.h>
#include <string>

#include "platform/linux/SettingsAdvice.h"

namespace vistrel::platform::linux_desktop {
namespace {

constexpr auto capturePage =
    "x-apple.systempreferences:com.apple.preference.security?Privacy_ScreenCapture";
constexpr auto movingPage =
    "x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility";

std::string adviceOn(const char* page, const SessionFacts& facts) {
  const auto advice = settingsAdvice(page, facts);
  return advice ? advice->informativeText : "";
}

TEST(SettingsAdvice, NamesWhatTheServerLacksForCapturing) {
  const auto text = adviceOn(capturePage, {.missingForCapture = {"Composite 0.4", "RENDER 0.10"}});
  EXPECT_TRUE(
      text.starts_with("Windows cannot be captured because the display server does not "
                       "offer Composite 0.4, RENDER 0.10."))
      << text;
  EXPECT_EQ(adviceOn(capturePage, {}), "Windows can be captured on this display.");
}

TEST(MirroringNotice, NamesWhatTheServerLacksAndIsNoneWhereItLacksNothing) {
  EXPECT_EQ(mirroringNotice({.missingForCapture = {"Composite 0.4", "RENDER 0.10"}}),
            "Windows cannot be mirrored on this display. Its server does not offer Composite 0.4, "
            "RENDER 0.10. “Allow Screen Recording…” tells more.");
  EXPECT_EQ(mirroringNotice({}), "");
}

TEST(MirroringNotice, TellsTheCommandThatGrantsNativeWindowsAsTheAdviceDoes) {
  const SessionFacts facts{.grantCommand = "/usr/libexec/grant /usr/bin/vistrel"};
  const auto notice = mirroringNotice(facts);
  EXPECT_TRUE(notice.starts_with("Only windows of X programs can be mirrored:")) << notice;
  EXPECT_TRUE(notice.ends_with("start Vistrel again:\n/usr/libexec/grant /usr/bin/vistrel"))
      << notice;
  EXPECT_EQ(adviceOn(capturePage, facts), notice);
}

TEST(SettingsAdvice, TellsWhetherAManagerRunsThatMovesWindows) {
  EXPECT_TRUE(
      adviceOn(movingPage, {})
          .starts_with(
              "It is the window manager that moves windows, and none runs on this display."));
  for (const char* name : {"awesome", ""}) {
    EXPECT_TRUE(adviceOn(movingPage, {.managerName = name})
                    .starts_with("The window manager moves windows for other programs."));
  }
}

TEST(SettingsAdvice, IsOneLineToReadAndOneButton) {
  const auto advice = settingsAdvice(movingPage, {});
  ASSERT_TRUE(advice.has_value());
  EXPECT_EQ(advice->messageText, "There is no permission to give here.");
  EXPECT_EQ(advice->buttonTitles, std::vector<std::string>{"OK"});
}

TEST(SettingsAdvice, IsGivenForNothingElse) {
  EXPECT_FALSE(settingsAdvice("https://example.org/?Privacy_Accessibility", {}).has_value());
  EXPECT_FALSE(settingsAdvice("", {}).has_value());
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
