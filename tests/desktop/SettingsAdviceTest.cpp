#include <algorithm>
#include <string>

#include "tests/desktop/DesktopTest.h"
#include "tests/support/AccessibilityBus.h"
#include "tests/support/AuthorityFile.h"

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

class CaptureNotice : public DesktopTest {
 protected:
  explicit CaptureNotice(const PrivateDisplay::Options& options) : DesktopTest(options) {}

  void expectNotice(const std::string& missing) {
    const auto isShown = [&](const std::string& beginning) {
      const auto labels = reader_.program(vistrel_->process().pid()).all("label");
      return std::ranges::any_of(labels, [&](const Accessible& each) {
        return each.name().starts_with(beginning) && each.is(AccessibleState::showing);
      });
    };
    const std::string notice =
        "Windows cannot be mirrored on this display. Its server does not offer ";
    EXPECT_TRUE(eventually([&] { return isShown(notice + missing); }));
    EXPECT_TRUE(eventually(
        [&] { return isShown("Click “Allow Screen Recording…”, enable Vistrel, then Refresh."); }));
  }

  AccessibilityBus reader_{display_};
};

/// On a server without the extension that the parameter names.
class WithoutExtension : public CaptureNotice, public ::testing::WithParamInterface<const char*> {
 protected:
  WithoutExtension() : CaptureNotice({.serverArguments = {"-extension", GetParam()}}) {}
};

TEST_P(WithoutExtension, ANoticeUnderTheListSaysWhatTheDisplayLacks) {
  startVistrel();
  expectNotice(GetParam());
}

// Not XFIXES: without it Xvfb 21.1.7 crashes as soon as any client goes.
INSTANTIATE_TEST_SUITE_P(, WithoutExtension, ::testing::Values("Composite", "DAMAGE", "RENDER"),
                         [](const auto& parameter) { return std::string(parameter.param); });

/// Made before the server that knows cookies by it.
class WithAuthority {
 protected:
  const AuthorityFile authority_;
};

/// Where the program alone has a cookie, one that the server does not trust (X11 SECURITY
/// extension); who has none is let in all the same.
class WithUntrustedCookie : protected WithAuthority, public CaptureNotice {
 protected:
  WithUntrustedCookie() : CaptureNotice({.serverArguments = {"-auth", authority_.path(), "-ac"}}) {}

  void startWithUntrustedCookie() {
    const std::string untrusted = authority_.path() + "-untrusted";
    ChildProcess making({.arguments = {"xauth", "-f", untrusted, "generate", display_.name(), ".",
                                       "untrusted", "timeout", "0"},
                         .environment = display_.environment()});
    const auto ending = making.waitForEnd();
    ASSERT_TRUE(ending && ending->exitStatus == 0) << making.standardError();
    auto environment = display_.environment();
    environment.push_back("XAUTHORITY=" + untrusted);
    vistrel_ = std::make_unique<RunningVistrel>(
        connection_, RunningVistrel::command({}, std::move(environment)));
  }
};

TEST_F(WithUntrustedCookie, ANoticeUnderTheListSaysWhatTheDisplayLacks) {
  startWithUntrustedCookie();
  expectNotice("Composite 0.4, DAMAGE 1.1, XFIXES 2.0");
}

}  // namespace
}  // namespace vistrel::testbed
