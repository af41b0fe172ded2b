#pragma once

#include <functional>
#include <map>
#include <optional>

#include "platform/Backend.h"
#include "platform/simulated/CallJournal.h"
#include "platform/simulated/SimulatedCapture.h"

namespace vistrel::platform::simulated {

/// How a window appears to Accessibility.
struct AccessibleWindowScript {
  /// How often its program lists it.
  int timesListed = 1;
  /// Whether asking for its number fails.
  bool hidesNumber = false;
  /// Whether it stays where it is.
  bool refusesMoves = false;
  /// What asking for its position answers, in place of where it is.
  std::optional<AccessibilityAttributeOrError> position;
};

/// Accessibility, through which the windows of the capture service are reached by their programs'
/// process ids. Moves go into the journal, as in "AXPosition of 7: 3008,8". Main thread.
class SimulatedAccessibility : public AccessibilityBackend {
 public:
  SimulatedAccessibility(SimulatedCapture& capture, CallJournal& journal)
      : capture_(capture), journal_(journal) {}

  /// At first it is trusted.
  void setTrusted(bool trusted) { trusted_ = trusted; }
  int promptCount() const { return promptCount_; }
  /// Is called whenever a person would be asked.
  void setWhenPrompted(std::function<void()> prompted) { whenPrompted_ = std::move(prompted); }
  /// The function for window numbers is missing from now on, or is there again.
  void setHasWindowNumberFunction(bool has) { hasWindowNumberFunction_ = has; }
  /// No point value can be made from now on, or it can again.
  void setFailsPointValues(bool fails) { failsPointValues_ = fails; }
  void scriptWindow(WindowID window, const AccessibleWindowScript& script) {
    scripts_[window] = script;
  }
  /// What asking the program for its windows answers, in place of them.
  void scriptWindowsOf(std::int32_t processID, AccessibilityAttributeOrError answer);
  /// Is called whenever a window is told to move, before it does.
  void setWhenTold(std::function<void(WindowID window)> told) { whenTold_ = std::move(told); }

  bool isProcessTrusted() override { return trusted_; }
  bool isProcessTrustedWithOptions(bool prompt) override;
  std::shared_ptr<AccessibilityElement> applicationElement(std::int32_t processID) override;
  std::optional<AccessibilityValue> makePointValue(Point point) override;
  GetWindowNumber windowNumberFunctionNamed(const std::string& symbol) override;

 private:
  class ApplicationElement;
  class WindowElement;

  AccessibleWindowScript scriptOf(WindowID window) const;
  /// Null when the window is gone.
  WindowRecord recordOf(WindowID window) const;
  AccessibilityAttributeOrError windowsOf(std::int32_t processID);
  AccessibilityAttributeOrError positionOf(WindowID window);
  AccessibilityError move(WindowID window, Point position);

  SimulatedCapture& capture_;
  CallJournal& journal_;
  bool trusted_ = true;
  int promptCount_ = 0;
  std::function<void()> whenPrompted_;
  bool hasWindowNumberFunction_ = true;
  bool failsPointValues_ = false;
  std::map<WindowID, AccessibleWindowScript> scripts_;
  std::map<std::int32_t, AccessibilityAttributeOrError> windowsAnswers_;
  std::function<void(WindowID window)> whenTold_;
};

}  // namespace vistrel::platform::simulated
