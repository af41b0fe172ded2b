#pragma once

#include <string>
#include <vector>

namespace vistrel::testbed {

/// What the program writes to standard output. Returns once it has ended; throws
/// std::runtime_error, with what it wrote to standard error, unless its exit status is 0.
std::string outputOf(const std::vector<std::string>& arguments);

/// The lines of a text, without their line feeds.
std::vector<std::string> linesOf(const std::string& text);

}  // namespace vistrel::testbed
