#pragma once

#include <string>
#include <vector>

namespace vistrel::architecture {

/// An include that the house does not allow.
struct Violation {
  std::string file;      // from the project root
  std::string included;  // as written, without quotes or brackets
  std::string rule;

  friend bool operator==(const Violation&, const Violation&) = default;
};

/// What one source file includes against the rules. `file` is its path from the project root.
///
/// Rooms from top to bottom are app, picker, catalogue, mirror, parking, platform; a file includes
/// from its own room and those below, by paths from the project root. The core, which is everything
/// but the folders in platform/, includes nothing else but headers of the C++ standard library. A
/// backend, which is a folder in platform/, includes platform/*.h, its own folder and whatever its
/// system offers; the halves platform/linux/qt/ and platform/linux/x11/ do not include each other,
/// and each of their rooms includes of its half only the rooms that it stands on.
std::vector<Violation> includeViolations(const std::string& file, const std::string& text);

}  // namespace vistrel::architecture
