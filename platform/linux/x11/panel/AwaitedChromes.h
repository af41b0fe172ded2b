#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <optional>

#include "platform/linux/PanelSurface.h"
#include "platform/linux/x11/server/PixelGeometry.h"

namespace vistrel::platform::linux_desktop {

struct AwaitedChrome {
  std::shared_ptr<const PanelChrome> chrome;
  /// To be called when the window may become as small as this.
  std::function<void()> shown;
};

/// What a person sees of a window where it is larger than what is drawn there.
enum class Beside { nothing, managersFrame };

/// Chromes that were painted for sizes which a window may not have yet: while it grows, the manager
/// gives it one size after the other, a little later than they were asked for.
class AwaitedChromes {
 public:
  /// Keeps few, among them the oldest: else a window that lags behind would never get one.
  void add(AwaitedChrome chrome);
  /// The one that was taken out last, in its place again.
  void putBack(AwaitedChrome taken) { chromes_.push_front(std::move(taken)); }
  /// Null when there is none.
  const AwaitedChrome* newest() const { return chromes_.empty() ? nullptr : &chromes_.back(); }
  /// Takes out the newest that a window of that size has room for, and drops those before it. None
  /// when there is no such chrome. Where a person would see the manager's frame beside it, it must
  /// fill the window; the newest that has room but does not fill it has the window made smaller,
  /// once one that does is shown. That one does not say that it is: where the window was asked to
  /// be smaller before, it would grow again and show the manager's frame.
  std::optional<AwaitedChrome> takeFor(PixelSize window, Beside beside);

 private:
  std::deque<AwaitedChrome> chromes_;  // oldest first
};

}  // namespace vistrel::platform::linux_desktop
