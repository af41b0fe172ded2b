#pragma once

#include "tests/macos/scenarios/Scenario.h"

namespace vistrel {

/// A scenario whose person has mirrors. One window is listed unless the scenario says otherwise, of
/// 1000 × 500 points, whose panel opens 340 × 196 points large at {32, 647}.
class MirrorScenario : public Scenario {
 protected:
  MirrorScenario() { desktop().windows = {{.id = 77, .title = "Plan", .application = "Notes"}}; }

  /// Runs the program with a person who opens a mirror of the picker's first row, acts, and closes
  /// the mirrors that are left.
  void runWithMirror(const std::function<void()>& person);

  /// Of a row of the picker; forgets the messages so far.
  static void openMirror(NSInteger row = 0);
  static void closeMirror(std::size_t index = 0);

  // Of the mirror that was opened so many mirrors after the first that is open.

  static NSWindow* panel(std::size_t index = 0);
  static NSView* card(std::size_t index = 0);
  static NSButton* closeButton(std::size_t index = 0);
  static SCStream* stream(std::size_t index = 0);
  static id picture(std::size_t index = 0);
  /// The colour of the dot that a screen reader calls so.
  static std::string dot(const std::string& label, std::size_t index = 0);

  // Places in a panel, in its own coordinates.

  static NSPoint onTitleBar(NSWindow* panel);
  static NSPoint onPicture(NSWindow* panel);
  static NSPoint onGrip(NSWindow* panel);

  /// Chooses from the panel's context menu, or from its submenu of scales.
  static void command(const std::string& title, std::size_t index = 0);
  static void scale(const std::string& title, std::size_t index = 0);

  /// Presses there and moves the pointer, without letting go.
  void drag(NSWindow* panel, NSPoint place, CGSize by, NSEventModifierFlags modifiers = 0);
  static void drop() { fake::mouseUp({0, 0}, 0, 1); }
};

constexpr const char* live = "rgba 0.3 0.85 0.45 1";
constexpr const char* stale = "rgba 0.98 0.7 0.2 1";
constexpr const char* error = "systemRed";

}  // namespace vistrel
