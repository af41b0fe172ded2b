#pragma once

#include <string>

#include "tests/macos/runtime/Abi.h"

namespace vistrel::objc {

/// What a string literal says, ASCII only; one that says more ends the process.
std::string textOfLiteral(const Object* literal);

}  // namespace vistrel::objc
