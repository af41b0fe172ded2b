#include "platform/macos/displays/CoreGraphicsDisplays.h"

#import <CoreGraphics/CoreGraphics.h>

#include <utility>

#include "platform/macos/Conversions.h"

namespace vistrel::platform::macos {

static_assert(static_cast<CGConfigureOption>(ConfigureOption::forSession) ==
              kCGConfigureForSession);

namespace {

/// Cancelled with this object unless it was completed, which releases it.
class Configuration final : public DisplayConfiguration {
 public:
  explicit Configuration(CGDisplayConfigRef reference) : reference_(reference) {}
  Configuration(const Configuration&) = delete;
  Configuration& operator=(const Configuration&) = delete;
  ~Configuration() override {
    if (reference_ != nullptr) CGCancelDisplayConfiguration(reference_);
  }

  void configureOrigin(DisplayID display, std::int32_t x, std::int32_t y) override {
    CGConfigureDisplayOrigin(reference_, display, x, y);
  }
  void complete(ConfigureOption option) override {
    CGCompleteDisplayConfiguration(std::exchange(reference_, nullptr),
                                   static_cast<CGConfigureOption>(option));
  }

 private:
  CGDisplayConfigRef reference_;
};

}  // namespace

DisplayID CoreGraphicsDisplays::mainDisplayID() { return CGMainDisplayID(); }

Rect CoreGraphicsDisplays::displayBounds(DisplayID display) {
  return coreRect(CGDisplayBounds(display));
}

std::uint32_t CoreGraphicsDisplays::onlineDisplayCount() {
  std::uint32_t count = 0;
  CGGetOnlineDisplayList(0, nullptr, &count);
  return count;
}

std::unique_ptr<DisplayConfiguration> CoreGraphicsDisplays::beginDisplayConfiguration() {
  CGDisplayConfigRef reference = nullptr;
  const CGError error = CGBeginDisplayConfiguration(&reference);
  if (error != kCGErrorSuccess || reference == nullptr) return nullptr;
  return std::make_unique<Configuration>(reference);
}

}  // namespace vistrel::platform::macos
