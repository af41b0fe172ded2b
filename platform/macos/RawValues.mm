// The enumerations of the seam that promise the frameworks' raw values keep that promise; the peers
// cast between the two.

#import <AppKit/AppKit.h>
#import <ScreenCaptureKit/ScreenCaptureKit.h>

#include "platform/Alert.h"
#include "platform/Controls.h"
#include "platform/ScreenCapture.h"
#include "platform/Window.h"

namespace vistrel::platform::macos {

namespace {

template <class Ours, class Theirs>
constexpr bool same(Ours ours, Theirs theirs) {
  return static_cast<long>(ours) == static_cast<long>(theirs);
}

static_assert(same(styleBorderless, NSWindowStyleMaskBorderless));
static_assert(same(styleTitled, NSWindowStyleMaskTitled));
static_assert(same(styleClosable, NSWindowStyleMaskClosable));
static_assert(same(styleMiniaturizable, NSWindowStyleMaskMiniaturizable));
static_assert(same(styleResizable, NSWindowStyleMaskResizable));
static_assert(same(styleNonactivatingPanel, NSWindowStyleMaskNonactivatingPanel));

static_assert(same(behaviorDefault, NSWindowCollectionBehaviorDefault));
static_assert(same(behaviorCanJoinAllSpaces, NSWindowCollectionBehaviorCanJoinAllSpaces));
static_assert(same(behaviorFullScreenAuxiliary, NSWindowCollectionBehaviorFullScreenAuxiliary));

static_assert(same(BackingStore::buffered, NSBackingStoreBuffered));

static_assert(same(modifierShift, NSEventModifierFlagShift));
static_assert(same(modifierControl, NSEventModifierFlagControl));
static_assert(same(modifierOption, NSEventModifierFlagOption));
static_assert(same(modifierCommand, NSEventModifierFlagCommand));

static_assert(same(BezelStyle::rounded, NSBezelStyleRounded));
static_assert(same(BorderType::none, NSNoBorder));
static_assert(same(BorderType::bezel, NSBezelBorder));
static_assert(same(ImageScaling::proportionallyDown, NSImageScaleProportionallyDown));
static_assert(same(LineBreakMode::wordWrapping, NSLineBreakByWordWrapping));
static_assert(same(LineBreakMode::truncatingTail, NSLineBreakByTruncatingTail));

static_assert(same(alertFirstButtonReturn, NSAlertFirstButtonReturn));

static_assert(same(StreamOutputType::screen, SCStreamOutputTypeScreen));
static_assert(same(StreamOutputType::audio, SCStreamOutputTypeAudio));
static_assert(same(FrameStatus::complete, SCFrameStatusComplete));
static_assert(same(FrameStatus::idle, SCFrameStatusIdle));
static_assert(same(FrameStatus::blank, SCFrameStatusBlank));
static_assert(same(FrameStatus::suspended, SCFrameStatusSuspended));
static_assert(same(FrameStatus::started, SCFrameStatusStarted));
static_assert(same(FrameStatus::stopped, SCFrameStatusStopped));

static_assert(same(pixelFormat32BGRA, kCVPixelFormatType_32BGRA));

}  // namespace

}  // namespace vistrel::platform::macos
