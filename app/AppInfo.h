#pragma once

#include <string>

/// What the program says of itself.
namespace vistrel::AppInfo {

/// The version that the bundle carries, read afresh each time; "1.0.0" when it carries none.
std::string version();

}  // namespace vistrel::AppInfo
