#include <string>

#include "tests/macos/fakes/AppKitFakes.h"
#include "tests/macos/fakes/Recorder.h"
#include "tests/macos/fakes/State.h"
#include "tests/macos/fakes/World.h"

using namespace vistrel;

const NSFontWeight NSFontWeightRegular = 0;
const NSFontWeight NSFontWeightSemibold = 0.3;
const NSFontWeight NSFontWeightBold = 0.4;

namespace {

NSColor* namedColor(const std::string& name) {
  NSColor* const color = [[NSColor alloc] init];
  color.name = [NSString stringWithUTF8String:name.c_str()];
  return color;
}

bool holds(NSView* ancestor, NSView* view) {
  while (view != nil && view != ancestor) view = view.superview;
  return view != nil;
}

/// Nil for none.
NSView* commonAncestor(NSView* first, NSView* second) {
  while (first != nil && !holds(first, second)) first = first.superview;
  return first;
}

NSSize sizeOfText(NSString* text) {
  return {static_cast<CGFloat>(7 * std::string(text.UTF8String).size()), 16};
}

}  // namespace

@implementation NSColor (VLBehaviour)

+ (NSColor*)colorWithSRGBRed:(CGFloat)red
                       green:(CGFloat)green
                        blue:(CGFloat)blue
                       alpha:(CGFloat)alpha {
  std::string name = "rgba";
  for (const CGFloat part : {red, green, blue, alpha}) name += ' ' + fake::describeNumber(part);
  return namedColor(name);
}

+ (NSColor*)labelColor {
  return namedColor("label");
}

+ (NSColor*)secondaryLabelColor {
  return namedColor("secondaryLabel");
}

+ (NSColor*)systemRedColor {
  return namedColor("systemRed");
}

+ (NSColor*)systemGreenColor {
  return namedColor("systemGreen");
}

- (CGColorRef)CGColor {
  return (__bridge CGColorRef)self;
}

@end

@implementation CALayer (VLBehaviour)

/// The layer keeps its colours: CALayer, backgroundColor, borderColor.
- (void)setBackgroundColor:(CGColorRef)color {
  fake::record(self, _cmd, color);
  self.background = (__bridge id)color;
}

- (CGColorRef)backgroundColor {
  return (__bridge CGColorRef)self.background;
}

- (void)setBorderColor:(CGColorRef)color {
  fake::record(self, _cmd, color);
  self.border = (__bridge id)color;
}

- (CGColorRef)borderColor {
  return (__bridge CGColorRef)self.border;
}

@end

/// Events that nobody takes go to the next responder: NSResponder, mouseDown: and its like.
@implementation NSResponder (VLBehaviour)

- (void)mouseDown:(NSEvent*)event {
  [self.nextResponder mouseDown:event];
}

- (void)mouseDragged:(NSEvent*)event {
  [self.nextResponder mouseDragged:event];
}

- (void)mouseUp:(NSEvent*)event {
  [self.nextResponder mouseUp:event];
}

@end

@implementation NSEvent (VLBehaviour)

+ (NSPoint)mouseLocation {
  return fake::world().desktop().mouse;
}

@end

@implementation NSView (VLBehaviour)

- (instancetype)init {
  return [self initWithFrame:NSRect()];
}

- (instancetype)initWithFrame:(NSRect)frame {
  self = [super init];
  fake::record(self, _cmd, frame);
  [self keepFrame:frame];
  [self keepNeedsDisplay:YES];
  self.activeConstraints = [NSMutableArray array];
  return self;
}

- (void)dealloc {
  [self leaveSubviews];
}

- (void)leaveSubviews {
  for (NSView* view in self.subviews) {
    view.superview = nil;
    [view keepNextResponder:nil];
  }
}

- (void)setSubviews:(NSArray<NSView*>*)views {
  fake::record(self, _cmd, views);
  [self leaveSubviews];
  [self keepSubviews:[views copy]];
  for (NSView* view in views) {
    view.superview = self;
    [view keepNextResponder:self];
  }
}

/// NSViewNoIntrinsicMetric for both sides: NSView, intrinsicContentSize.
- (NSSize)intrinsicContentSize {
  return {-1, -1};
}

- (BOOL)wantsUpdateLayer {
  return NO;
}

- (void)layout {
  fake::checkThread(self, _cmd);
}

- (void)drawRect:(NSRect)__unused dirty {
  fake::checkThread(self, _cmd);
}

- (CALayer*)makeBackingLayer {
  return [[CALayer alloc] init];
}

- (void)resetCursorRects {
  fake::checkThread(self, _cmd);
}

- (NSMenu*)menuForEvent:(NSEvent*)__unused event {
  return nil;
}

- (BOOL)acceptsFirstMouse:(NSEvent*)__unused event {
  return NO;
}

- (BOOL)isAccessibilitySelectorAllowed:(SEL)selector {
  return [self respondsToSelector:selector];
}

@end

@implementation NSTextField (VLBehaviour)

+ (instancetype)labelWithString:(NSString*)text {
  NSTextField* const label = [[self alloc] init];
  [label keepStringValue:text];
  return label;
}

- (NSSize)intrinsicContentSize {
  return sizeOfText(self.stringValue);
}

@end

@implementation NSButton (VLBehaviour)

+ (instancetype)buttonWithTitle:(NSString*)title target:(id)target action:(SEL)action {
  NSButton* const button = [[self alloc] init];
  [button keepTitle:title];
  [button keepTarget:target];
  [button keepAction:action];
  return button;
}

- (NSSize)intrinsicContentSize {
  const NSSize text = sizeOfText(self.title);
  return {text.width + 28, 32};
}

@end

@implementation NSImageView (VLBehaviour)

- (NSSize)intrinsicContentSize {
  return self.image != nil ? self.image.size : NSSize{-1, -1};
}

@end

@implementation NSImage (VLBehaviour)

+ (instancetype)imageWithSystemSymbolName:(NSString*)name
                 accessibilityDescription:(NSString*)description {
  fake::record(self, _cmd, name, description);
  NSImage* const image = [[self alloc] init];
  image.name = name;
  return image;
}

- (NSImage*)imageWithSymbolConfiguration:(NSImageSymbolConfiguration*)__unused configuration {
  return self;
}

- (NSSize)size {
  return {16, 16};
}

@end

@implementation NSAttributedString (VLBehaviour)

- (instancetype)initWithString:(NSString*)text attributes:(NSDictionary*)__unused attributes {
  self = [super init];
  self.text = text;
  return self;
}

- (NSSize)size {
  return sizeOfText(self.text);
}

- (NSRect)boundingRectWithSize:(NSSize)__unused size
                       options:(NSStringDrawingOptions)__unused options {
  return {{0, 0}, sizeOfText(self.text)};
}

- (void)drawWithRect:(NSRect)rect options:(NSStringDrawingOptions)options {
  fake::record(self, _cmd, rect, options);
}

@end

@implementation NSLayoutConstraint (VLBehaviour)

+ (instancetype)constraintWithItem:(id)first
                         attribute:(NSLayoutAttribute)firstAttribute
                         relatedBy:(NSLayoutRelation)relation
                            toItem:(id)second
                         attribute:(NSLayoutAttribute)secondAttribute
                        multiplier:(CGFloat)multiplier
                          constant:(CGFloat)constant {
  fake::record(self, _cmd, first, firstAttribute, relation, second, secondAttribute, multiplier,
               constant);
  NSLayoutConstraint* const made = [[self alloc] init];
  made.firstView = first;
  made.secondView = second;
  return made;
}

/// The closest common ancestor of both ends keeps it; where there is none this raises:
/// NSLayoutConstraint, active.
+ (void)activateConstraints:(NSArray<NSLayoutConstraint*>*)constraints {
  fake::record(self, _cmd, constraints);
  for (NSLayoutConstraint* constraint in constraints) {
    NSView* const holder = commonAncestor(constraint.firstView, constraint.secondView);
    if (holder == nil) fake::fail("a constraint between views without a common ancestor");
    constraint.holder = holder;
    [holder.activeConstraints addObject:constraint];
  }
}

+ (void)deactivateConstraints:(NSArray<NSLayoutConstraint*>*)constraints {
  fake::record(self, _cmd, constraints);
  for (NSLayoutConstraint* constraint in constraints) {
    NSMutableArray<NSLayoutConstraint*>* const others = [NSMutableArray array];
    for (NSLayoutConstraint* each in constraint.holder.activeConstraints) {
      if (each != constraint) [others addObject:each];
    }
    constraint.holder.activeConstraints = others;
    constraint.holder = nil;
  }
}

@end

namespace vistrel::fake {

namespace {

void display(NSView* view) {
  [view layout];
  if (view.isHidden) return;
  if (view.needsDisplay) {
    if (view.wantsLayer && view.layer == nil) [view keepLayer:[view makeBackingLayer]];
    if (view.wantsUpdateLayer) {
      [view updateLayer];
    } else {
      [view drawRect:{{0, 0}, view.frame.size}];
    }
    [view keepNeedsDisplay:NO];
  }
  for (NSView* subview in view.subviews) display(subview);
  if ([view isKindOfClass:[NSTableView class]]) rowViews(static_cast<NSTableView*>(view));
  if ([view isKindOfClass:[NSScrollView class]]) {
    display(static_cast<NSScrollView*>(view).documentView);
  }
}

}  // namespace

long activeConstraints(NSView* view) {
  long count = 0;
  for (NSLayoutConstraint* each in view.activeConstraints) count += each != nil ? 1 : 0;
  return count;
}

void displayWindows() {
  @autoreleasepool {
    for (NSWindow* window : windows()) {
      if (window.isShown) display(window.contentView);
    }
  }
}

void press(NSControl* control) {
  if (control.isHidden) fail("a hidden control is pressed");
  act(^{
    [control.target perform:control.action with:control];
  });
}

}  // namespace vistrel::fake
