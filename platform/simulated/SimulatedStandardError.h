#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/Backend.h"

namespace vistrel::platform::simulated {

/// Keeps what was written. Main thread.
class SimulatedStandardError : public StandardErrorBackend {
 public:
  /// One for each call, in order.
  const std::vector<std::string>& texts() const { return texts_; }
  /// Is called after each text.
  void setWhenWritten(std::function<void()> written) { whenWritten_ = std::move(written); }

  void write(const std::string& text) override {
    texts_.push_back(text);
    if (whenWritten_) whenWritten_();
  }

 private:
  std::vector<std::string> texts_;
  std::function<void()> whenWritten_;
};

}  // namespace vistrel::platform::simulated
