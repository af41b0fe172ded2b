#pragma once

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>

#include "platform/Geometry.h"
#include "platform/linux/session/SharedScreenLayout.h"
#include "platform/linux/x11/manager/VisibleFrame.h"
#include "platform/linux/x11/parking/ParkingOwner.h"
#include "platform/linux/x11/parking/ParkingRecord.h"
#include "platform/linux/x11/server/Connection.h"

namespace vistrel::platform::linux_desktop {

/// What has become of a window that was to be out of sight.
enum class ParkingOutcome {
  outOfSight,
  /// In sight where no other window covers it.
  belowOthers,
  /// The manager has done neither.
  inSight,
  /// The manager has not answered yet, on the window's way out of sight or home.
  underWay,
};

/// Those of the windows that are parked or on their way. Any thread.
class ParkingOutcomes {
 public:
  std::optional<ParkingOutcome> of(xcb_window_t window) const;
  void set(xcb_window_t window, ParkingOutcome outcome);
  void erase(xcb_window_t window);
  void clear();

 private:
  mutable std::mutex mutex_;
  std::map<xcb_window_t, ParkingOutcome> outcomes_;  // guarded by mutex_
};

/// Moves other programs' windows, and waits for the manager as long as that takes: on a queue of
/// its own, over a connection of its own. ParkedWindows says what is done to windows there. All of
/// it on that queue, but for what says otherwise.
class ParkingWorker {
 public:
  ParkingWorker(std::shared_ptr<const SharedScreenLayout> layout,
                std::shared_ptr<ParkingOutcomes> outcomes)
      : layout_(std::move(layout)), outcomes_(std::move(outcomes)) {}

  /// Once the manager has done what it was asked before. None for a window that has gone.
  std::optional<Point> positionOf(xcb_window_t window);
  /// `toldHome` is where the window was last told to be, if it was: what it is parked from.
  void move(xcb_window_t window, Point position, std::optional<Point> toldHome);
  /// Everything that is parked, until `parkAgain`.
  void sendAllHome();
  void parkAgain();

  /// The hidden monitor at `from`, in pixels of the root window, is at `to` from now on: so is what
  /// is parked on it. Where `to` is empty, that goes into the main screen's corner.
  void follow(const PixelRect& from, const PixelRect& to);

  /// Breaks the connection off, whatever it waits for, and lets nothing be done any more: the owner
  /// of the parked windows has ended by that. Any thread.
  void abandon();

 private:
  struct Home {
    /// As it was last told before it was left, which may be another place than it was left from:
    /// managers move windows while they minimise them.
    Point position;
    /// Where it was asked to be.
    Point parked;
    /// The same of its client, in pixels of the root window, whatever its manager has made of it.
    PixelRect asked;
    ParkingRecord record;
    ParkingOutcome outcome = ParkingOutcome::outOfSight;
  };

  /// Whether there is a connection; makes one where it was lost, which the windows that were parked
  /// over it have not survived as such.
  bool isConnected();
  /// In pixels of the root window; none when it has gone.
  std::optional<FramedWindow> placeOf(xcb_window_t window);
  Point pointsOf(const FramedWindow& place) const;
  /// Whether somebody else has the window parked, who is alive. Where they have ended, it is
  /// brought home first.
  bool isSomebodyElses(xcb_window_t window);
  /// Not where a display server has given the number of a window that has gone to another one.
  bool isRecordedHere(xcb_window_t window);
  void forgetThoseGone();
  /// Takes off what ties the window to its place; its record tells at each step what it would get
  /// back.
  Home leave(xcb_window_t window, const FramedWindow& found, std::optional<Point> toldHome);
  void untie(xcb_window_t window, ParkingRecord& record, const FramedWindow& found);
  /// With the size that it is found with.
  void park(xcb_window_t window, Home& home, const FramedWindow& found, Point position);
  /// Where its client is to be for a window at `position`, of the size that it is found with.
  PixelRect clientAt(xcb_window_t window, const FramedWindow& found, Point position);
  void moveTo(xcb_window_t window, Home& home, const PixelRect& client);
  void stickWhereLeftBehind(xcb_window_t window);
  bool isInSight(xcb_window_t window);
  /// Once only, until it goes up again.
  ParkingOutcome putBelowOthers(xcb_window_t window, Home& home);
  void sendHome(std::map<xcb_window_t, Home>::iterator parked);
  void own();
  void disownWhereNoneIsLeft();

  const std::shared_ptr<const SharedScreenLayout> layout_;
  const std::shared_ptr<ParkingOutcomes> outcomes_;
  std::unique_ptr<Connection> connection_;
  std::optional<ParkingOwner> owner_;  // while windows are parked
  std::map<xcb_window_t, Home> homes_;
  /// Where those were parked that have been sent home for the time being.
  std::map<xcb_window_t, Point> resting_;

  std::mutex mutex_;
  bool isAbandoned_ = false;  // guarded by mutex_
  int descriptor_ = -1;       // the connection's; guarded by mutex_
};

}  // namespace vistrel::platform::linux_desktop
