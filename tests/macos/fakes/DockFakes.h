#pragma once

#import <AppKit/AppKit.h>

// What a person does with the program's icon in the Dock.

namespace vistrel::fake {

/// The menu of the icon, which AppKit asks the delegate for each time it is opened.
NSMenu* openDockMenu();

/// A click on the icon; what the delegate answers.
bool reopen();

}  // namespace vistrel::fake
