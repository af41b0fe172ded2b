#pragma once

#import <AppKit/AppKit.h>

#include <memory>

#include "platform/Controls.h"
#include "platform/View.h"

// The AppKit views behind the core's views. Each holds its view of the core weakly and does nothing
// once that is gone. Main thread.

NS_ASSUME_NONNULL_BEGIN

/// A plain view: forwards what AppKit asks and tells.
@interface VLView : NSView
- (instancetype)initWithView:(std::weak_ptr<vistrel::platform::View>)view;
@end

/// A text. Clicks and the context menu belong to the view that it lies in.
@interface VLLabel : NSTextField
@end

/// A symbol. Clicks and the context menu belong to the view that it lies in.
@interface VLImageView : NSImageView
@end

/// A push button. The context menu belongs to the view that it lies in.
@interface VLButton : NSButton
/// From then on a click does what a click on the core's button does.
- (void)clickButton:(std::weak_ptr<vistrel::platform::Button>)button;
@end

NS_ASSUME_NONNULL_END
