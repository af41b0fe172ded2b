#include "platform/View.h"

#include <algorithm>

#include "platform/Menu.h"
#include "platform/Window.h"

namespace vistrel::platform {

View::~View() {
  for (const auto& subview : subviews_) subview->superview_ = nullptr;
}

void View::setFrame(const Rect& frame) {
  if (frame == frame_) return;
  const bool resized = frame.size != frame_.size;
  frame_ = frame;
  if (resized) setNeedsLayout();
  didChange(ViewChange::geometry);
}

void View::setHidden(bool hidden) {
  if (hidden == hidden_) return;
  hidden_ = hidden;
  didChange(ViewChange::geometry);
}

void View::setToolTip(std::string text) {
  toolTip_ = std::move(text);
  didChange(ViewChange::appearance);
}

bool View::isHiddenOrHasHiddenAncestor() const {
  return hidden_ || (superview_ != nullptr && superview_->isHiddenOrHasHiddenAncestor());
}

void View::setAccessibilityLabel(std::string label) {
  if (label == accessibilityLabel_) return;
  accessibilityLabel_ = std::move(label);
  didChange(ViewChange::appearance);
}

void View::addSubview(const std::shared_ptr<View>& view) {
  view->removeFromSuperview();
  view->superview_ = this;
  subviews_.push_back(view);
  didChange(ViewChange::hierarchy);
  if (Window* window = this->window()) {
    window->setNeedsLayoutPass();
    view->backingPropertiesChanged();
  }
}

void View::removeFromSuperview() {
  if (superview_ == nullptr) return;
  View* former = superview_;
  const auto keptAlive = shared_from_this();
  superview_ = nullptr;
  std::erase(former->subviews_, keptAlive);
  former->didChange(ViewChange::hierarchy);
}

Window* View::window() const {
  const View* root = this;
  while (root->superview_ != nullptr) root = root->superview_;
  return root->window_;
}

void View::setWantsLayer(bool wantsLayer) {
  if (wantsLayer == this->wantsLayer()) return;
  layer_ = wantsLayer ? makeBackingLayer() : nullptr;
  if (layer_) layer_->view_ = this;
  didChange(ViewChange::appearance);
}

void View::activateConstraints(std::vector<LayoutConstraint> constraints) {
  constraints_.insert(constraints_.end(), constraints.begin(), constraints.end());
  setNeedsLayout();
  didChange(ViewChange::constraints);
}

void View::setNeedsLayout() {
  needsLayout_ = true;
  if (Window* window = this->window()) window->setNeedsLayoutPass();
}

void View::layoutSubtreeIfNeeded() {
  if (needsLayout_) {
    needsLayout_ = false;
    if (!constraints_.empty()) solveConstraints(*this, constraints_);
    layout();
  }
  const auto subviews = subviews_;  // a layout may add or remove some
  for (const auto& subview : subviews) subview->layoutSubtreeIfNeeded();
}

View* View::hitTest(Point point) {
  if (hidden_ || !frame_.contains(point)) return nullptr;
  const Point own = convertFromSuperview(point);
  for (auto subview = subviews_.rbegin(); subview != subviews_.rend(); ++subview) {
    if (View* hit = (*subview)->hitTest(own)) return hit;
  }
  return this;
}

Point View::convertFromSuperview(Point point) const {
  const bool superviewFlipped = superview_ != nullptr && superview_->isFlipped();
  const double y = point.y - frame_.minY();
  return {point.x - frame_.minX(), superviewFlipped == isFlipped() ? y : frame_.height() - y};
}

Point View::convertFromWindow(Point pointInWindow) const {
  return convertFromSuperview(superview_ == nullptr ? pointInWindow
                                                    : superview_->convertFromWindow(pointInWindow));
}

Point View::originInSuperviewFromTop() const {
  if (superview_ == nullptr) return {0, 0};
  if (superview_->isFlipped()) return frame_.origin;
  return {frame_.minX(), superview_->frame_.height() - frame_.maxY()};
}

Rect View::frameInWindowFromTop() const {
  Point origin;
  for (const View* view = this; view != nullptr; view = view->superview_) {
    const Point step = view->originInSuperviewFromTop();
    origin = {origin.x + step.x, origin.y + step.y};
  }
  return {origin, frame_.size};
}

const std::vector<View::CursorRect>& View::freshCursorRects() {
  cursorRects_.clear();
  resetCursorRects();
  return cursorRects_;
}

void View::draw(GraphicsContext& /*context*/) {}

std::shared_ptr<Menu> View::menuForEvent(const Event& /*event*/) { return nullptr; }

void View::mouseDown(const Event& event) {
  if (superview_ != nullptr) superview_->mouseDown(event);
}

void View::mouseDragged(const Event& event) {
  if (superview_ != nullptr) superview_->mouseDragged(event);
}

void View::mouseUp(const Event& event) {
  if (superview_ != nullptr) superview_->mouseUp(event);
}

void View::didChange(ViewChange change) {
  Window* window = this->window();
  if (window != nullptr && window->peer() != nullptr) window->peer()->viewDidChange(*this, change);
}

void View::backingPropertiesChanged() {
  viewDidChangeBackingProperties();
  for (const auto& subview : subviews_) subview->backingPropertiesChanged();
}

}  // namespace vistrel::platform
