#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <vector>

#include "tests/macos/runtime/Abi.h"

// What a class tells of itself: Objective-C Runtime, "Working with Classes".

using namespace vistrel::objc;

namespace {

/// The entries of a list and of those behind it, to be freed by the caller; null for none.
template <class Entry, class List>
const Entry** copyOf(const List* list, unsigned int* count) {
  std::vector<const Entry*> entries;
  for (; list != nullptr; list = list->next) {
    for (const Entry& entry : *list) entries.push_back(&entry);
  }
  if (count != nullptr) *count = static_cast<unsigned int>(entries.size());
  if (entries.empty()) return nullptr;
  auto** copy = static_cast<const Entry**>(std::calloc(entries.size(), sizeof(Entry*)));
  std::copy(entries.begin(), entries.end(), copy);
  return copy;
}

}  // namespace

extern "C" {

const Property** class_copyPropertyList(const Class* type, unsigned int* count) {
  return copyOf<Property>(type->properties, count);
}

const char* property_getName(const Property* property) { return property->name; }
const char* property_getAttributes(const Property* property) { return property->attributes; }

const Method** class_copyMethodList(const Class* type, unsigned int* count) {
  return copyOf<Method>(type->methods, count);
}

const Selector* method_getName(const Method* method) { return method->selector; }
}
