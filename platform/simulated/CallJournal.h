#pragma once

#include <string>
#include <vector>

namespace vistrel::platform::simulated {

/// The calls to several parts of the desktop in one order, as words that a test can compare. Main
/// thread.
using CallJournal = std::vector<std::string>;

/// A number as short as it can be written: "8", "1510.5".
std::string inWords(double number);

}  // namespace vistrel::platform::simulated
