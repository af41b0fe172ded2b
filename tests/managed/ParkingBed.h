#pragma once

#include <gtest/gtest.h>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "platform/AccessibilityElement.h"
#include "platform/VirtualDisplayClasses.h"
#include "tests/managed/ManagedSession.h"
#include "tests/support/DisplayServer.h"

namespace vistrel::testbed {

/// Where windows are parked in a test.
struct ParkingPlace {
  std::string name;
  DisplayServer server;
  WindowManager manager;
  /// Whether a hidden display can be had there.
  bool hasHiddenDisplay;
  /// What is told of a window that is parked there.
  platform::linux_desktop::SourceSituation situation =
      platform::linux_desktop::SourceSituation::ordinary;

  /// As GoogleTest prints it.
  friend std::ostream& operator<<(std::ostream& stream, const ParkingPlace& place) {
    return stream << place.name;
  }
};

/// A session whose windows are parked, with the X11 half of the backend in this process.
class ParkingBed {
 public:
  explicit ParkingBed(const ParkingPlace& place, std::vector<std::string> serverArguments = {});

  ManagedSession& session() { return session_; }
  const XConnection& connection() const { return session_.connection(); }

  /// A display of that size in points, of high resolution, to the right of the main one; none when
  /// it cannot be had.
  std::optional<platform::DisplayID> makeDisplay(int width, int height);
  void removeDisplay(platform::DisplayID display);
  Rect boundsOf(platform::DisplayID display);
  /// How many displays are online.
  std::uint32_t displayCount() { return session_.providers().displays->onlineDisplayCount(); }

  /// The element of the window of that number, by way of its program. Throws std::runtime_error
  /// when there is none.
  std::shared_ptr<platform::AccessibilityElement> elementOf(xcb_window_t window);
  static std::optional<platform::Point> positionOf(platform::AccessibilityElement& element);
  static platform::AccessibilityError move(platform::AccessibilityElement& element,
                                           platform::Point position);

 private:
  ManagedSession session_;
};

/// A window of this process that has been moved out of sight, as a mirror moves its source.
class ParkedWindow {
 public:
  /// Onto a hidden display of its own where there can be one, else into the screen's corner.
  ParkedWindow(ParkingBed& bed, xcb_window_t window);
  ParkedWindow(const ParkedWindow&) = delete;
  ParkedWindow& operator=(const ParkedWindow&) = delete;
  /// Moves it back.
  ~ParkedWindow();

  bool isOnHiddenDisplay() const { return display_.has_value(); }
  /// Where it was asked to be; the manager may have its own mind.
  platform::Point place() const { return place_; }

 private:
  ParkingBed& bed_;
  const std::shared_ptr<platform::AccessibilityElement> element_;
  const std::optional<platform::Point> home_;
  std::optional<platform::DisplayID> display_;
  platform::Point place_;
};

}  // namespace vistrel::testbed
