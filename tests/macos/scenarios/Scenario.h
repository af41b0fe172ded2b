#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "tests/macos/fakes/AppKitFakes.h"
#include "tests/macos/fakes/CaptureFakes.h"
#include "tests/macos/fakes/Recorder.h"
#include "tests/macos/fakes/State.h"
#include "tests/macos/fakes/World.h"

namespace vistrel {

/// The program, run as `main` runs it over the fakes, and a person at it. One for each process,
/// since what the application and the core share is; CTest runs each test in a process of its own.
class Scenario : public testing::Test {
 protected:
  /// What the program finds when it starts, and what changes around it while it runs.
  fake::Desktop& desktop() { return world_.desktop(); }

  /// Runs the program. `person` acts in its event loop when it has launched. What the person opens
  /// has to be closed in the end: two seconds later as many objects live as when the person came.
  void run(const std::function<void()>& person);

  /// Runs one of its other modes, which has to end by itself and leave no object behind; its exit
  /// status.
  int runWith(const std::vector<std::string>& options);

  /// Counts the objects from here on, where the program keeps some of what the person did before.
  void countFromHere() { objectsAtStart_ = fake::liveObjects(); }

  /// Whether the program ended itself, which is where `person` ended too.
  bool hasTerminated() const { return terminated_; }

  static NSWindow* picker();
  /// Those that are shown, in the order in which they were made.
  static std::vector<NSWindow*> panels();
  /// As a person who chooses that row.
  static void doubleClick(NSTableView* table, NSInteger row);

 private:
  int runProgram(const std::vector<std::string>& options);

  fake::World world_;
  std::map<std::string, long> objectsAtStart_;
  bool terminated_ = false;
};

/// Of the lines, "-" for a separator.
std::vector<std::string> titles(NSMenu* menu);
/// Ends the test when there is no such line.
NSMenuItem* line(NSMenu* menu, const std::string& title);

/// The first view of that class at or below `root`; ends the test when there is none.
NSView* findView(NSView* root, Class type);
/// Likewise the first that a screen reader calls so.
NSView* findLabelled(NSView* root, const std::string& accessibilityLabel);
/// Likewise.
NSButton* button(NSView* root, const std::string& title);

/// Of the labels at or below `root` that are not hidden.
std::vector<std::string> shownTexts(NSView* root);
std::vector<std::string> rows(NSTableView* table);
std::string utf8(NSString* text);

/// Whether messages contain these parts, each message one, in that order.
testing::AssertionResult said(const std::vector<std::string>& parts);

}  // namespace vistrel
