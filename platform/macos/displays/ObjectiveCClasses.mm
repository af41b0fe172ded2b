#include "platform/macos/displays/ObjectiveCClasses.h"

#import <Foundation/Foundation.h>
#import <dispatch/dispatch.h>
#import <objc/runtime.h>

#include <cstdlib>
#include <utility>

#include "platform/macos/Conversions.h"

namespace vistrel::platform::macos {

namespace {

using Arguments = std::vector<RuntimeValue>;
using Objects = std::vector<std::shared_ptr<RuntimeObject>>;

/// The first character of a type encoding, which tells the types apart that are used here.
constexpr char encodedBool = 'B';
constexpr char encodedSignedChar = 'c';  // BOOL where it is no real boolean
constexpr char encodedUnsignedInt = 'I';
constexpr char encodedDouble = 'd';
constexpr char encodedObject = '@';
constexpr char encodedVoid = 'v';

class NativeObject final : public RuntimeObject {
 public:
  explicit NativeObject(id object) : object_(object) {}

  RuntimeValue send(std::string_view selector, const Arguments& arguments) override;
  id object() const { return object_; }

 private:
  const id object_;
};

id nativeObject(const std::shared_ptr<RuntimeObject>& object) {
  return static_cast<const NativeObject&>(*object).object();
}

/// Puts one argument into an invocation, a number as wide as the method takes it.
class ArgumentSetter {
 public:
  ArgumentSetter(NSInvocation* invocation, NSInteger index)
      : invocation_(invocation), index_(index) {}

  void operator()(std::monostate) const { setObject(nil); }
  void operator()(bool value) const { setNumber(value); }
  void operator()(std::uint32_t value) const { setNumber(value); }
  void operator()(double value) const { setNumber(value); }
  void operator()(Size value) const {
    CGSize native = cgSize(value);
    set(&native);
  }
  void operator()(const std::string& value) const { setObject(nsString(value)); }
  void operator()(GlobalQueue value) const {
    setObject(dispatch_get_global_queue(value.identifier, value.flags));
  }
  void operator()(const Block& value) const {
    const Block block = value;
    setObject(^{
      block();
    });
  }
  void operator()(const std::shared_ptr<RuntimeObject>& value) const {
    setObject(nativeObject(value));
  }
  void operator()(const Objects& value) const {
    NSMutableArray* const list = [NSMutableArray array];
    for (const auto& each : value) [list addObject:nativeObject(each)];
    setObject(list);
  }

 private:
  void set(void* value) const { [invocation_ setArgument:value atIndex:index_]; }
  void setObject(id object) const { set(&object); }
  template <class Native>
  void setNative(Native value) const {
    set(&value);
  }
  template <class Number>
  void setNumber(Number value) const {
    switch (*[invocation_.methodSignature getArgumentTypeAtIndex:static_cast<NSUInteger>(index_)]) {
      case encodedBool:
      case encodedSignedChar:
        return setNative(static_cast<BOOL>(value != 0));
      case encodedUnsignedInt:
        return setNative(static_cast<std::uint32_t>(value));
      case encodedDouble:
        return setNative(static_cast<double>(value));
      default:
        std::abort();
    }
  }

  NSInvocation* const invocation_;
  const NSInteger index_;
};

/// Keeps its receiver and arguments alive until the current autorelease pool ends, which is
/// therefore to be a small one: a display would stay for as long. Ends the program when the class
/// has no such selector.
NSInvocation* invocationOf(Class itsClass, std::string_view selector, const Arguments& arguments) {
  const SEL name = NSSelectorFromString(nsString(std::string(selector)));
  NSMethodSignature* const signature = [itsClass instanceMethodSignatureForSelector:name];
  if (signature == nil) std::abort();
  NSInvocation* const invocation = [NSInvocation invocationWithMethodSignature:signature];
  [invocation retainArguments];
  invocation.selector = name;
  NSInteger index = 2;  // after the receiver and the selector
  for (const RuntimeValue& each : arguments) {
    std::visit(ArgumentSetter(invocation, index++), each);
  }
  return invocation;
}

template <class Native>
Native returned(NSInvocation* invocation) {
  Native value{};
  [invocation getReturnValue:&value];
  return value;
}

RuntimeValue answerOf(NSInvocation* invocation) {
  switch (*invocation.methodSignature.methodReturnType) {
    case encodedVoid:
      return {};
    case encodedBool:
    case encodedSignedChar:
      return returned<BOOL>(invocation) != 0;
    case encodedUnsignedInt:
      return returned<std::uint32_t>(invocation);
    case encodedDouble:
      return returned<double>(invocation);
    case encodedObject: {
      const id object = (__bridge id)returned<void*>(invocation);
      if (object == nil) return {};
      return std::make_shared<NativeObject>(object);
    }
    default:
      std::abort();
  }
}

RuntimeValue NativeObject::send(std::string_view selector, const Arguments& arguments) {
  @autoreleasepool {
    NSInvocation* const invocation = invocationOf(object_getClass(object_), selector, arguments);
    [invocation invokeWithTarget:object_];
    return answerOf(invocation);
  }
}

/// A list that the runtime hands out to be freed.
template <class Element>
using OwnedList = std::unique_ptr<Element[], decltype(&std::free)>;

class NativeClass final : public RuntimeClass {
 public:
  explicit NativeClass(Class itsClass) : class_(itsClass) {}

  std::vector<RuntimeProperty> properties() const override {
    unsigned int count = 0;
    const OwnedList<objc_property_t> list(class_copyPropertyList(class_, &count), &std::free);
    std::vector<RuntimeProperty> properties;
    for (unsigned int i = 0; i < count; ++i) {
      properties.push_back({property_getName(list[i]), property_getAttributes(list[i])});
    }
    return properties;
  }

  std::vector<std::string> selectors() const override {
    unsigned int count = 0;
    const OwnedList<Method> list(class_copyMethodList(class_, &count), &std::free);
    std::vector<std::string> selectors;
    for (unsigned int i = 0; i < count; ++i) {
      selectors.emplace_back(sel_getName(method_getName(list[i])));
    }
    return selectors;
  }

  std::shared_ptr<RuntimeObject> make(std::string_view initializer,
                                      const Arguments& arguments) override {
    @autoreleasepool {
      NSInvocation* const invocation = invocationOf(class_, initializer, arguments);
      // An initialiser takes over the reference to its receiver and hands one out in its place.
      void* const allocated = (__bridge_retained void*)[class_ alloc];
      [invocation invokeWithTarget:(__bridge id)allocated];
      const id object = (__bridge_transfer id)returned<void*>(invocation);
      return object == nil ? nullptr : std::make_shared<NativeObject>(object);
    }
  }

 private:
  const Class class_;
};

}  // namespace

std::shared_ptr<RuntimeClass> ObjectiveCClasses::classNamed(const std::string& name) {
  // The self-tests run outside any event loop, and so outside any pool.
  @autoreleasepool {
    const Class found = NSClassFromString(nsString(name));
    return found == nil ? nullptr : std::make_shared<NativeClass>(found);
  }
}

}  // namespace vistrel::platform::macos
