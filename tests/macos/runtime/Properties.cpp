#include <cstddef>
#include <cstring>
#include <utility>

#include "tests/macos/runtime/Abi.h"
#include "tests/macos/runtime/Classes.h"

// What clang calls in the accessors that it writes itself, where they do more than ARC's functions.

using namespace vistrel::objc;

extern "C" {

Object* objc_retain(Object* object);
void objc_release(Object* object);
Object* objc_retainAutoreleaseReturnValue(Object* object);
}

namespace {

Object*& placeIn(Object* object, std::ptrdiff_t offset) {
  return *reinterpret_cast<Object**>(reinterpret_cast<char*>(object) + offset);
}

}  // namespace

// None of these is atomic: who shares an object among threads has to see to that by himself.
extern "C" {

Object* objc_getProperty(Object* self, const Selector* /*getter*/, std::ptrdiff_t offset,
                         bool /*atomic*/) {
  return objc_retainAutoreleaseReturnValue(placeIn(self, offset));
}

void objc_setProperty_atomic(Object* self, const Selector* /*setter*/, Object* value,
                             std::ptrdiff_t offset) {
  objc_release(std::exchange(placeIn(self, offset), objc_retain(value)));
}

void objc_setProperty_nonatomic_copy(Object* self, const Selector* /*setter*/, Object* value,
                                     std::ptrdiff_t offset) {
  if (value != nullptr) value = copyOf(value);
  objc_release(std::exchange(placeIn(self, offset), value));
}

void objc_setProperty_atomic_copy(Object* self, const Selector* setter, Object* value,
                                  std::ptrdiff_t offset) {
  objc_setProperty_nonatomic_copy(self, setter, value, offset);
}

void objc_getPropertyStruct(void* to, const void* from, std::ptrdiff_t size, bool /*atomic*/,
                            bool /*strong*/) {
  std::memcpy(to, from, static_cast<std::size_t>(size));
}

void objc_setPropertyStruct(void* to, const void* from, std::ptrdiff_t size, bool atomic,
                            bool strong) {
  objc_getPropertyStruct(to, from, size, atomic, strong);
}
}
