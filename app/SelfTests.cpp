#include "app/SelfTests.h"

#include <algorithm>
#include <memory>

#include "app/SelfTestReport.h"
#include "parking/VLVirtualDisplay.h"
#include "platform/Application.h"
#include "platform/Dispatch.h"
#include "platform/Displays.h"
#include "platform/Screen.h"
#include "platform/StandardError.h"

namespace vistrel {

using platform::Application;

namespace {

/// For how long a new display is given to come online, in seconds, and in what slices.
constexpr double patience = 2.5;
constexpr double slice = 0.05;

int runDiagnostics() {
  platform::writeToStandardError(VLVirtualDisplay::diagnostics());
  return 0;
}

platform::Date inSeconds(double seconds) {
  return {platform::now().secondsSinceReference + seconds};
}

void pumpEvents(Application& application) {
  const platform::Date deadline = inSeconds(patience);
  while (platform::now().timeIntervalSince(deadline) < 0) {
    application.sendNextEvent(inSeconds(slice));
  }
}

SelfTestFindings tryVirtualDisplay(Application& application) {
  SelfTestFindings findings;
  findings.onlineBefore = platform::onlineDisplayCount();
  auto display = VLVirtualDisplay::displayWithWidth(1920, 1080, "Vistrel Self-Test");
  findings.displayID = display ? display->displayID() : 0;
  pumpEvents(application);
  if (findings.displayID != 0) findings.bounds = platform::displayBounds(findings.displayID);
  findings.mainMaxX = platform::displayBounds(platform::mainDisplayID()).maxX();
  findings.created = display != nullptr;
  display.reset();
  findings.onlineAfter = platform::onlineDisplayCount();
  findings.screens = platform::screens().size();
  return findings;
}

int runVirtualDisplayTest() {
  Application& application = Application::shared();
  application.setActivationPolicy(platform::ActivationPolicy::regular);
  application.finishLaunching();
  const SelfTestFindings findings = tryVirtualDisplay(application);
  platform::writeToStandardError(selfTestReport(findings));
  const bool isOnline =
      findings.bounds.width() > 0 && findings.onlineBefore < platform::onlineDisplayCount();
  return isOnline ? 0 : 1;
}

}  // namespace

std::optional<SelfTest> selfTestAskedFor(const std::vector<std::string>& arguments) {
  const auto isGiven = [&](const char* option) {
    return std::find(arguments.begin(), arguments.end(), option) != arguments.end();
  };
  if (isGiven("--vddiag")) return SelfTest::diagnostics;
  if (isGiven("--vdtest")) return SelfTest::virtualDisplay;
  return std::nullopt;
}

int run(SelfTest test) {
  return test == SelfTest::diagnostics ? runDiagnostics() : runVirtualDisplayTest();
}

}  // namespace vistrel
