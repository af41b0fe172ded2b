#pragma once

#include <cstddef>
#include <cstdint>

// What clang writes into an object file for Objective-C with -fobjc-runtime=gnustep-2.0, as its
// CGObjCGNU.cpp (clang 16) lays it out. Fields that no code here reads are kept for their place.

namespace vistrel::objc {

struct Class;
struct Object {
  Class* isa;
};

/// A selector: two are the same when their names are.
struct Selector {
  const char* name;
  const char* types;
};

using Implementation = void* (*)(Object*, const Selector*, ...);

struct Method {
  Implementation implementation;
  const Selector* selector;
  const char* types;
};

struct MethodList {
  MethodList* next;
  int count;
  std::size_t elementSize;

  // They follow.
  const Method* begin() const { return reinterpret_cast<const Method*>(this + 1); }
  const Method* end() const { return begin() + count; }
};

/// A variable of instances, placed when its class is known to stand on a superclass of known size.
struct Ivar {
  const char* name;
  const char* type;
  int* offset;
  std::uint32_t size;
  std::uint32_t flags;

  std::size_t alignment() const { return std::size_t{1} << (flags >> 3 & 15); }
};

struct IvarList {
  int count;
  std::size_t elementSize;

  // They follow.
  const Ivar* begin() const { return reinterpret_cast<const Ivar*>(this + 1); }
  const Ivar* end() const { return begin() + count; }
};

struct Property {
  const char* name;
  const char* attributes;
  const char* type;
  const Selector* getter;
  const Selector* setter;
};

struct PropertyList {
  int count;
  int elementSize;
  PropertyList* next;

  // They follow.
  const Property* begin() const { return reinterpret_cast<const Property*>(this + 1); }
  const Property* end() const { return begin() + count; }
};

struct Class {
  Class* isa;
  Class* superclass;
  const char* name;
  long version;
  unsigned long info;
  long instanceSize;
  IvarList* ivars;
  MethodList* methods;
  void* dispatchTable;
  Implementation constructor;
  Implementation destructor;
  Class* subclasses;
  Class* sibling;
  void* protocols;
  void* extraData;
  long abiVersion;
  PropertyList* properties;

  bool isMetaclass() const { return (info & 1) != 0; }
};

struct Category {
  const char* name;
  const char* className;
  MethodList* instanceMethods;
  MethodList* classMethods;
  void* protocols;
  void* instanceProperties;
  void* classProperties;
};

/// A string literal.
struct ConstantString {
  Class* isa;
  std::uint32_t flags;
  std::uint32_t length;
  std::uint32_t size;
  std::uint32_t hash;
  const char* data;
};

/// What a message is sent through.
struct Slot {
  Class* owner;
  Class* cachedFor;
  const char* types;
  int version;
  Implementation implementation;
};

struct Super {
  Object* receiver;
  Class* superclass;
};

template <class Entry>
struct Section {
  Entry* first;
  Entry* last;

  Entry* begin() const { return first; }
  Entry* end() const { return last; }
};

/// What an object file hands over before `main`.
struct Module {
  std::uint64_t version;
  Section<Selector> selectors;
  Section<Class*> classes;
  Section<Class*> classReferences;
  Section<Category> categories;
  Section<void*> protocols;
  Section<void*> protocolReferences;
  Section<void*> classAliases;
  Section<ConstantString> strings;
};

}  // namespace vistrel::objc
