#pragma once

#import <AppKit/AppKit.h>

#include "platform/View.h"

namespace vistrel::platform::macos {

/// Has a status read out that comes to be shown, or that changes while it is; nothing for other
/// views. Called before `realized` is brought up to date with `view`. Main thread.
void announceStatus(const View& view, NSView* realized);

}  // namespace vistrel::platform::macos
