#pragma once

#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace vistrel::platform::simulated {

/// The calls to several parts of the desktop in one order, as words that a test can compare. Any
/// thread.
class CallJournal {
 public:
  void add(std::string words) {
    const std::scoped_lock lock(mutex_);
    calls_.push_back(std::move(words));
  }
  std::vector<std::string> calls() const {
    const std::scoped_lock lock(mutex_);
    return calls_;
  }
  void clear() {
    const std::scoped_lock lock(mutex_);
    calls_.clear();
  }

 private:
  mutable std::mutex mutex_;
  std::vector<std::string> calls_;  // guarded by mutex_
};

/// A number as short as it can be written: "8", "1510.5".
std::string inWords(double number);

}  // namespace vistrel::platform::simulated
