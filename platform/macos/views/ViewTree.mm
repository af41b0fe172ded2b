#include "platform/macos/views/ViewTree.h"

#include "platform/macos/Conversions.h"
#include "platform/macos/views/ControlState.h"
#include "platform/macos/views/LayerState.h"

namespace vistrel::platform::macos {

namespace {

void applyGeometry(const View& view, NSView* realized) {
  // The window places its content view itself, step by step while a resize is animated.
  if (view.superview() != nullptr) realized.frame = cgRect(view.frame());
  realized.hidden = view.isHidden();
}

}  // namespace

NSView* ViewTree::realize(View& root) {
  views_.clear();
  return realizeTree(root);
}

void ViewTree::viewDidChange(View& view, ViewChange change) {
  NSView* realized = realizedView(view);
  if (realized == nil) return;
  switch (change) {
    case ViewChange::geometry:
      return applyGeometry(view, realized);
    case ViewChange::hierarchy:
      syncSubviews(view, realized);
      return giveUpViewsOutside(view.window());
    case ViewChange::appearance:
      return applyAppearance(view, realized);
    case ViewChange::layerContents:
      // Before its first display the view has no layer; it is made with the contents in it.
      if (CALayer* layer = realized.layer) applyLayerContents(*view.layer(), layer);
      return;
    case ViewChange::rows:
      return;  // panels hold no tables
  }
}

NSView* ViewTree::realizedView(View& view) const {
  const auto found = views_.find(view.weak_from_this());
  return found == views_.end() ? nil : found->second;
}

NSView* ViewTree::realizeTree(View& view) {
  NSView* realized = realizedView(view);
  if (realized != nil) return realized;
  realized = makeViewPeer(view);
  views_.emplace(view.weak_from_this(), realized);
  applyGeometry(view, realized);
  applyAppearance(view, realized);
  syncSubviews(view, realized);
  return realized;
}

void ViewTree::syncSubviews(View& view, NSView* realized) {
  // A control's AppKit view has subviews of AppKit's own.
  if (dynamic_cast<Control*>(&view) != nullptr) return;
  NSMutableArray<NSView*>* subviews = [NSMutableArray array];
  for (const auto& subview : view.subviews()) [subviews addObject:realizeTree(*subview)];
  realized.subviews = subviews;
}

void ViewTree::giveUpViewsOutside(const Window* window) {
  std::erase_if(views_, [window](const auto& entry) {
    const auto view = entry.first.lock();
    return !view || view->window() != window;
  });
}

}  // namespace vistrel::platform::macos
