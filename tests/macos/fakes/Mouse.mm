#include "tests/macos/fakes/AppKitFakes.h"
#include "tests/macos/fakes/Recorder.h"
#include "tests/macos/fakes/State.h"
#include "tests/macos/fakes/World.h"

namespace vistrel::fake {

namespace {

/// Where the button went down that is held.
__weak NSView* pressed = nil;

bool contains(const CGRect& rect, CGPoint point) {
  return point.x >= rect.origin.x && point.x < rect.origin.x + rect.size.width &&
         point.y >= rect.origin.y && point.y < rect.origin.y + rect.size.height;
}

/// `point` is in the coordinates of the superview, whose y grows downwards where it is flipped:
/// NSView, hitTest:, isFlipped.
NSView* hit(NSView* view, CGPoint point, bool isSuperviewFlipped) {
  const CGRect frame = view.frame;
  if (view.isHidden || !contains(frame, point)) return nil;
  CGPoint own = {point.x - frame.origin.x, point.y - frame.origin.y};
  if (view.isFlipped != isSuperviewFlipped) own.y = frame.size.height - own.y;
  NSView* found = view;
  for (NSView* subview in view.subviews) {
    if (NSView* const inner = hit(subview, own, view.isFlipped))
      found = inner;  // the last is on top
  }
  return found;
}

NSEvent* makeEvent(NSPoint location, NSEventModifierFlags modifiers, NSInteger clicks) {
  NSEvent* const event = [[NSEvent alloc] init];
  event.locationInWindow = location;
  event.modifierFlags = modifiers;
  event.clickCount = clicks;
  return event;
}

void sendToPressed(SEL selector, NSPoint location, NSEventModifierFlags modifiers,
                   NSInteger clicks) {
  act(^{
    [pressed perform:selector with:makeEvent(location, modifiers, clicks)];
  });
}

}  // namespace

NSView* viewAt(NSWindow* window, NSPoint location) {
  return hit(window.contentView, location, false);
}

void mouseDown(NSWindow* window, NSPoint location, NSEventModifierFlags modifiers,
               NSInteger clicks) {
  pressed = viewAt(window, location);
  // A click into a window that is not key reaches views that want it alone: NSView,
  // acceptsFirstMouse:.
  if (!window.isKey && ![pressed acceptsFirstMouse:makeEvent(location, modifiers, clicks)]) {
    pressed = nil;
  }
  sendToPressed(@selector(mouseDown:), location, modifiers, clicks);
}

void mouseDragged(NSPoint location, NSEventModifierFlags modifiers) {
  sendToPressed(@selector(mouseDragged:), location, modifiers, 0);
}

void mouseUp(NSPoint location, NSEventModifierFlags modifiers, NSInteger clicks) {
  sendToPressed(@selector(mouseUp:), location, modifiers, clicks);
  pressed = nil;
}

/// A view without a menu leaves the click to the next responder: NSView, rightMouseDown:.
NSMenu* contextMenu(NSWindow* window, NSPoint location) {
  NSMenu* menu = nil;
  for (NSView* view = viewAt(window, location); view != nil && menu == nil; view = view.superview) {
    menu = [view menuForEvent:makeEvent(location, 0, 1)];
  }
  if (menu != nil) open(menu);
  return menu;
}

}  // namespace vistrel::fake
