#include "platform/LayoutConstraint.h"

#include <array>
#include <optional>

#include "platform/View.h"

namespace vistrel::platform {

namespace {

enum class Anchor { minimum, maximum, center };

/// One axis of one view, in the container's space from its leading or top edge.
class Span {
 public:
  bool knows(Anchor anchor) const { return value(anchor).has_value(); }
  bool isSettled() const { return minimum_ && maximum_; }
  bool isAnchored() const { return minimum_ || maximum_ || center_; }
  double at(Anchor anchor) const { return *value(anchor); }
  double minimum() const { return *minimum_; }
  double length() const { return *maximum_ - *minimum_; }

  void set(Anchor anchor, double position) {
    if (anchor == Anchor::minimum) minimum_ = position;
    if (anchor == Anchor::maximum) maximum_ = position;
    if (anchor == Anchor::center) center_ = position;
    deriveFromTwo();
  }

  void settleWithLength(double length) {
    if (maximum_) {
      set(Anchor::minimum, *maximum_ - length);
    } else if (center_) {
      set(Anchor::minimum, *center_ - length / 2);
    } else {
      if (!minimum_) minimum_ = 0;
      set(Anchor::maximum, *minimum_ + length);
    }
  }

 private:
  const std::optional<double>& value(Anchor anchor) const {
    if (anchor == Anchor::minimum) return minimum_;
    return anchor == Anchor::maximum ? maximum_ : center_;
  }

  void deriveFromTwo() {
    if (minimum_ && center_ && !maximum_) maximum_ = 2 * *center_ - *minimum_;
    if (maximum_ && center_ && !minimum_) minimum_ = 2 * *center_ - *maximum_;
    if (minimum_ && maximum_) center_ = (*minimum_ + *maximum_) / 2;
  }

  std::optional<double> minimum_;
  std::optional<double> maximum_;
  std::optional<double> center_;
};

struct Place {
  bool vertical = false;
  Anchor anchor = Anchor::minimum;
};

Place placeOf(LayoutAttribute attribute) {
  switch (attribute) {
    case LayoutAttribute::leading:
      return {false, Anchor::minimum};
    case LayoutAttribute::trailing:
      return {false, Anchor::maximum};
    case LayoutAttribute::centerX:
      return {false, Anchor::center};
    case LayoutAttribute::top:
      return {true, Anchor::minimum};
    case LayoutAttribute::bottom:
      return {true, Anchor::maximum};
    case LayoutAttribute::centerY:
      return {true, Anchor::center};
  }
  return {};
}

/// Works outwards from the container's known edges: a constraint with one known end gives the
/// other, two known anchors of a span give the third, and where nothing more follows, a span takes
/// its view's intrinsic length.
class Solver {
 public:
  Solver(View& container, const std::vector<LayoutConstraint>& constraints)
      : container_(container) {
    settleContainer();
    for (const LayoutConstraint& constraint : constraints) add(constraint);
  }

  void solve() {
    do {
      propagate();
    } while (settleOneByIntrinsicLength());
  }

  void applyFrames() {
    for (const auto& [view, spans] : views_) {
      if (view == &container_) continue;
      const auto& [horizontal, vertical] = spans;
      const double y = container_.isFlipped()
                           ? vertical.minimum()
                           : container_.bounds().height() - vertical.minimum() - vertical.length();
      view->setFrame(rect(horizontal.minimum(), y, horizontal.length(), vertical.length()));
    }
  }

 private:
  struct Entry {
    View* view;
    std::array<Span, 2> spans;  // horizontal, vertical
  };

  struct Link {
    View* first;
    Anchor firstAnchor;
    View* second;
    Anchor secondAnchor;
    bool vertical;
    double constant;
    bool used = false;
  };

  void settleContainer() {
    auto& [horizontal, vertical] = spansOf(&container_);
    horizontal.set(Anchor::minimum, 0);
    horizontal.set(Anchor::maximum, container_.bounds().width());
    vertical.set(Anchor::minimum, 0);
    vertical.set(Anchor::maximum, container_.bounds().height());
  }

  void add(const LayoutConstraint& constraint) {
    const auto first = constraint.first.lock();
    const auto second = constraint.second.lock();
    if (!first || !second) return;
    const Place a = placeOf(constraint.firstAttribute);
    const Place b = placeOf(constraint.secondAttribute);
    spansOf(first.get());
    spansOf(second.get());
    links_.push_back(
        {first.get(), a.anchor, second.get(), b.anchor, a.vertical, constraint.constant});
  }

  /// Of a view that is entered when it is first asked for.
  std::array<Span, 2>& spansOf(View* view) {
    for (Entry& entry : views_) {
      if (entry.view == view) return entry.spans;
    }
    return views_.emplace_back(Entry{view, {}}).spans;
  }

  Span& span(View* view, bool vertical) { return spansOf(view)[vertical ? 1 : 0]; }

  void propagate() {
    for (bool changed = true; changed;) {
      changed = false;
      for (Link& link : links_) changed |= follow(link);
    }
  }

  bool follow(Link& link) {
    if (link.used) return false;
    Span& first = span(link.first, link.vertical);
    Span& second = span(link.second, link.vertical);
    const bool firstKnown = first.knows(link.firstAnchor);
    const bool secondKnown = second.knows(link.secondAnchor);
    if (!firstKnown && !secondKnown) return false;
    link.used = true;
    if (!firstKnown) first.set(link.firstAnchor, second.at(link.secondAnchor) + link.constant);
    if (!secondKnown) second.set(link.secondAnchor, first.at(link.firstAnchor) - link.constant);
    return true;
  }

  /// Prefers a span that no constraint waits to tell more about, and one that has a place already;
  /// among equals the view that the constraints name first.
  bool settleOneByIntrinsicLength() {
    Candidate best;
    for (const auto& [view, spans] : views_) {
      for (const bool vertical : {false, true}) {
        const Span& open = spans[vertical ? 1 : 0];
        if (open.isSettled()) continue;
        const int rank = (open.isAnchored() ? 2 : 0) + (isWaiting(view, vertical) ? 0 : 1);
        if (rank > best.rank) best = {view, vertical, rank};
      }
    }
    if (best.view == nullptr) return false;
    const Size intrinsic = best.view->intrinsicContentSize();
    span(best.view, best.vertical)
        .settleWithLength(best.vertical ? intrinsic.height : intrinsic.width);
    return true;
  }

  bool isWaiting(const View* view, bool vertical) const {
    for (const Link& link : links_) {
      if (!link.used && link.vertical == vertical && link.first == view) return true;
    }
    return false;
  }

  struct Candidate {
    View* view = nullptr;
    bool vertical = false;
    int rank = -1;
  };

  View& container_;
  std::vector<Entry> views_;  // in the order in which the constraints name them
  std::vector<Link> links_;
};

}  // namespace

void solveConstraints(View& container, const std::vector<LayoutConstraint>& constraints) {
  Solver solver(container, constraints);
  solver.solve();
  solver.applyFrames();
}

}  // namespace vistrel::platform
