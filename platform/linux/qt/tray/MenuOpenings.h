#pragma once

#include <chrono>
#include <optional>
#include <set>

namespace vistrel::platform::linux_desktop {

/// What a host that shows a menu of ours says when a person opens it. Each says some of these, in
/// an order of its own; a menu is to be made anew once for each opening.
enum class MenuSign { aboutToShow, opened, layoutRead };

/// Tells which of the signs is the first of an opening.
class MenuOpenings {
 public:
  using Time = std::chrono::steady_clock::time_point;

  /// Whether an opening begins with `sign`, given at `now`. What follows belongs to it for a while,
  /// until the same is said again; the layout may be read any number of times.
  bool begins(MenuSign sign, Time now);
  void menuWasClosed() { begun_.reset(); }

 private:
  std::optional<Time> begun_;
  std::set<MenuSign> given_;  // without readings
};

}  // namespace vistrel::platform::linux_desktop
