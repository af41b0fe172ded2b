#pragma once

#include <chrono>
#include <filesystem>

namespace vistrel::bench {

/// Writes soak.csv: what the program holds while sixteen mirrors of sources that open, resize,
/// repaint and close come and go for that long; each time that all sixteen are there and at rest.
void measureSoak(const std::filesystem::path& folder, std::chrono::duration<double> span);

}  // namespace vistrel::bench
