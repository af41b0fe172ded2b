#pragma once

#include <chrono>
#include <filesystem>

namespace vistrel::bench {

struct Thoroughness {
  /// How often each subject has its turn.
  int rounds = 3;
  /// How long each figure is taken.
  std::chrono::duration<double> span{3};
};

/// Writes costs.csv and latency.csv: what showing a source of 1900 × 1020 in 520 pixels' width
/// costs each subject, and how late it is, as the source changes in one way and another.
void measureCostsInTurns(const std::filesystem::path& folder, const Thoroughness& thoroughness);

}  // namespace vistrel::bench
