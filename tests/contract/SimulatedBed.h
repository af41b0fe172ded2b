#pragma once

#include "platform/simulated/SimulatedBackend.h"
#include "tests/contract/ContractBed.h"

namespace vistrel::contract {

/// The suite's bed over the simulated desktop, which shows what it was told.
class SimulatedBed : public ContractBed {
 public:
  explicit SimulatedBed(platform::simulated::Mode mode) : backend_(mode) {}

  platform::Backend& backend() override { return backend_; }
  std::unique_ptr<SourceWindow> openSource(const SourceOptions& options) override;
  bool turnUntil(const std::function<bool()>& condition) override;
  platform::PixelBGRA colorShown(platform::Window& window, platform::Point fromTopLeft) override;
  PanelFacts factsOf(platform::Panel& panel) override;
  void makeTwoScreens() override;

 private:
  platform::simulated::SimulatedBackend backend_;
};

}  // namespace vistrel::contract
