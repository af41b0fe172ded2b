#import <Foundation/Foundation.h>

#include <array>
#include <cctype>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "tests/macos/fakes/Recorder.h"
#include "tests/macos/fakes/State.h"
#include "tests/macos/runtime/Classes.h"

// Messages made at run time: NSMethodSignature and NSInvocation, for methods with up to four whole
// numbers or objects and up to four real numbers, which a structure of such counts for each.

using namespace vistrel;

namespace {

/// Behind what stands in brackets from `text` on.
const char* behindBrackets(const char* text, char open, char close) {
  int depth = 0;
  do {
    if (*text == open) ++depth;
    if (*text == close) --depth;
    ++text;
  } while (depth > 0);
  return text;
}

/// Behind the type that stands at `text`: Objective-C Runtime Programming Guide, "Type Encodings",
/// and what clang writes after an "@": the class, or what a block takes.
const char* behindType(const char* text) {
  while (std::strchr("rnNoORVA^", *text) != nullptr) ++text;
  if (*text == '{') return behindBrackets(text, '{', '}');
  if (*text++ != '@') return text;
  if (*text == '"') return std::strchr(text + 1, '"') + 1;
  if (*text == '?') ++text;
  return *text == '<' ? behindBrackets(text, '<', '>') : text;
}

std::vector<std::string> typesIn(const char* text) {
  std::vector<std::string> types;
  while (*text != '\0') {
    const char* const end = behindType(text);
    types.emplace_back(text, end);
    for (text = end; std::isdigit(static_cast<unsigned char>(*text)) != 0; ++text) {
    }
  }
  return types;
}

constexpr const char* sizeType = "{CGSize=dd}";

std::size_t widthOf(const std::string& type) {
  if (type == sizeType) return sizeof(CGSize);
  switch (type[0]) {
    case 'v':
      return 0;
    case 'B':
    case 'c':
      return 1;
    case 'I':
    case 'i':
      return 4;
    case '@':
    case 'd':
    case 'Q':
    case 'q':
      return 8;
    default:
      fake::fail("the type " + type + " has no behaviour here");
  }
}

/// Objects among them are held by nobody.
using Bytes = std::array<unsigned char, sizeof(CGSize)>;

template <class Value>
Value read(const Bytes& bytes, std::size_t offset = 0) {
  Value value;
  std::memcpy(&value, bytes.data() + offset, sizeof(value));
  return value;
}

/// What a call has in registers, by System V's ABI for x86-64 and by AArch64's.
struct Registers {
  std::vector<std::uint64_t> whole;
  std::vector<double> real;

  void add(const std::string& type, const Bytes& bytes) {
    if (type == sizeType) {
      real.push_back(read<double>(bytes));
      real.push_back(read<double>(bytes, sizeof(double)));
    } else if (type == "d") {
      real.push_back(read<double>(bytes));
    } else {
      whole.push_back(read<std::uint64_t>(bytes));
    }
  }

  template <class Result>
  Result call(objc::Implementation method, id target, SEL selector) {
    using Function = Result (*)(id, SEL, std::uint64_t, std::uint64_t, std::uint64_t, std::uint64_t,
                                double, double, double, double);
    if (whole.size() > 4 || real.size() > 4)
      fake::fail("too many arguments have no behaviour here");
    whole.resize(4);
    real.resize(4);
    return reinterpret_cast<Function>(method)(target, selector, whole[0], whole[1], whole[2],
                                              whole[3], real[0], real[1], real[2], real[3]);
  }
};

}  // namespace

@implementation NSMethodSignature {
  std::vector<std::string> _types;
}

- (instancetype)initWithTypes:(const char*)types {
  self = [super init];
  _types = typesIn(types);
  return self;
}

- (NSUInteger)numberOfArguments {
  return _types.size() - 1;
}

- (const char*)getArgumentTypeAtIndex:(NSUInteger)index {
  // Raises: NSMethodSignature, getArgumentTypeAtIndex:.
  if (index >= self.numberOfArguments) fake::fail("a method has no such argument");
  return _types[index + 1].c_str();
}

- (const char*)methodReturnType {
  return _types[0].c_str();
}

@end

@implementation NSInvocation {
  NSMethodSignature* _signature;
  std::vector<Bytes> _arguments;
  Bytes _returned;
  BOOL _retainsArguments;
  std::vector<id> _retained;
}

@synthesize selector = _selector;

+ (NSInvocation*)invocationWithMethodSignature:(NSMethodSignature*)signature {
  NSInvocation* invocation = [[self alloc] init];
  invocation->_signature = signature;
  return fake::leftToPool(invocation);
}

- (NSMethodSignature*)methodSignature {
  return _signature;
}

- (void)retainArguments {
  _retainsArguments = YES;
}

- (void)keep:(const void*)object {
  if (_retainsArguments) _retained.push_back((__bridge id)object);
}

- (void)setArgument:(void*)argument atIndex:(NSInteger)index {
  const char* const type = [_signature getArgumentTypeAtIndex:static_cast<NSUInteger>(index)];
  if (index != static_cast<NSInteger>(_arguments.size()) + 2) {
    fake::fail("arguments that are not set in their order have no behaviour here");
  }
  Bytes bytes{};
  std::memcpy(bytes.data(), argument, widthOf(type));
  _arguments.push_back(bytes);
  if (*type == '@') [self keep:read<void*>(bytes)];
}

- (void)invokeWithTarget:(id)target {
  if (_arguments.size() + 2 != _signature.numberOfArguments) {
    fake::fail("a message is sent without some of its arguments");
  }
  [self keep:(__bridge void*)target];
  Registers registers;
  for (std::size_t i = 0; i < _arguments.size(); ++i) {
    registers.add([_signature getArgumentTypeAtIndex:i + 2], _arguments[i]);
  }
  const objc::Implementation method =
      objc::methodFor(objc::classOf(static_cast<const objc::Object*>((__bridge void*)target)),
                      reinterpret_cast<const objc::Selector*>(_selector))
          .implementation;
  if (*_signature.methodReturnType == 'd') {
    const double number = registers.call<double>(method, target, _selector);
    std::memcpy(_returned.data(), &number, sizeof(number));
  } else {
    const auto word = registers.call<std::uint64_t>(method, target, _selector);
    std::memcpy(_returned.data(), &word, sizeof(word));
  }
  if (*_signature.methodReturnType == '@') [self keep:read<void*>(_returned)];
}

- (void)getReturnValue:(void*)result {
  std::memcpy(result, _returned.data(), widthOf(_signature.methodReturnType));
}

@end
