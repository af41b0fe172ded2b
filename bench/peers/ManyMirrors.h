#pragma once

#include <chrono>
#include <filesystem>

namespace vistrel::bench {

/// Writes many.csv: what some numbers of mirrors of resting sources cost, and what they hold.
void measureManyMirrors(const std::filesystem::path& folder, std::chrono::duration<double> span);

}  // namespace vistrel::bench
