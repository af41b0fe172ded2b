#include "platform/linux/SettingsAdvice.h"

namespace vistrel::platform::linux_desktop {
namespace {

constexpr auto capturePage =
    "x-apple.systempreferences:com.apple.preference.security?Privacy_ScreenCapture";
constexpr auto movingPage =
    "x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility";

std::string listOf(const std::vector<std::string>& names) {
  std::string list;
  for (const auto& each : names) list += (list.empty() ? "" : ", ") + each;
  return list;
}

/// Empty where there is nothing to grant.
std::string grantAdvice(const SessionFacts& facts) {
  if (facts.grantCommand.empty()) return {};
  return "Only windows of X programs can be mirrored: KWin shows native ones only to programs that "
         "have been granted it. To grant it, run this in a terminal, then start Vistrel again:\n" +
         facts.grantCommand;
}

std::string captureAdvice(const SessionFacts& facts) {
  if (facts.missingForCapture.empty()) {
    return facts.grantCommand.empty() ? "Windows can be captured on this display."
                                      : grantAdvice(facts);
  }
  return "Windows cannot be captured because the display server does not offer " +
         listOf(facts.missingForCapture) +
         ".\n\nA server may have been started without it, or keep it from programs that it does not"
         " trust, such as those that come through “ssh -X”: “ssh -Y” is trusted. Once the server "
         "offers it, start Vistrel again.";
}

std::string movingAdvice(const SessionFacts& facts) {
  if (facts.managerName) {
    return "The window manager moves windows for other programs. Choose the command again.";
  }
  return "It is the window manager that moves windows, and none runs on this display. Start one, "
         "then choose the command again.";
}

}  // namespace

std::optional<Alert> settingsAdvice(const std::string& url, const SessionFacts& facts) {
  const bool isAboutCapture = url == capturePage;
  if (!isAboutCapture && url != movingPage) return std::nullopt;
  return Alert{.messageText = "There is no permission to give here.",
               .informativeText = isAboutCapture ? captureAdvice(facts) : movingAdvice(facts),
               .buttonTitles = {"OK"}};
}

std::string mirroringNotice(const SessionFacts& facts) {
  if (facts.missingForCapture.empty()) return grantAdvice(facts);
  return "Windows cannot be mirrored on this display. Its server does not offer " +
         listOf(facts.missingForCapture) + ". “Allow Screen Recording…” tells more.";
}

}  // namespace vistrel::platform::linux_desktop
