#include "mirror/StreamOutput.h"

namespace vistrel {

void StreamOutput::streamDidOutputSampleBuffer(platform::Stream& /*stream*/,
                                               const platform::SampleBuffer& sample,
                                               platform::StreamOutputType type) {
  if (type == platform::StreamOutputType::screen) onFrame_(sample);
}

void StreamOutput::streamDidStopWithError(platform::Stream& /*stream*/,
                                          const platform::Error& /*error*/) {}

}  // namespace vistrel
