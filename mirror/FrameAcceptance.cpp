#include "mirror/FrameAcceptance.h"

#include "platform/ScreenCapture.h"

namespace vistrel {

bool isCompleteFrame(std::optional<std::int64_t> frameStatus) {
  constexpr auto complete = static_cast<std::int64_t>(platform::FrameStatus::complete);
  return frameStatus.value_or(complete) == complete;
}

}  // namespace vistrel
