#include "platform/macos/views/ViewTree.h"

#include "platform/macos/Conversions.h"
#include "platform/macos/views/ControlState.h"
#include "platform/macos/views/LayerState.h"
#include "platform/macos/views/LayoutConstraints.h"
#include "platform/macos/views/StatusAnnouncement.h"
#include "platform/macos/views/TableViews.h"

namespace vistrel::platform::macos {

namespace {

/// AppKit places the others: by constraints, whose outcome for the core is the core's own; a table
/// in its scroll view; a window's content view, step by step while a resize is animated.
bool isPlacedByCode(const View& view) {
  return view.superview() != nullptr && view.translatesAutoresizingMaskIntoConstraints() &&
         dynamic_cast<const ScrollView*>(view.superview()) == nullptr;
}

void applyGeometry(const View& view, NSView* realized) {
  realized.hidden = view.isHidden();
  realized.translatesAutoresizingMaskIntoConstraints =
      view.translatesAutoresizingMaskIntoConstraints();
  if (isPlacedByCode(view)) realized.frame = cgRect(view.frame());
}

}  // namespace

NSView* ViewTree::realize(View& root) {
  views_.clear();
  return realizeTree(root);
}

void ViewTree::viewDidChange(View& view, ViewChange change) {
  NSView* realized = realizedView(view);
  if (realized == nil) return;
  announceStatus(view, realized);
  switch (change) {
    case ViewChange::geometry:
      return applyGeometry(view, realized);
    case ViewChange::hierarchy:
      syncSubviews(view, realized);
      giveUpViewsOutside(view.window());
      return syncConstraints(view);  // with what is left: AppKit raises for views outside
    case ViewChange::appearance:
      return applyAppearance(view, realized);
    case ViewChange::constraints:
      return syncConstraints(view);
    case ViewChange::layerContents:
      // Before its first display the view has no layer; it is made with the contents in it.
      if (CALayer* layer = realized.layer) applyLayerContents(*view.layer(), layer);
      return;
    case ViewChange::rows:
      return
          [static_cast<VLTableView*>(realized) reloadLikeTable:static_cast<const TableView&>(view)];
  }
}

NSView* ViewTree::realizedView(const View& view) const {
  const auto found = views_.find(view.weak_from_this());
  return found == views_.end() ? nil : found->second.view;
}

NSView* ViewTree::realizeTree(View& view) {
  NSView* realized = realizedView(view);
  if (realized != nil) return realized;
  realized = makeViewPeer(view);
  views_.emplace(view.weak_from_this(), Realized{realized, nil});
  applyGeometry(view, realized);
  applyAppearance(view, realized);
  syncSubviews(view, realized);
  syncConstraints(view);
  return realized;
}

void ViewTree::syncSubviews(View& view, NSView* realized) {
  // A control's AppKit view has subviews of AppKit's own.
  if (dynamic_cast<Control*>(&view) != nullptr) return;
  if (auto* scrollView = dynamic_cast<ScrollView*>(&view)) {
    const auto& table = scrollView->documentView();
    static_cast<NSScrollView*>(realized).documentView = table ? realizeTree(*table) : nil;
    return;
  }
  NSMutableArray<NSView*>* subviews = [NSMutableArray array];
  for (const auto& subview : view.subviews()) [subviews addObject:realizeTree(*subview)];
  realized.subviews = subviews;
}

void ViewTree::syncConstraints(const View& view) {
  NSArray<NSLayoutConstraint*>* wanted =
      layoutConstraints(view, [this](const View& end) { return realizedView(end); });
  auto& active = views_.find(view.weak_from_this())->second.constraints;
  if (active != nil) [NSLayoutConstraint deactivateConstraints:active];
  active = wanted;
  [NSLayoutConstraint activateConstraints:active];
}

void ViewTree::giveUpViewsOutside(const Window* window) {
  std::erase_if(views_, [window](const auto& entry) {
    const auto view = entry.first.lock();
    return !view || view->window() != window;
  });
}

}  // namespace vistrel::platform::macos
