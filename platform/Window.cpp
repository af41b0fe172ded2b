#include "platform/Window.h"

#include <cmath>
#include <utility>

#include "platform/Controls.h"

namespace vistrel::platform {

namespace {

/// Asks the view that was hit and then those above it, until `answer` is true.
template <class Answer>
void askViewsAt(View* hit, const Answer& answer) {
  for (View* view = hit; view != nullptr; view = view->superview()) {
    if (answer(*view)) return;
  }
}

Button* buttonWithKey(View& view, const std::string& key) {
  if (view.isHidden()) return nullptr;
  auto* button = dynamic_cast<Button*>(&view);
  if (button != nullptr && button->keyEquivalent() == key) return button;
  for (const auto& subview : view.subviews()) {
    if (Button* found = buttonWithKey(*subview, key)) return found;
  }
  return nullptr;
}

/// Whether two frames fall on the same pixels, however each edge was rounded.
bool isSameOnScreen(const Rect& a, const Rect& b, double pixelsPerPoint) {
  const double pixel = 1 / pixelsPerPoint;
  const auto same = [pixel](double x, double y) { return std::abs(x - y) < pixel; };
  return same(a.minX(), b.minX()) && same(a.minY(), b.minY()) && same(a.maxX(), b.maxX()) &&
         same(a.maxY(), b.maxY());
}

}  // namespace

Window::Window(const Rect& contentRect, std::uint64_t styleMask, BackingStore backing, bool defer)
    : Window(Kind::window, contentRect, styleMask, backing, defer) {}

Window::Window(Kind kind, const Rect& contentRect, std::uint64_t styleMask, BackingStore backing,
               bool /*defer*/)
    : frame_(contentRect), styleMask_(styleMask), backing_(backing) {
  peer_ = backend().windows().makePeer(*this, kind == Kind::panel);
  frame_ = peer_->frameRectForContentRect(contentRect);
  setContentView(std::make_shared<View>());
}

Window::~Window() { contentView_->window_ = nullptr; }

void Window::setFrame(const Rect& frame, Redisplay redisplay, FrameChange change) {
  adoptFrame(frame);
  peer_->frameDidChange(redisplay, change);
  if (redisplay == Redisplay::atOnce) layoutIfNeeded();
}

void Window::setFrameOrigin(Point origin) {
  frame_.origin = origin;
  peer_->frameDidChange(Redisplay::later, FrameChange::immediate);
}

void Window::center() {
  if (const auto origin = peer_->center()) return setFrameOrigin(*origin);
  auto area = screen();
  if (!area) area = mainScreen();
  if (!area) return;
  const Rect& visible = area->visibleFrame;
  setFrameOrigin({visible.midX() - frame_.width() / 2, visible.midY() - frame_.height() / 2});
}

void Window::setTitle(std::string title) {
  title_ = std::move(title);
  peer_->propertiesDidChange();
}

void Window::setLevel(int level) {
  level_ = level;
  peer_->propertiesDidChange();
}

void Window::setCollectionBehavior(std::uint64_t behavior) {
  collectionBehavior_ = behavior;
  peer_->propertiesDidChange();
}

void Window::setHidesOnDeactivate(bool hides) {
  hidesOnDeactivate_ = hides;
  peer_->propertiesDidChange();
}

void Window::setOpaque(bool opaque) {
  opaque_ = opaque;
  peer_->propertiesDidChange();
}

void Window::setBackgroundColor(Color color) {
  backgroundColor_ = color;
  peer_->propertiesDidChange();
}

void Window::setHasShadow(bool hasShadow) {
  hasShadow_ = hasShadow;
  peer_->propertiesDidChange();
}

void Window::setAppearance(Appearance appearance) {
  appearance_ = appearance;
  peer_->propertiesDidChange();
}

void Window::setContentMinSize(Size size) {
  contentMinSize_ = size;
  peer_->propertiesDidChange();
}

void Window::setFrameAutosaveName(std::string name) {
  frameAutosaveName_ = std::move(name);
  if (const auto saved = peer_->adoptAutosavedFrame(frameAutosaveName_)) {
    setFrame(*saved, Redisplay::atOnce);
  }
}

void Window::setContentView(std::shared_ptr<View> view) {
  if (contentView_) contentView_->window_ = nullptr;
  view->removeFromSuperview();
  contentView_ = std::move(view);
  contentView_->window_ = this;
  adoptFrame(frame_);
  contentView_->backingPropertiesChanged();
  peer_->contentViewDidChange();
  setNeedsLayoutPass();
}

void Window::orderFrontRegardless() {
  visible_ = true;
  layoutIfNeeded();
  peer_->orderFrontRegardless();
}

void Window::makeKeyAndOrderFront() {
  visible_ = true;
  layoutIfNeeded();
  peer_->makeKeyAndOrderFront();
}

void Window::orderOut() {
  visible_ = false;
  peer_->orderOut();
}

void Window::close() {
  visible_ = false;
  peer_->close();
}

void Window::performMiniaturize() {
  if ((styleMask_ & styleMiniaturizable) != 0) peer_->miniaturize();
}

void Window::performClose() {
  if ((styleMask_ & styleClosable) != 0) close();
}

bool Window::tryToPerform(const std::string& selector) {
  if (selector == "performMiniaturize:") {
    performMiniaturize();
  } else if (selector == "performClose:") {
    performClose();
  } else {
    return false;
  }
  return true;
}

std::optional<Screen> Window::screen() const { return screenShowing(frame_, screens()); }

double Window::backingScaleFactor() const {
  const auto shown = screen();
  const auto used = shown ? shown : mainScreen();
  return used ? used->backingScaleFactor : backingScaleWithoutScreen;
}

void Window::layoutIfNeeded() { contentView_->layoutSubtreeIfNeeded(); }

void Window::setNeedsLayoutPass() {
  if (layoutPassScheduled_ || weak_from_this().expired()) return;
  layoutPassScheduled_ = true;
  mainQueue().async([weak = weak_from_this()] {
    const auto self = weak.lock();
    if (!self) return;
    self->layoutPassScheduled_ = false;
    self->layoutIfNeeded();
  });
}

bool Window::performKeyEquivalent(const std::string& key) {
  Button* button = buttonWithKey(*contentView_, key);
  if (button == nullptr) return false;
  button->performClick();
  return true;
}

Cursor Window::cursorAt(Point locationInWindow) {
  Cursor cursor = Cursor::arrow;
  askViewsAt(contentView_->hitTest(locationInWindow), [&](View& view) {
    const Point own = view.convertFromWindow(locationInWindow);
    for (const auto& area : view.freshCursorRects()) {
      if (!area.rect.contains(own)) continue;
      cursor = area.cursor;
      return true;
    }
    return false;
  });
  return cursor;
}

std::string Window::toolTipAt(Point locationInWindow) {
  std::string text;
  askViewsAt(contentView_->hitTest(locationInWindow), [&](View& view) {
    text = view.toolTip();
    return !text.empty();
  });
  return text;
}

std::shared_ptr<Menu> Window::menuForEvent(const Event& event) {
  std::shared_ptr<Menu> menu;
  askViewsAt(contentView_->hitTest(event.locationInWindow), [&](View& view) {
    menu = view.menuForEvent(event);
    return menu != nullptr;
  });
  return menu;
}

void Window::sendEvent(const Event& event) {
  const auto keptAlive = shared_from_this();  // a click may close the window
  if (event.type == EventType::leftMouseDown) {
    View* hit = contentView_->hitTest(event.locationInWindow);
    pressedView_ = hit == nullptr ? std::weak_ptr<View>() : hit->weak_from_this();
  }
  const auto view = pressedView_.lock();
  if (!view) return;
  switch (event.type) {
    case EventType::leftMouseDown:
      return view->mouseDown(event);
    case EventType::leftMouseDragged:
      return view->mouseDragged(event);
    case EventType::leftMouseUp:
      return view->mouseUp(event);
    case EventType::rightMouseDown:
      return;
  }
}

void Window::peerDidSetFrame(const Rect& frame) {
  if (isSameOnScreen(frame, frame_, backingScaleFactor())) return;
  adoptFrame(frame);
  layoutIfNeeded();
}

void Window::peerDidChangeBackingProperties() { contentView_->backingPropertiesChanged(); }

void Window::peerDidClose() { visible_ = false; }

void Window::adoptFrame(const Rect& frame) {
  frame_ = frame;
  const Rect content = peer_->contentRectForFrameRect(frame);
  contentView_->setFrame(Rect{{0, 0}, content.size});
}

Panel::Panel(const Rect& contentRect, std::uint64_t styleMask, BackingStore backing, bool defer)
    : Window(Kind::panel, contentRect, styleMask, backing, defer) {}

void Panel::setFloatingPanel(bool floating) {
  floating_ = floating;
  peer()->propertiesDidChange();
}

void Panel::setBecomesKeyOnlyIfNeeded(bool onlyIfNeeded) {
  becomesKeyOnlyIfNeeded_ = onlyIfNeeded;
  peer()->propertiesDidChange();
}

}  // namespace vistrel::platform
