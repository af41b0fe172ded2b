#pragma once

#include <xcb/damage.h>

#include "tests/support/XConnection.h"

namespace vistrel::bench {

/// Counts how often a window is drawn, at no cost to who draws it. The X server's own is an event
/// for each rectangle.
class DrawnFrames {
 public:
  /// `connection` outlives this object; its events are lost.
  DrawnFrames(const testbed::XConnection& connection, xcb_window_t window);
  ~DrawnFrames();
  DrawnFrames(const DrawnFrames&) = delete;
  DrawnFrames& operator=(const DrawnFrames&) = delete;

  /// Since this object was made.
  int count();

 private:
  const testbed::XConnection* connection_;
  xcb_damage_damage_t damage_;
  int count_ = 0;
  /// Of the server's clock.
  xcb_timestamp_t lastDrawn_ = 0;
};

}  // namespace vistrel::bench
