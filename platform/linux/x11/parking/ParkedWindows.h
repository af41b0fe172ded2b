#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include "platform/Geometry.h"
#include "platform/linux/SerialQueue.h"
#include "platform/linux/session/ParkedSources.h"
#include "platform/linux/session/SharedScreenLayout.h"
#include "platform/linux/x11/manager/CommandDeadline.h"
#include "platform/linux/x11/parking/ParkingWorker.h"
#include "platform/linux/x11/server/Connection.h"

namespace vistrel::platform::linux_desktop {

/// Moves other programs' windows by way of the window manager, as a person's tool does, and knows
/// which ones are parked: those that are not where they were found.
///
/// A window that is parked is free of what ties it to its place: full-screen and maximised windows
/// stay where they are or take another size with other managers, so those states are taken off and
/// the size is kept; and it comes to all desktops, since managers unmap what is on a desktop that
/// is not shown, and nobody draws what is unmapped. Windows that are minimised or rolled up stay
/// so. A window that its manager keeps in sight all the same lies below all others there, as far as
/// the manager lets it. One that goes back to where it was found gets back everything it had; so
/// does each whose owner, this object, ends in whatever way before that (ParkingRecord.h, Guard.h).
///
/// The manager is waited for until the command's deadline; what it has not answered by then goes on
/// on a queue of its own. Positions are of what a person sees as the window, in points of global
/// display space. Main thread.
class ParkedWindows final : public ParkedSources {
 public:
  ParkedWindows(std::shared_ptr<Connection> connection,
                std::shared_ptr<const SharedScreenLayout> layout,
                std::shared_ptr<CommandDeadline> command);
  ParkedWindows(const ParkedWindows&) = delete;
  ParkedWindows& operator=(const ParkedWindows&) = delete;
  /// As `leaveHomeFirst`.
  ~ParkedWindows() override;

  /// Once the manager has done what it was asked before, if it has by the deadline; begins a
  /// command. None for a window that has gone.
  std::optional<Point> positionOf(xcb_window_t window);
  /// Returns once the manager has been told, and has done it or could have by the deadline; it may
  /// have its own mind. Ends a command. False for a window that has gone.
  bool move(xcb_window_t window, Point position);

  /// None for a window that is neither parked nor on its way.
  std::optional<ParkingOutcome> outcomeFor(xcb_window_t window) const {
    return outcomes_->of(window);
  }

  /// As ParkingWorker::follow; nobody waits for it.
  void follow(const PixelRect& from, const PixelRect& to);

  void sendAllHome() override;
  void parkAgain() override;
  void leaveHomeFirst() override;

 private:
  /// Has the worker do it on its queue; whether it has by the deadline.
  bool workUntil(double deadline, std::function<void(ParkingWorker&)> work);

  const std::shared_ptr<Connection> connection_;
  const std::shared_ptr<const SharedScreenLayout> layout_;
  const std::shared_ptr<CommandDeadline> command_;
  const std::shared_ptr<ParkingOutcomes> outcomes_;
  const std::shared_ptr<ParkingWorker> worker_;
  std::shared_ptr<SerialQueue> queue_;  // from the first use on
  /// The last position that was told, and whose.
  std::optional<std::pair<xcb_window_t, Point>> told_;
};

}  // namespace vistrel::platform::linux_desktop
