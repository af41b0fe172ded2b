#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/Displays.h"
#include "platform/VirtualDisplay.h"

namespace vistrel {

/// An extra display that nobody sees, made by classes that may be missing. The display goes with
/// this object, at the next turn of the main loop. Main thread.
class VLVirtualDisplay {
 public:
  VLVirtualDisplay() = default;
  VLVirtualDisplay(const VLVirtualDisplay&) = delete;
  VLVirtualDisplay& operator=(const VLVirtualDisplay&) = delete;

  /// What the system has of the classes: a line for each class, property and selector.
  static std::string diagnostics();

  /// A live display of that size in pixels; null when it cannot be made, or when the classes do not
  /// answer as they are known to.
  static std::unique_ptr<VLVirtualDisplay> displayWithWidth(std::int32_t width, std::int32_t height,
                                                            const std::string& name);

  /// Makes the display; true when it is live and has an id. Once.
  bool createWithWidth(std::int32_t width, std::int32_t height, const std::string& name);

  /// 0 until the display is made.
  platform::DisplayID displayID() const { return displayID_; }

 private:
  std::shared_ptr<platform::RuntimeObject> display_;
  platform::DisplayID displayID_ = 0;
};

}  // namespace vistrel
