#pragma once

#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "platform/linux/PixelRect.h"
#include "platform/linux/SerialQueue.h"
#include "platform/linux/x11/server/Connection.h"

namespace vistrel::platform::linux_desktop {

/// Whether the panel is marked as one that lies wholly under others.
bool isMarkedCovered(Connection& connection, xcb_window_t panel);
/// The mark: a property that the panel's window has while it is one.
inline constexpr const char* coveredMark = "_VISTREL_COVERED";

/// Marks panels that lie wholly under other panels, for those who draw them. Needed where a
/// compositing manager shows windows: the display server tells of no window there that another one
/// covers. What a person has made translucent covers nothing.
class CoveredPanels {
 public:
  /// Looks on `queue`, where this object and `connection` live.
  CoveredPanels(SerialQueue& queue, Connection& connection)
      : queue_(queue), connection_(connection) {}

  /// The connection is told of the window's structure and properties, and of the root's properties.
  void add(xcb_window_t panel);
  /// For each event that the connection is told of.
  void handle(const xcb_generic_event_t& event);

 private:
  struct Shown {
    xcb_window_t panel;
    PixelRect frame;
  };

  void followFrameOf(xcb_window_t panel);
  void lookSoon();
  void look();
  std::vector<Shown> shownPanels();
  /// Those that lie wholly under others.
  std::vector<xcb_window_t> covered();
  bool isTranslucent(xcb_window_t panel);
  void mark(xcb_window_t panel, bool isCovered);

  SerialQueue& queue_;
  Connection& connection_;
  std::map<xcb_window_t, bool> panels_;  // whether they are marked
  double lastLook_ = 0;
  /// Kept while there is to be a look.
  std::shared_ptr<const bool> awaitedLook_;
};

}  // namespace vistrel::platform::linux_desktop
