#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "mirror/WindowMirrorHUDController.h"

namespace vistrel {

/// What a mirror keeps to itself.
class MirrorInsides {
 public:
  explicit MirrorInsides(const WindowMirrorHUDController& mirror) : mirror_(mirror) {}

  const std::string& sourceTitle() const { return mirror_.sourceTitle_; }
  const std::string& appName() const { return mirror_.appName_; }
  std::int32_t sourcePID() const { return mirror_.sourcePID_; }
  platform::Size sourcePointSize() const { return mirror_.sourcePointSize_; }
  double aspect() const { return mirror_.aspect_; }

  std::shared_ptr<platform::Stream> stream() const { return mirror_.stream_.load(); }
  std::shared_ptr<StreamOutput> streamOutput() const { return mirror_.streamOutput_.load(); }
  std::shared_ptr<platform::DispatchQueue> sampleQueue() const { return mirror_.sampleQueue_; }
  std::int64_t captureWidth() const { return mirror_.captureSize_.load().width; }
  std::int64_t captureHeight() const { return mirror_.captureSize_.load().height; }
  std::shared_ptr<const platform::Image> lastImage() const { return mirror_.lastImage_.load(); }
  platform::Date lastFrameAt() const { return mirror_.lastFrameAt_; }
  std::shared_ptr<platform::Timer> freshnessTimer() const { return mirror_.freshnessTimer_; }

  bool rolledUp() const { return mirror_.rolledUp_; }
  std::optional<platform::Rect> frameBeforeRollUp() const { return mirror_.frameBeforeRollUp_; }

  bool keepAwake() const { return mirror_.keepAwake_; }
  std::shared_ptr<platform::AccessibilityElement> parkedWindow() const {
    return mirror_.parkedWindow_;
  }
  std::optional<platform::Point> savedOrigin() const { return mirror_.savedOrigin_; }
  const VirtualDisplayHost* virtualHost() const { return mirror_.virtualHost_.get(); }

 private:
  const WindowMirrorHUDController& mirror_;
};

inline MirrorInsides inside(const WindowMirrorHUDController& mirror) {
  return MirrorInsides(mirror);
}

}  // namespace vistrel
