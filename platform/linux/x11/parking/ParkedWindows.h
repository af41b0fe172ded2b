#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <utility>

#include "platform/Geometry.h"
#include "platform/linux/session/SharedScreenLayout.h"
#include "platform/linux/x11/manager/VisibleFrame.h"
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
/// the manager lets it. One that goes back to where it was found gets back everything it had.
///
/// Positions are of what a person sees as the window, in points of global display space. Main
/// thread.
class ParkedWindows {
 public:
  /// What has become of a window that was to be out of sight.
  enum class Outcome {
    outOfSight,
    /// In sight where no other window covers it.
    belowOthers,
    /// The manager has done neither.
    inSight,
  };

  /// `connection` outlives this object.
  ParkedWindows(Connection& connection, std::shared_ptr<const SharedScreenLayout> layout)
      : connection_(connection), layout_(std::move(layout)) {}
  ParkedWindows(const ParkedWindows&) = delete;
  ParkedWindows& operator=(const ParkedWindows&) = delete;
  /// Gives back all that are still parked.
  ~ParkedWindows();

  /// Once the manager has done what it was asked before, which it gets two seconds for. None for a
  /// window that has gone.
  std::optional<Point> positionOf(xcb_window_t window);
  /// Returns once the manager has been told, and has had two seconds to do it; it may have its own
  /// mind. False for a window that has gone.
  bool move(xcb_window_t window, Point position);

  /// None for a window that is not parked.
  std::optional<Outcome> outcomeFor(xcb_window_t window) const;

 private:
  /// The states that tie a window to its place.
  struct Ties {
    bool horizontally = false;
    bool vertically = false;
    bool fullScreen = false;

    friend bool operator==(const Ties&, const Ties&) = default;
  };
  /// The states that keep a window above others, or below them.
  struct Layer {
    bool isAbove = false;
    bool isBelow = false;
  };
  /// What a window gets back.
  struct Home {
    /// As it was last told before it was left, which may be another place than it was left from:
    /// managers move windows while they minimise them.
    Point position;
    /// Where the client is without its ties.
    PixelRect client;
    Ties ties;
    /// None where the manager has no desktops.
    std::optional<std::uint32_t> desktop;
    bool isSticky = false;
    Layer layer;
    Outcome outcome = Outcome::outOfSight;
  };

  /// In pixels of the root window; none when it has gone.
  std::optional<FramedWindow> placeOf(xcb_window_t window);
  Point pointsOf(const FramedWindow& place) const;
  /// Takes off what ties the window to its place.
  Home leave(xcb_window_t window, const FramedWindow& found);
  void giveBack(xcb_window_t window, const Home& home);
  void park(xcb_window_t window, Home& home, const FramedWindow& found, Point position);
  void moveTo(xcb_window_t window, const FramedWindow& found, Point position);
  bool isInSight(xcb_window_t window);
  /// Once only, until it goes up again.
  void putBelowOthers(xcb_window_t window, Home& home);
  void putBackUp(xcb_window_t window, const Home& home);
  /// Which there were.
  Ties takeOffTies(xcb_window_t window);
  void putOnTies(xcb_window_t window, const Ties& ties);
  /// Turns one or two states on or off.
  void setStates(xcb_window_t window, bool areOn, const char* state, const char* another);
  void setDesktop(xcb_window_t window, std::uint32_t desktop);
  void stickWhereLeftBehind(xcb_window_t window);
  void backToDesktop(xcb_window_t window, const Home& home);

  Connection& connection_;
  const std::shared_ptr<const SharedScreenLayout> layout_;
  std::map<xcb_window_t, Home> homes_;
  /// The last position that was told, and whose.
  std::optional<std::pair<xcb_window_t, Point>> told_;
};

}  // namespace vistrel::platform::linux_desktop
