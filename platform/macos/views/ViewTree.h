#pragma once

#import <AppKit/AppKit.h>
#include <map>
#include <memory>

#include "platform/View.h"

namespace vistrel::platform::macos {

/// The AppKit views of one window, one for each view of the core in it. Main thread.
class ViewTree {
 public:
  /// The AppKit view of `root` and all below it. Views of a former root are given up.
  NSView* realize(View& root);
  /// Brings the AppKit view up to date. Views that are not realized yet are left alone: they are
  /// read whole once their superview's hierarchy change comes.
  void viewDidChange(View& view, ViewChange change);
  /// Nil for a view that is not realized.
  NSView* realizedView(const View& view) const;

 private:
  struct Realized {
    NSView* view;
    /// The view's own, all active.
    NSArray<NSLayoutConstraint*>* constraints;
  };

  NSView* realizeTree(View& view);
  void syncSubviews(View& view, NSView* realized);
  void syncConstraints(const View& view);
  void giveUpViewsOutside(const Window* window);

  // Keyed by ownership, not by address: a key stays distinct after its view is gone.
  std::map<std::weak_ptr<const View>, Realized, std::owner_less<>> views_;
};

}  // namespace vistrel::platform::macos
