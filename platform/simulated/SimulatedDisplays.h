#pragma once

#include <functional>
#include <map>
#include <optional>

#include "platform/Backend.h"
#include "platform/simulated/CallJournal.h"

namespace vistrel::platform::simulated {

inline constexpr DisplayID mainDisplay = 1;

/// The display server's displays as a test sets them: at first the main one, 1440 × 900. Changes of
/// the arrangement go into the journal. Main thread.
class SimulatedDisplays : public DisplayBackend {
 public:
  explicit SimulatedDisplays(CallJournal& journal) : journal_(journal) {}

  /// Adds the display when there is none of that id.
  void setBounds(DisplayID display, const Rect& bounds) { bounds_[display] = bounds; }
  void setMainBounds(const Rect& bounds) { setBounds(mainDisplay, bounds); }
  void remove(DisplayID display) { bounds_.erase(display); }
  /// The next number that no display has had.
  DisplayID takeID() { return nextID_++; }

  /// No configuration can be begun from now on, or it can again.
  void setRefusesConfiguration(bool refuses) { refusesConfiguration_ = refuses; }
  /// Where a display comes that is asked to go somewhere; by default it goes there.
  using Placement = std::function<Point(Point asked)>;
  void setPlacement(Placement placement) { placement_ = std::move(placement); }
  /// Is called whenever the online displays are about to be counted.
  void setWhenCounted(std::function<void()> counted) { whenCounted_ = std::move(counted); }

  DisplayID mainDisplayID() override { return mainDisplay; }
  Rect displayBounds(DisplayID display) override;
  std::uint32_t onlineDisplayCount() override;
  std::unique_ptr<DisplayConfiguration> beginDisplayConfiguration() override;

 private:
  class Configuration;

  CallJournal& journal_;
  std::map<DisplayID, Rect> bounds_{{mainDisplay, rect(0, 0, 1440, 900)}};
  DisplayID nextID_ = mainDisplay + 1;
  bool refusesConfiguration_ = false;
  Placement placement_;
  std::function<void()> whenCounted_;
};

}  // namespace vistrel::platform::simulated
