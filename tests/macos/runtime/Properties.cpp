#include <cstddef>
#include <utility>

#include "tests/macos/runtime/Abi.h"
#include "tests/macos/runtime/Classes.h"

// What clang calls in the accessors that it writes itself, where they do more than ARC's functions.

using namespace vistrel::objc;

extern "C" {

void objc_release(Object* object);

void objc_setProperty_nonatomic_copy(Object* self, const Selector* /*setter*/, Object* value,
                                     std::ptrdiff_t offset) {
  if (value != nullptr) value = copyOf(value);
  auto* const place = reinterpret_cast<Object**>(reinterpret_cast<char*>(self) + offset);
  objc_release(std::exchange(*place, value));
}
}
