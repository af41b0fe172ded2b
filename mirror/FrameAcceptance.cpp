#include "mirror/FrameAcceptance.h"

namespace vistrel {

using platform::FrameStatus;
using platform::SampleAttachments;

bool isCompleteFrame(const std::optional<std::vector<SampleAttachments>>& sampleAttachments) {
  if (!sampleAttachments || sampleAttachments->empty()) return true;
  const SampleAttachments& first = sampleAttachments->front();
  const auto found = first.find(platform::streamFrameInfoStatus);
  if (found == first.end()) return true;
  const auto* status = std::get_if<std::int64_t>(&found->second);
  return status == nullptr || *status == static_cast<std::int64_t>(FrameStatus::complete);
}

}  // namespace vistrel
