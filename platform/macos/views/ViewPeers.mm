#include "platform/macos/views/ViewPeers.h"

#include <algorithm>
#include <utility>

#include "platform/Window.h"
#include "platform/macos/Conversions.h"
#include "platform/macos/menus/ShownMenu.h"
#include "platform/macos/views/AppKitGraphicsContext.h"
#include "platform/macos/views/LayerState.h"

using namespace vistrel::platform;

namespace {

Event coreEvent(NSEvent* event, EventType type) {
  return {type, macos::corePoint(event.locationInWindow), event.modifierFlags,
          static_cast<int>(event.clickCount)};
}

/// The core finds the view that was hit by itself; AppKit and the core agree on where views are.
void sendMouseEvent(const std::weak_ptr<View>& hit, NSEvent* event, EventType type) {
  const auto view = hit.lock();
  if (!view) return;
  if (Window* window = view->window()) window->sendEvent(coreEvent(event, type));
}

/// Nil for none.
NSMenu* contextMenu(const std::weak_ptr<View>& hit, NSEvent* event) {
  const auto view = hit.lock();
  if (!view || view->window() == nullptr) return nil;
  const auto menu = view->window()->menuForEvent(coreEvent(event, EventType::rightMouseDown));
  return menu ? macos::makeMenu(menu) : nil;
}

/// `view` may be null.
bool offers(const View* view, AccessibilityAction action) {
  if (view == nullptr) return false;
  const auto actions = view->accessibilityActions();
  return std::find(actions.begin(), actions.end(), action) != actions.end();
}

bool perform(const std::weak_ptr<View>& asked, AccessibilityAction action) {
  const auto view = asked.lock();
  if (!offers(view.get(), action)) return false;
  view->accessibilityPerform(action);
  return true;
}

NSCursor* nsCursor(Cursor cursor) {
  return cursor == Cursor::crosshair ? NSCursor.crosshairCursor : NSCursor.arrowCursor;
}

}  // namespace

@implementation VLView {
  std::weak_ptr<View> _view;
}

- (instancetype)initWithView:(std::weak_ptr<View>)view {
  self = [super initWithFrame:NSRect()];
  if (self != nil) _view = std::move(view);
  return self;
}

- (BOOL)isFlipped {
  const auto view = _view.lock();
  return view && view->isFlipped();
}

- (void)layout {
  [super layout];
  if (const auto view = _view.lock()) view->layoutSubtreeIfNeeded();
}

- (CALayer*)makeBackingLayer {
  const auto view = _view.lock();
  if (!view || !view->wantsLayer()) return [super makeBackingLayer];
  CALayer* layer = [CALayer layer];
  macos::applyLayerState(*view->layer(), layer);
  return layer;
}

/// A view with a layer of its own never draws: AppKit would put the drawing in place of the layer's
/// contents.
- (BOOL)wantsUpdateLayer {
  const auto view = _view.lock();
  return view && view->wantsLayer();
}

- (void)updateLayer {
  const auto view = _view.lock();
  CALayer* layer = self.layer;
  if (view && view->wantsLayer() && layer != nil) macos::applyLayerState(*view->layer(), layer);
}

- (void)drawRect:(NSRect)__unused dirtyRect {
  const auto view = _view.lock();
  if (!view) return;
  macos::AppKitGraphicsContext context;
  view->draw(context);
}

- (void)resetCursorRects {
  const auto view = _view.lock();
  if (!view) return;
  for (const auto& area : view->freshCursorRects()) {
    [self addCursorRect:macos::cgRect(area.rect) cursor:nsCursor(area.cursor)];
  }
}

- (BOOL)accessibilityPerformIncrement {
  return perform(_view, AccessibilityAction::increment);
}

- (BOOL)accessibilityPerformDecrement {
  return perform(_view, AccessibilityAction::decrement);
}

- (BOOL)isAccessibilitySelectorAllowed:(SEL)selector {
  if (selector == @selector(accessibilityPerformIncrement)) {
    return offers(_view.lock().get(), AccessibilityAction::increment);
  }
  if (selector == @selector(accessibilityPerformDecrement)) {
    return offers(_view.lock().get(), AccessibilityAction::decrement);
  }
  return [super isAccessibilitySelectorAllowed:selector];
}

/// A panel is dragged without a click before that makes its program active.
- (BOOL)acceptsFirstMouse:(nullable NSEvent*)__unused event {
  return YES;
}

- (void)mouseDown:(NSEvent*)event {
  sendMouseEvent(_view, event, EventType::leftMouseDown);
}

- (void)mouseDragged:(NSEvent*)event {
  sendMouseEvent(_view, event, EventType::leftMouseDragged);
}

- (void)mouseUp:(NSEvent*)event {
  sendMouseEvent(_view, event, EventType::leftMouseUp);
}

- (nullable NSMenu*)menuForEvent:(NSEvent*)event {
  return contextMenu(_view, event);
}

@end

@implementation VLLabel

- (BOOL)acceptsFirstMouse:(nullable NSEvent*)event {
  return [self.superview acceptsFirstMouse:event];
}

- (void)mouseDown:(NSEvent*)event {
  [self.nextResponder mouseDown:event];
}

- (void)mouseDragged:(NSEvent*)event {
  [self.nextResponder mouseDragged:event];
}

- (void)mouseUp:(NSEvent*)event {
  [self.nextResponder mouseUp:event];
}

/// Without a menu AppKit passes a right click on to the superview, but not one with Control.
- (nullable NSMenu*)menuForEvent:(NSEvent*)event {
  return [self.superview menuForEvent:event];
}

@end

@implementation VLImageView

- (BOOL)acceptsFirstMouse:(nullable NSEvent*)event {
  return [self.superview acceptsFirstMouse:event];
}

- (void)mouseDown:(NSEvent*)event {
  [self.nextResponder mouseDown:event];
}

- (void)mouseDragged:(NSEvent*)event {
  [self.nextResponder mouseDragged:event];
}

- (void)mouseUp:(NSEvent*)event {
  [self.nextResponder mouseUp:event];
}

- (nullable NSMenu*)menuForEvent:(NSEvent*)event {
  return [self.superview menuForEvent:event];
}

@end

@implementation VLButton {
  std::weak_ptr<Button> _button;
}

- (void)clickButton:(std::weak_ptr<Button>)button {
  _button = std::move(button);
  self.target = self;
  self.action = @selector(buttonClicked:);
}

- (void)buttonClicked:(nullable id)__unused sender {
  if (const auto button = _button.lock()) button->performClick();
}

- (nullable NSMenu*)menuForEvent:(NSEvent*)event {
  return [self.superview menuForEvent:event];
}

@end
