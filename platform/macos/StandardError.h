#pragma once

#include "platform/Backend.h"

namespace vistrel::platform::macos {

/// The process's own.
class StandardError final : public StandardErrorBackend {
 public:
  void write(const std::string& text) override;
};

}  // namespace vistrel::platform::macos
