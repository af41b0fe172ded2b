#include <cstddef>
#include <cstdlib>
#include <vector>

#include "tests/macos/runtime/Abi.h"

// What a class tells of itself: Objective-C Runtime, "Working with Classes".

using namespace vistrel::objc;

namespace {

/// To be freed by the caller; null for an empty list.
template <class Entry>
const Entry** copyOf(const std::vector<const Entry*>& entries, unsigned int* count) {
  if (count != nullptr) *count = static_cast<unsigned int>(entries.size());
  if (entries.empty()) return nullptr;
  auto** copy = static_cast<const Entry**>(std::calloc(entries.size() + 1, sizeof(Entry*)));
  for (std::size_t i = 0; i < entries.size(); ++i) copy[i] = entries[i];
  return copy;
}

}  // namespace

extern "C" {

const Property** class_copyPropertyList(const Class* type, unsigned int* count) {
  std::vector<const Property*> properties;
  for (const auto* list = type->properties; list != nullptr; list = list->next) {
    for (const Property& property : *list) properties.push_back(&property);
  }
  return copyOf(properties, count);
}

const char* property_getName(const Property* property) { return property->name; }
const char* property_getAttributes(const Property* property) { return property->attributes; }

const Method** class_copyMethodList(const Class* type, unsigned int* count) {
  std::vector<const Method*> methods;
  for (const auto* list = type->methods; list != nullptr; list = list->next) {
    for (const Method& method : *list) methods.push_back(&method);
  }
  return copyOf(methods, count);
}

const Selector* method_getName(const Method* method) { return method->selector; }
}
