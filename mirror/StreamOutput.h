#pragma once

#include <functional>
#include <utility>

#include "platform/ScreenCapture.h"

namespace vistrel {

/// The sink of one stream: hands its screen samples to a callback on the mirror's sample queue.
class StreamOutput : public platform::StreamOutputHandler, public platform::StreamDelegate {
 public:
  using OnFrame = std::function<void(const platform::SampleBuffer&)>;

  StreamOutput() = delete;
  explicit StreamOutput(OnFrame onFrame) : onFrame_(std::move(onFrame)) {}

  void streamDidOutputSampleBuffer(platform::Stream& stream, const platform::SampleBuffer& sample,
                                   platform::StreamOutputType type) override;
  /// Does nothing: a stream that the system ends shows by its mirror's dot turning amber.
  void streamDidStopWithError(platform::Stream& stream, const platform::Error& error) override;

 private:
  const OnFrame onFrame_;
};

}  // namespace vistrel
