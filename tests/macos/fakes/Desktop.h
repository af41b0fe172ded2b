#pragma once

#import <CoreGraphics/CoreGraphics.h>

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <vector>

namespace vistrel::fake {

/// A window of another program, in global display space. Points.
struct SourceWindow {
  CGWindowID id = 77;
  std::string title = "Title";
  CGRect frame = {{10, 20}, {1000, 500}};
  std::string application = "App";
  int processID = 99;
  int layer = 0;
  bool isOnScreen = true;
};

/// In AppKit's screen space.
struct ScreenArea {
  CGRect frame;
  CGRect visibleFrame;
  double backingScaleFactor;
};

/// What the fakes find around the program: for a scenario to set before it launches the program and
/// to change meanwhile.
struct Desktop {
  bool hasWindowServer = true;
  std::vector<ScreenArea> screens = {{{{0, 0}, {1440, 900}}, {{0, 0}, {1440, 875}}, 2}};
  CGPoint mouse = {0, 0};

  bool isScreenCaptureAllowed = true;
  bool isAccessibilityAllowed = true;
  std::vector<SourceWindow> windows;
  /// How long the capture service takes to answer.
  double serviceSeconds = 0;
  /// What the next answers of the capture service fail with.
  std::optional<std::string> listingError;
  /// Empty for a failure that says nothing.
  std::optional<std::string> outputError;
  std::optional<std::string> startError;

  /// What a person presses in the alerts that come, from the first button (1000) on; an alert that
  /// nobody answers ends the test.
  std::deque<long> alertAnswers;
  /// What the bundle's Info.plist says its version is.
  std::string version = "1.0.0";
};

}  // namespace vistrel::fake
