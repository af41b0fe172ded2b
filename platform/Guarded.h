#pragma once

#include <mutex>
#include <utility>

namespace vistrel::platform {

/// A value that one thread stores and another loads, each at once. What a store replaces is
/// released after the lock is, so its destructor may do anything.
template <class Value>
class Guarded {
 public:
  Guarded() = default;
  explicit Guarded(Value value) : value_(std::move(value)) {}

  Value load() const {
    const std::lock_guard lock(mutex_);
    return value_;
  }

  void store(Value value) {
    const std::lock_guard lock(mutex_);
    std::swap(value_, value);
  }

 private:
  mutable std::mutex mutex_;
  Value value_{};
};

}  // namespace vistrel::platform
