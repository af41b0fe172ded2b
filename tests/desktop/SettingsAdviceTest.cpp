#include <algorithm>
#include <string>

#include "tests/desktop/DesktopTest.h"
#include "tests/support/AccessibilityBus.h"

namespace vistrel::testbed {
namespace {

/// The program on a server that does not let windows be captured.
class WithoutCapture : public DesktopTest {
 protected:
  WithoutCapture() : DesktopTest({.serverArguments = {"-extension", "Composite"}}) {}

  Accessible program() const { return reader_.program(vistrel_->process().pid()); }
  /// Waits for the alert that says so, the only one, and answers it.
  void answer(const std::string& text, const std::string& button) const {
    const auto alerts = [this] { return program().all("alert message"); };
    ASSERT_TRUE(eventually([&] {
      const auto all = alerts();
      return all.size() == 1 && all.front().outline().find(text) != std::string::npos;
    })) << text;
    const Accessible alert = alerts().front();
    alert.only("push button", button).perform("Press");
    EXPECT_TRUE(eventually([&] { return alert.isDefunct(); }));
  }

  AccessibilityBus reader_{display_};
};

TEST_F(WithoutCapture, TheSettingsActionNamesWhatTheServerLacks) {
  startVistrel();
  const auto button = program().only("push button", "Allow Screen Recording…");
  ASSERT_TRUE(eventually([&] { return button.is(AccessibleState::showing); }));
  letProgramCatchUp();
  input_.clickAt(button.area().centre());
  answer("does not offer Composite 0.4", "OK");
  answer("Allow Screen Recording for Vistrel", "Later");
}

/// On a server without the extension that the parameter names.
class WithoutExtension : public DesktopTest, public ::testing::WithParamInterface<const char*> {
 protected:
  WithoutExtension() : DesktopTest({.serverArguments = {"-extension", GetParam()}}) {}

  AccessibilityBus reader_{display_};
};

TEST_P(WithoutExtension, ANoticeUnderTheListSaysWhatTheDisplayLacks) {
  startVistrel();
  const auto labels = [this] { return reader_.program(vistrel_->process().pid()).all("label"); };
  const auto isShown = [&](const std::string& beginning) {
    return std::ranges::any_of(labels(), [&](const Accessible& each) {
      return each.name().starts_with(beginning) && each.is(AccessibleState::showing);
    });
  };
  const std::string notice =
      "Windows cannot be mirrored on this display. Its server does not offer ";
  EXPECT_TRUE(eventually([&] { return isShown(notice + GetParam()); }));
  EXPECT_TRUE(eventually(
      [&] { return isShown("Click “Allow Screen Recording…”, enable Vistrel, then Refresh."); }));
}

// Not XFIXES: without it Xvfb 21.1.7 crashes as soon as any client goes.
INSTANTIATE_TEST_SUITE_P(, WithoutExtension, ::testing::Values("Composite", "DAMAGE", "RENDER"),
                         [](const auto& parameter) { return std::string(parameter.param); });

}  // namespace
}  // namespace vistrel::testbed
