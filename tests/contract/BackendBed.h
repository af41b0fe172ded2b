#pragma once

#include <QTimer>
#include <memory>

#include "tests/contract/ContractBed.h"
#include "tests/support/TestWindow.h"

namespace vistrel::contract {

testbed::Quadrants quadrants(const Quadrants& colors);

/// The real backend of the Linux desktop, whose environment this process has taken over.
class BackendBed : public ContractBed {
 public:
  /// Throws std::runtime_error when the backend cannot be made.
  BackendBed();
  ~BackendBed() override;

  platform::Backend& backend() override { return *backend_; }
  bool turnUntil(const std::function<bool()>& condition) override;

 private:
  const std::unique_ptr<platform::Backend> backend_;
  const platform::BackendInstallation installation_;
  QTimer wakeUp_;  // conditions may also depend on what happens outside the event loop
};

}  // namespace vistrel::contract
