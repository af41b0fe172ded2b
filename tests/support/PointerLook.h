#pragma once

#include <cstdint>
#include <vector>

#include "tests/support/XConnection.h"

namespace vistrel::testbed {

/// The picture of the pointer as it is now (XFixes), for comparing: where two are equal, the
/// pointer looks the same. Empty when the server does not tell.
std::vector<std::uint32_t> pointerLook(const XConnection& connection);

}  // namespace vistrel::testbed
