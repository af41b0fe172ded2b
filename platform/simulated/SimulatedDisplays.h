#pragma once

#include <functional>
#include <map>
#include <optional>

#include "platform/Backend.h"
#include "platform/simulated/CallJournal.h"

namespace vistrel::platform::simulated {

/// The display server's displays as a test sets them: at first the main one, 1440 × 900. Changes of
/// the arrangement go into the journal. Main thread.
class SimulatedDisplays : public DisplayBackend {
 public:
  explicit SimulatedDisplays(CallJournal& journal) : journal_(journal) {}

  /// Adds the display when there is none of that id.
  void setBounds(DisplayID display, const Rect& bounds) { bounds_[display] = bounds; }
  void setMainBounds(const Rect& bounds) { setBounds(mainID, bounds); }
  void remove(DisplayID display) { bounds_.erase(display); }
  /// The next number that no display has had.
  DisplayID takeID() { return nextID_++; }

  /// No configuration can be begun from now on, or it can again.
  void setRefusesConfiguration(bool refuses) { refusesConfiguration_ = refuses; }
  /// Where a display comes that is asked to go somewhere; by default it goes there.
  using Placement = std::function<Point(Point asked)>;
  void setPlacement(Placement placement) { placement_ = std::move(placement); }

  DisplayID mainDisplayID() override { return mainID; }
  Rect displayBounds(DisplayID display) override;
  std::uint32_t onlineDisplayCount() override;
  std::unique_ptr<DisplayConfiguration> beginDisplayConfiguration() override;

 private:
  class Configuration;

  static constexpr DisplayID mainID = 1;

  CallJournal& journal_;
  std::map<DisplayID, Rect> bounds_{{mainID, rect(0, 0, 1440, 900)}};
  DisplayID nextID_ = mainID + 1;
  bool refusesConfiguration_ = false;
  Placement placement_;
};

}  // namespace vistrel::platform::simulated
