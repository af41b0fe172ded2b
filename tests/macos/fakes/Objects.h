#pragma once

#import <Foundation/Foundation.h>
#include <map>
#include <string>

// What the fakes do for each other.

namespace vistrel::fake {

/// An object has gone: another at its address is another one.
void forgetObject(const void* gone);

/// Makes an object that a framework shares and never releases.
id makeShared(Class type);
/// How many of them there are, by the name of their class.
const std::map<std::string, long>& sharedObjects();

/// The object, which stays in the pool: ARC would hand it over at once to a caller that keeps it,
/// but the frameworks' own code need not be compiled with it.
id leftToPool(id object);

void openQueues();
void closeQueues();

/// What AppKit does at the end of a turn of its event loop: lays out and draws what needs it in the
/// windows that are shown.
void displayWindows();

}  // namespace vistrel::fake
