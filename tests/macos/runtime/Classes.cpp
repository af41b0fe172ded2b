#include "tests/macos/runtime/Classes.h"

#include <Block.h>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

extern "C" {
extern void* _NSConcreteStackBlock[];
extern void* _NSConcreteMallocBlock[];
extern void* _NSConcreteGlobalBlock[];
extern vistrel::objc::Class constantStringClass __asm__("._OBJC_CLASS_NSConstantString");
}

namespace vistrel::objc {

namespace {

constexpr unsigned long resolvedFlag = 1UL << 9;

using MethodTable = std::unordered_map<std::string_view, Slot>;

/// Filled while object files hand over their classes, which is before constructors of this file
/// would run.
struct Registry {
  std::unordered_map<std::string_view, Class*> classes;
  std::vector<Class*> unresolved;
  std::vector<const Category*> categoriesWithoutClass;
};

Registry& registry() {
  static auto* const registry = new Registry;
  return *registry;
}

MethodTable& ownMethods(const Class& type) {
  return *static_cast<MethodTable*>(type.dispatchTable);
}

/// A later list, which is a category's, wins.
void addMethods(Class& type, const MethodList* list) {
  MethodTable& table = ownMethods(type);
  for (; list != nullptr; list = list->next) {
    for (const Method& method : *list) {
      table.insert_or_assign(method.selector->name,
                             Slot{&type, &type, method.types, 0, method.implementation});
    }
  }
}

void placeIvars(Class& type) {
  std::size_t size = type.superclass != nullptr
                         ? static_cast<std::size_t>(type.superclass->instanceSize)
                         : sizeof(Object);
  if (type.ivars != nullptr) {
    for (const Ivar& ivar : *type.ivars) {
      const std::size_t alignment = ivar.alignment();
      size = (size + alignment - 1) / alignment * alignment;
      *ivar.offset = static_cast<int>(size);
      size += ivar.size;
    }
  }
  type.instanceSize = static_cast<long>(size);
}

/// A metaclass inherits along its class; at the end stands the root class, whose instance methods
/// classes have as well.
void linkMetaclass(Class& type) {
  Class* root = &type;
  while (root->superclass != nullptr) root = root->superclass;
  Class& metaclass = *type.isa;
  metaclass.isa = root->isa;
  metaclass.superclass = type.superclass != nullptr ? type.superclass->isa : &type;
  metaclass.name = type.name;
}

void resolve(Class& type) {
  if ((type.info & resolvedFlag) != 0) return;
  type.info |= resolvedFlag;
  if (type.superclass != nullptr) resolve(*type.superclass);
  registry().classes.emplace(type.name, &type);
  linkMetaclass(type);
  placeIvars(type);
  for (Class* each : {&type, type.isa}) {
    each->dispatchTable = new MethodTable;
    addMethods(*each, each->methods);
  }
}

bool attach(const Category& category) {
  Class* type = classNamed(category.className);
  if (type == nullptr) return false;
  addMethods(*type, category.instanceMethods);
  addMethods(*type->isa, category.classMethods);
  return true;
}

[[noreturn]] void failUnknownMessage(const Class& type, const Selector& selector) {
  std::fprintf(stderr, "%c[%s %s]: no such method\n", type.isMetaclass() ? '+' : '-', type.name,
               selector.name);
  std::abort();
}

void* answerOfNil() { return nullptr; }

}  // namespace

bool isTagged(const Object* object) { return (reinterpret_cast<std::uintptr_t>(object) & 7) != 0; }

bool isBlock(const Object* object) {
  if (isTagged(object)) return false;
  const auto* isa = reinterpret_cast<void* const*>(object->isa);
  return isa == _NSConcreteStackBlock || isa == _NSConcreteMallocBlock ||
         isa == _NSConcreteGlobalBlock;
}

Class* classOf(const Object* object) {
  return isTagged(object) ? &constantStringClass : object->isa;
}

bool isImmortal(const Object* object) {
  if (isTagged(object)) return true;
  return object->isa == &constantStringClass || object->isa->isMetaclass();
}

const Slot* findMethod(const Class* type, std::string_view name) {
  for (; type != nullptr; type = type->superclass) {
    const MethodTable& table = ownMethods(*type);
    if (const auto found = table.find(name); found != table.end()) return &found->second;
  }
  return nullptr;
}

Class* classNamed(std::string_view name) {
  const auto& classes = registry().classes;
  const auto found = classes.find(name);
  return found != classes.end() ? found->second : nullptr;
}

const Slot& methodFor(const Class* type, const Selector* selector) {
  const Slot* slot = findMethod(type, selector->name);
  if (slot == nullptr) failUnknownMessage(*type, *selector);
  return *slot;
}

void callOwnMethod(Object* object, const Class& type, std::string_view name) {
  const MethodTable& table = ownMethods(type);
  const auto found = table.find(name);
  if (found == table.end()) return;
  const Selector selector{found->first.data(), found->second.types};
  found->second.implementation(object, &selector);
}

Object* copyOf(Object* object) {
  if (isBlock(object)) return static_cast<Object*>(_Block_copy(object));
  static const Selector copy{"copy", nullptr};
  return static_cast<Object*>(methodFor(classOf(object), &copy).implementation(object, &copy));
}

}  // namespace vistrel::objc

using namespace vistrel::objc;

// The functions that compiled code calls.
extern "C" {

void __objc_load(Module* module) {
  Registry& all = registry();
  for (Class* type : module->classes) {
    if (type != nullptr) resolve(*type);
  }
  std::vector<const Category*> categories = std::exchange(all.categoriesWithoutClass, {});
  for (const Category& category : module->categories) {
    if (category.name != nullptr) categories.push_back(&category);
  }
  for (const Category* category : categories) {
    if (!attach(*category)) all.categoriesWithoutClass.push_back(category);
  }
  for (ConstantString& string : module->strings) {
    if (string.data != nullptr) string.isa = &constantStringClass;
  }
}

const Slot* objc_msg_lookup_sender(Object** receiver, const Selector* selector,
                                   const Object* /*sender*/) {
  static const Slot slotOfNil{nullptr, nullptr, "", 0,
                              reinterpret_cast<Implementation>(&answerOfNil)};
  return *receiver == nullptr ? &slotOfNil : &methodFor(classOf(*receiver), selector);
}

Implementation objc_msg_lookup_super(const Super* super, const Selector* selector) {
  return methodFor(super->superclass, selector).implementation;
}

Class* objc_getClass(const char* name) { return classNamed(name); }
Class* objc_lookup_class(const char* name) { return classNamed(name); }
Class* objc_get_class(const char* name) { return classNamed(name); }
Class* object_getClass(const Object* object) {
  return object != nullptr ? classOf(object) : nullptr;
}
const char* class_getName(const Class* type) { return type != nullptr ? type->name : "nil"; }
Class* class_getSuperclass(const Class* type) {
  return type != nullptr ? type->superclass : nullptr;
}
bool class_isMetaClass(const Class* type) { return type != nullptr && type->isMetaclass(); }
bool class_respondsToSelector(const Class* type, const Selector* selector) {
  return findMethod(type, selector->name) != nullptr;
}
const char* sel_getName(const Selector* selector) { return selector->name; }

const Selector* sel_registerName(const char* name) {
  static std::mutex mutex;
  static auto* const selectors = new std::unordered_map<std::string, Selector>;
  const std::lock_guard lock(mutex);
  const auto [place, isNew] = selectors->try_emplace(name);
  if (isNew) place->second.name = place->first.c_str();
  return &place->second;
}
}
