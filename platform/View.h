#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/Accessibility.h"
#include "platform/Cursor.h"
#include "platform/Event.h"
#include "platform/Geometry.h"
#include "platform/GraphicsContext.h"
#include "platform/Layer.h"
#include "platform/LayoutConstraint.h"

namespace vistrel::platform {

class Menu;
class Window;

/// What about a view changed, for the peer of the window that shows it.
enum class ViewChange {
  geometry,       // frame or hidden state
  hierarchy,      // subviews came or went
  appearance,     // text, colour, title, tooltip, layer colours, what a screen reader says
  layerContents,  // the layer's picture
  constraints,    // between the view and its subviews
  rows,           // a table's rows: see `TableView::reloadedRows`
};

/// A rectangle of a window: a tree of views that draw, lay out and take the mouse. A plain object
/// that holds its own state; the peer of its window shows it. Main thread.
///
/// A view's frame is in its superview's coordinates: origin at the bottom-left unless the superview
/// `isFlipped`, then at the top-left.
class View : public std::enable_shared_from_this<View> {
 public:
  View() = default;
  explicit View(const Rect& frame) : frame_(frame) {}
  View(const View&) = delete;
  View& operator=(const View&) = delete;
  virtual ~View();

  const Rect& frame() const { return frame_; }
  /// Marks the view as needing layout when its size changes.
  void setFrame(const Rect& frame);
  Rect bounds() const { return Rect{{0, 0}, frame_.size}; }

  bool isHidden() const { return hidden_; }
  void setHidden(bool hidden);
  /// Whether nobody can see the view, because of it or because of a view that holds it.
  bool isHiddenOrHasHiddenAncestor() const;
  const std::string& toolTip() const { return toolTip_; }
  void setToolTip(std::string text);

  const std::vector<std::shared_ptr<View>>& subviews() const { return subviews_; }
  /// Adds on top of the subviews that are there; takes it from its former superview first.
  void addSubview(const std::shared_ptr<View>& view);
  void removeFromSuperview();
  View* superview() const { return superview_; }
  /// Null while the view is in no window.
  Window* window() const;

  bool wantsLayer() const { return layer_ != nullptr; }
  /// Makes the backing layer when turned on for the first time.
  void setWantsLayer(bool wantsLayer);
  /// Null unless layer-backed.
  Layer* layer() const { return layer_.get(); }

  /// Whether frames of subviews are set by code (true) or by constraints (false).
  bool translatesAutoresizingMaskIntoConstraints() const { return framesSetByCode_; }
  void setTranslatesAutoresizingMaskIntoConstraints(bool framesSetByCode) {
    framesSetByCode_ = framesSetByCode;
  }
  /// Constraints between this view and its subviews; solved before each `layout` of this view.
  void activateConstraints(std::vector<LayoutConstraint> constraints);
  const std::vector<LayoutConstraint>& constraints() const { return constraints_; }

  bool needsLayout() const { return needsLayout_; }
  /// Asks for a layout pass of this view at the next turn of the main queue.
  void setNeedsLayout();
  /// Solves constraints and calls `layout` on every view that needs it, from here down, parents
  /// first.
  void layoutSubtreeIfNeeded();

  /// The frontmost visible view at `point`, given in this view's superview's coordinates; null when
  /// there is none.
  View* hitTest(Point point);
  /// From the content view's unflipped space (`Event::locationInWindow`) to this view's own.
  Point convertFromWindow(Point pointInWindow) const;
  /// This view's top-left corner seen from its superview's, y downwards.
  Point originInSuperviewFromTop() const;
  /// This view's frame in its window, origin top-left of the content view, y downwards.
  Rect frameInWindowFromTop() const;

  struct CursorRect {
    Rect rect;
    Cursor cursor = Cursor::arrow;
  };
  /// To be called from `resetCursorRects` only.
  void addCursorRect(const Rect& rect, Cursor cursor) { cursorRects_.push_back({rect, cursor}); }
  /// Cursor rectangles in this view's coordinates, asked for anew.
  const std::vector<CursorRect>& freshCursorRects();

  AccessibilityRole accessibilityRole() const { return accessibilityRole_; }
  void setAccessibilityRole(AccessibilityRole role) { accessibilityRole_ = role; }
  /// What a screen reader calls the view; a content view's label names its window.
  virtual std::string accessibilityLabel() const { return accessibilityLabel_; }
  void setAccessibilityLabel(std::string label);
  virtual std::vector<AccessibilityAction> accessibilityActions() const { return {}; }
  /// Does one of `accessibilityActions()`.
  virtual void accessibilityPerform(AccessibilityAction /*action*/) {}

  /// The size that the view would like to have where constraints leave it open; zero for none.
  virtual Size intrinsicContentSize() const { return {}; }
  virtual bool isFlipped() const { return false; }
  virtual void layout() {}
  /// Of views other than controls, those with a layer do not draw: the drawing might take the place
  /// of the layer's contents.
  virtual void draw(GraphicsContext& context);
  virtual std::unique_ptr<Layer> makeBackingLayer() { return std::make_unique<Layer>(); }
  virtual void viewDidChangeBackingProperties() {}
  virtual void resetCursorRects() {}
  /// The context menu for a click; null for none.
  virtual std::shared_ptr<Menu> menuForEvent(const Event& event);
  /// Mouse events bubble to the superview unless overridden.
  virtual void mouseDown(const Event& event);
  virtual void mouseDragged(const Event& event);
  virtual void mouseUp(const Event& event);

  /// Passed on to the peer of the window, if there is one.
  void didChange(ViewChange change);

 private:
  friend class Window;

  void backingPropertiesChanged();
  /// From the superview's coordinates (the window's, for a content view) to this view's own.
  Point convertFromSuperview(Point point) const;

  Rect frame_;
  bool hidden_ = false;
  bool framesSetByCode_ = true;
  bool needsLayout_ = true;
  std::string toolTip_;
  AccessibilityRole accessibilityRole_ = AccessibilityRole::none;
  std::string accessibilityLabel_;
  std::vector<std::shared_ptr<View>> subviews_;
  View* superview_ = nullptr;
  Window* window_ = nullptr;  // set in a content view alone
  std::unique_ptr<Layer> layer_;
  std::vector<LayoutConstraint> constraints_;
  std::vector<CursorRect> cursorRects_;
};

}  // namespace vistrel::platform
