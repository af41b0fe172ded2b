#include "platform/simulated/SimulatedBackend.h"

#include <cstdlib>

#include "platform/simulated/ThreadedDispatch.h"

namespace vistrel::platform::simulated {
namespace {

std::unique_ptr<SimulatedDispatch> makeDispatch(Mode mode) {
  if (mode == Mode::threads) return std::make_unique<ThreadedDispatch>();
  return std::make_unique<VirtualTimeDispatch>();
}

}  // namespace

SimulatedBackend::SimulatedBackend(Mode mode)
    : dispatch_(makeDispatch(mode)),
      capture_(dispatch_->serviceQueue(), journal_),
      application_(*dispatch_, journal_) {}

SimulatedBackend::~SimulatedBackend() { drain(); }

VirtualTimeDispatch& SimulatedBackend::virtualTime() {
  auto* dispatch = dynamic_cast<VirtualTimeDispatch*>(dispatch_.get());
  if (dispatch == nullptr) std::abort();
  return *dispatch;
}

void SimulatedBackend::drain() {
  capture_.answers().releaseEverything();
  dispatch_->drain();
}

}  // namespace vistrel::platform::simulated
