#pragma once

#include <string>

namespace vistrel::platform {

enum class ComparisonResult { ascending, same, descending };

/// Compares UTF-8 texts in the order that a person's language sorts them in, letter case ignored.
/// Any thread.
ComparisonResult localizedCaseInsensitiveCompare(const std::string& a, const std::string& b);

}  // namespace vistrel::platform
