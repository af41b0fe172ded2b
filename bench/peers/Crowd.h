#pragma once

#include <chrono>
#include <filesystem>

namespace vistrel::bench {

/// Writes crowd.csv: what one and what sixteen sources of 640 × 400 that repaint all of themselves
/// 30 times a second cost, alone and mirrored, and how many frames their panels show together.
void measureCrowd(const std::filesystem::path& folder, std::chrono::duration<double> span);

}  // namespace vistrel::bench
