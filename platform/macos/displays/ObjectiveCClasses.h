#pragma once

#include "platform/Backend.h"

namespace vistrel::platform::macos {

/// Classes of the Objective-C runtime that no header declares, talked to by their selectors.
class ObjectiveCClasses final : public VirtualDisplayBackend {
 public:
  std::shared_ptr<RuntimeClass> classNamed(const std::string& name) override;
};

}  // namespace vistrel::platform::macos
