#pragma once

#include <map>
#include <string>

namespace vistrel::objc {

/// How many objects live, by the name of their class; blocks and string literals are not counted.
/// Any thread.
std::map<std::string, long> liveObjects();

}  // namespace vistrel::objc
