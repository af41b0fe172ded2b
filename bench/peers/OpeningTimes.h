#pragma once

#include <filesystem>

namespace vistrel::bench {

/// Writes opening.csv: milliseconds from the program's start until its picker lists a window, and
/// from a double-click on that until the mirror shows it, each time in a new session.
void measureOpeningTimes(const std::filesystem::path& folder, int times);

}  // namespace vistrel::bench
