#pragma once

#include <string_view>

#include "tests/macos/runtime/Abi.h"

// The classes of the process. They are complete when `main` begins and are not changed afterwards,
// so that every thread reads them without a lock.

namespace vistrel::objc {

/// The class of an object, of a class (its metaclass) or of a string literal kept in a pointer.
Class* classOf(const Object* object);

/// Whether the pointer itself is the object: a short string literal.
bool isTagged(const Object* object);

/// Whether nobody counts references to it: classes and string literals.
bool isImmortal(const Object* object);

bool isBlock(const Object* object);

/// The method that instances of `type` have under that name, its own or inherited; null for none.
const Slot* findMethod(const Class* type, std::string_view name);

/// Null when there is no such class.
Class* classNamed(std::string_view name);

/// The same; ends the process, saying which message that was, when there is none.
const Slot& methodFor(const Class* type, const Selector* selector);

/// Calls the method of that name that `type` has itself, not those that it inherits; does nothing
/// when there is none.
void callOwnMethod(Object* object, const Class& type, std::string_view name);

/// Sends "copy"; blocks, which know no messages, are copied as the compiler would. The caller owns
/// the result.
Object* copyOf(Object* object);

}  // namespace vistrel::objc
