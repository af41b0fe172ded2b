#pragma once

#include <chrono>
#include <concepts>

namespace vistrel::testbed {

/// How long a condition may take on a machine that is busy with other things. A condition that
/// holds costs only the time until it does.
inline constexpr std::chrono::seconds generousDeadline{30};

/// Gives other processes a few milliseconds, between two looks at a condition.
void letOthersRun();

/// Looks at `condition` again and again until it holds; false when it did not by the deadline.
template <std::predicate Condition>
[[nodiscard]] bool eventually(Condition&& condition,
                              std::chrono::milliseconds deadline = generousDeadline) {
  const auto end = std::chrono::steady_clock::now() + deadline;
  while (!condition()) {
    if (std::chrono::steady_clock::now() >= end) {
      return false;
    }
    letOthersRun();
  }
  return true;
}

}  // namespace vistrel::testbed
