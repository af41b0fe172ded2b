#pragma once

#import <AppKit/AppKit.h>
#import <CoreGraphics/CoreGraphics.h>
#import <CoreMedia/CoreMedia.h>
#import <objc/runtime.h>

#include <string>
#include <type_traits>
#include <vector>

// What the fakes of the frameworks tell of the messages that they get.

/// What the program itself does not send.
@interface NSObject (VLFake)
- (id)copy;
- (BOOL)respondsToSelector:(SEL)selector;
/// Calls a method that answers nothing.
- (void)perform:(SEL)selector with:(id)argument;
@end

#include "tests/macos/fakes/Objects.h"

namespace vistrel::fake {

/// An object by its class and number ("NSMenu#2"), a string in quotes, "nil".
std::string describe(id object);
std::string describe(CGPoint point);
std::string describe(CGSize size);
std::string describe(const CGRect& rect);
std::string describe(const CMTime& time);
std::string describe(SEL selector);
/// Without zeros that say nothing: "0.5", "3".
std::string describeNumber(double number);

/// A colour by its name.
std::string describe(CGColorRef color);

template <class Value>
std::string describe(Value value) {
  if constexpr (std::is_convertible_v<Value, id>) {
    return describe(static_cast<id>(value));
  } else if constexpr (std::is_enum_v<Value>) {
    return std::to_string(static_cast<std::underlying_type_t<Value>>(value));
  } else if constexpr (std::is_floating_point_v<Value>) {
    return describeNumber(value);
  } else if constexpr (std::is_arithmetic_v<Value>) {
    return std::to_string(value);
  } else {
    static_assert(std::is_pointer_v<Value>);
    return value != nullptr ? "a pointer" : "null";
  }
}

/// The messages so far, in order: "NSPanel#1 setFrame:{{0,0},{3,4}} display:1 animate:0"; on
/// another queue than the main one after its label: "com.example: NSMenu#1 removeAllItems".
const std::vector<std::string>& messages();
void forgetMessages();

void recordText(id receiver, SEL selector, const std::vector<std::string>& arguments);

/// Ends the test when the receiver is for the main thread alone and this is not it.
void checkThread(id receiver, SEL selector);

/// After `checkThread`.
template <class... Arguments>
void record(id receiver, SEL selector, Arguments... arguments) {
  recordText(receiver, selector, {describe(arguments)...});
}

/// What no message tells: a call of a function, a change of the desktop.
void note(const std::string& text);

/// The label of the queue whose block runs; empty on the main thread.
std::string currentQueue();

/// Ends the test, saying why.
[[noreturn]] void fail(const std::string& why);
[[noreturn]] void failWithoutBehaviour(id receiver, SEL selector);

}  // namespace vistrel::fake
