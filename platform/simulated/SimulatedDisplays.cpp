#include "platform/simulated/SimulatedDisplays.h"

#include <array>
#include <charconv>
#include <string>

namespace vistrel::platform::simulated {

std::string inWords(double number) {
  std::array<char, 32> text{};
  const auto end = std::to_chars(text.data(), text.data() + text.size(), number).ptr;
  return {text.data(), end};
}

/// Takes effect when it is completed.
class SimulatedDisplays::Configuration : public DisplayConfiguration {
 public:
  explicit Configuration(SimulatedDisplays& displays) : displays_(displays) {}

  void configureOrigin(DisplayID display, std::int32_t x, std::int32_t y) override {
    displays_.journal_.add("configureOrigin " + std::to_string(display) + ": " + std::to_string(x) +
                           "," + std::to_string(y));
    origins_[display] = {static_cast<double>(x), static_cast<double>(y)};
  }

  void complete(ConfigureOption option) override {
    displays_.journal_.add("completeDisplayConfiguration " +
                           std::to_string(static_cast<int>(option)));
    for (const auto& [display, asked] : origins_) {
      const auto found = displays_.bounds_.find(display);
      if (found == displays_.bounds_.end()) continue;
      found->second.origin = displays_.placement_ ? displays_.placement_(asked) : asked;
    }
  }

 private:
  SimulatedDisplays& displays_;
  std::map<DisplayID, Point> origins_;
};

Rect SimulatedDisplays::displayBounds(DisplayID display) {
  const auto found = bounds_.find(display);
  return found == bounds_.end() ? Rect{} : found->second;
}

std::uint32_t SimulatedDisplays::onlineDisplayCount() {
  if (whenCounted_) whenCounted_();
  return static_cast<std::uint32_t>(bounds_.size());
}

std::unique_ptr<DisplayConfiguration> SimulatedDisplays::beginDisplayConfiguration() {
  journal_.add("beginDisplayConfiguration");
  if (refusesConfiguration_) return nullptr;
  return std::make_unique<Configuration>(*this);
}

}  // namespace vistrel::platform::simulated
