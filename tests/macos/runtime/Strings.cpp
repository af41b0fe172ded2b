#include "tests/macos/runtime/Strings.h"

#include <cstdio>
#include <cstdlib>

#include "tests/macos/runtime/Classes.h"

namespace vistrel::objc {

namespace {

constexpr std::uint32_t utf16 = 2;

/// Up to eight characters lie in the pointer itself, seven bits each from the top on.
std::string textInPointer(std::uintptr_t bits) {
  const std::size_t length = bits >> 3 & 31;
  std::string text;
  for (std::size_t i = 0; i < length; ++i) {
    text.push_back(static_cast<char>(bits >> (57 - 7 * i) & 127));
  }
  return text;
}

}  // namespace

std::string textOfLiteral(const Object* literal) {
  if (isTagged(literal)) return textInPointer(reinterpret_cast<std::uintptr_t>(literal));
  const auto& string = reinterpret_cast<const ConstantString&>(*literal);
  if ((string.flags & 3) == utf16) {
    std::fprintf(stderr, "string literals beyond ASCII are not supported\n");
    std::abort();
  }
  return {string.data, string.length};
}

}  // namespace vistrel::objc
