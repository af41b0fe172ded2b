#pragma once

#include <filesystem>

namespace vistrel::bench {

/// Writes quality.csv: how near each subject's small picture of a source comes to the mean of the
/// source's pixels under each of its own (peak signal-to-noise ratio in decibels, at most 99), for
/// several sources at several ratios. The pictures themselves go into a folder beside it.
void measurePictureQuality(const std::filesystem::path& folder);

}  // namespace vistrel::bench
