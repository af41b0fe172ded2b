#pragma once

#import <CoreGraphics/CoreGraphics.h>

#include <cstdint>
#include <deque>
#include <map>
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
  // What its program does of what Accessibility asks for.
  bool isAmongItsWindows = true;
  bool tellsItsPosition = true;
  bool moves = true;
};

/// In AppKit's screen space.
struct ScreenArea {
  CGRect frame;
  CGRect visibleFrame;
  double backingScaleFactor;
};

/// What the window server makes of displays that programs ask for.
struct VirtualDisplayServer {
  /// The classes that stand for names that the program looks up; an empty name for none.
  std::map<std::string, std::string> classes;
  /// From when it was told of the modes. None for never.
  std::optional<double> secondsUntilOnline = 0;
  /// Where a display comes to lie that nobody has placed, in global display space.
  CGPoint origin = {-5000, 0};
  /// Those that are online, in global display space. Points.
  std::map<CGDirectDisplayID, CGRect> displays;
  CGDirectDisplayID lastDisplayID = 100;
};

/// What the fakes find around the program: for a scenario to set before it launches the program and
/// to change meanwhile.
struct Desktop {
  bool hasWindowServer = true;
  std::vector<ScreenArea> screens = {{{{0, 0}, {1440, 900}}, {{0, 0}, {1440, 875}}, 2}};
  CGPoint mouse = {0, 0};
  VirtualDisplayServer virtualDisplays;
  bool takesDisplayConfigurations = true;
  /// Frames of windows that an earlier run saved, by the name that it saved them under.
  std::map<std::string, CGRect> savedFrames;

  bool isScreenCaptureAllowed = true;
  bool isAccessibilityAllowed = true;
  /// Whether the system has the function for it, which no header declares.
  bool tellsWindowNumbers = true;
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
  /// How many events wait for whoever asks the application for them.
  int waitingEvents = 0;
  /// What the bundle's Info.plist says its version is; none where that is no text.
  std::optional<std::string> version = "1.0.0";
  /// Whether programs can be launched.
  bool launches = true;
};

}  // namespace vistrel::fake
