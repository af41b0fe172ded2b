#pragma once

#import <AppKit/AppKit.h>
#include <string>
#include <vector>

// AppKit as a scenario and other fakes of it see it.

namespace vistrel::fake {

/// What ends the process.
struct Terminated {};

/// All windows, in the order in which they were made.
std::vector<NSWindow*> windows();

/// Asks the delegate to fill the menu, as AppKit does each time before it shows one, and turns the
/// queues, which go on while it is open.
void open(NSMenu* menu);

/// Whether a person finds the line enabled: where the menu enables its lines itself, when somebody
/// performs their action; else as the line says.
bool isEnabled(NSMenuItem* line);

/// What a person who presses on the line brings about.
void choose(NSMenuItem* line);

/// The views that the table shows, one for each row, asked for anew when it was told to reload.
std::vector<NSView*> rowViews(NSTableView* table);

/// How many constraints hold among the view and those in it, of which it is the nearest that holds
/// both ends.
long activeConstraints(NSView* view);

/// A press on a control.
void press(NSControl* control);

// Mouse events, at places in a window's own coordinates. Where the pointer is on the screen is the
// desktop's to say.

/// The frontmost view there that is not hidden; nil for none.
NSView* viewAt(NSWindow* window, NSPoint location);
/// To the view under the pointer, which gets what follows up to the release, too.
void mouseDown(NSWindow* window, NSPoint location, NSEventModifierFlags modifiers = 0,
               NSInteger clicks = 1);
void mouseDragged(NSPoint location, NSEventModifierFlags modifiers = 0);
void mouseUp(NSPoint location, NSEventModifierFlags modifiers = 0, NSInteger clicks = 1);
/// The menu that a click with the other button opens, opened; nil for none.
NSMenu* contextMenu(NSWindow* window, NSPoint location);

}  // namespace vistrel::fake
