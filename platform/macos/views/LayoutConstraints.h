#pragma once

#import <AppKit/AppKit.h>

#include <functional>

#include "platform/View.h"

namespace vistrel::platform::macos {

/// Answers the AppKit view of a view; nil for one that has none.
using FindRealized = std::function<NSView*(const View&)>;

/// The constraints of `container` for AppKit, not active yet; those are left out that name a view
/// without an AppKit view.
NSArray<NSLayoutConstraint*>* layoutConstraints(const View& container,
                                                const FindRealized& findRealized);

}  // namespace vistrel::platform::macos
