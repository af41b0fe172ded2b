#include "tests/macos/fakes/Recorder.h"

#include <cstdio>
#include <cstdlib>
#include <map>
#include <sstream>

#include "tests/macos/fakes/State.h"
#include "tests/macos/runtime/Classes.h"

extern "C" void* objc_retainAutorelease(void* object);

namespace vistrel::fake {

namespace {

struct Journal {
  std::vector<std::string> messages;
  std::map<const void*, int> numbers;
  std::map<std::string, int> lastNumbers;
  std::map<std::string, long> sharedObjects;
};

Journal& journal() {
  static auto* const journal = new Journal;
  return *journal;
}

const objc::Object* object(id value) {
  return static_cast<const objc::Object*>((__bridge const void*)value);
}

std::string className(id value) { return objc::classOf(object(value))->name; }

int numberOf(id value) {
  int& number = journal().numbers[(__bridge const void*)value];
  if (number == 0) number = ++journal().lastNumbers[className(value)];
  return number;
}

bool isClass(id value) { return objc::classOf(object(value))->isMetaclass(); }

/// Views and windows by the Threading Programming Guide, "Thread Safety Summary"; the rest by the
/// main actor that AppKit's interfaces are marked with.
bool isForMainThreadAlone(id receiver) {
  for (Class type : {[NSResponder class],
                     [NSMenu class],
                     [NSMenuItem class],
                     [NSAlert class],
                     [NSTableColumn class],
                     [NSLayoutConstraint class]}) {
    if ([receiver isKindOfClass:type]) return true;
  }
  return false;
}

std::string messageText(const std::string& selector, const std::vector<std::string>& arguments) {
  if (arguments.empty()) return selector;
  std::string text;
  std::istringstream parts(selector);
  std::string part;
  for (const std::string& argument : arguments) {
    std::getline(parts, part, ':');
    text += (text.empty() ? "" : " ") + part + ":" + argument;
  }
  return text;
}

}  // namespace

std::string describeNumber(double number) {
  std::ostringstream text;
  text << number;
  return text.str();
}

std::string describe(id value) {
  if (value == nil) return "nil";
  if (objc::isBlock(object(value))) return "a block";
  if (isClass(value)) return className(value);
  if ([value isKindOfClass:[NSString class]]) {
    return '"' + std::string(static_cast<NSString*>(value).UTF8String) + '"';
  }
  if ([value isKindOfClass:[NSColor class]]) return static_cast<NSColor*>(value).name.UTF8String;
  return className(value) + '#' + std::to_string(numberOf(value));
}

std::string describe(CGPoint point) {
  return '{' + describeNumber(point.x) + ',' + describeNumber(point.y) + '}';
}

std::string describe(CGSize size) {
  return '{' + describeNumber(size.width) + ',' + describeNumber(size.height) + '}';
}

std::string describe(const CGRect& rect) {
  return '{' + describe(rect.origin) + ',' + describe(rect.size) + '}';
}

std::string describe(const CMTime& time) {
  return std::to_string(time.value) + '/' + std::to_string(time.timescale);
}

std::string describe(CGColorRef color) { return describe((__bridge id)color); }

std::string describe(SEL selector) {
  return selector != nullptr ? sel_getName(selector) : "no selector";
}

const std::vector<std::string>& messages() { return journal().messages; }

void forgetMessages() { journal().messages.clear(); }

void forgetObject(const void* gone) { journal().numbers.erase(gone); }

id makeShared(Class type) {
  ++journal().sharedObjects[describe(type)];
  return [[type alloc] init];
}

id leftToPool(id object) {
  objc_retainAutorelease((__bridge void*)object);
  return object;
}

const std::map<std::string, long>& sharedObjects() { return journal().sharedObjects; }

void checkThread(id receiver, SEL selector) {
  if (NSThread.isMainThread || !isForMainThreadAlone(receiver)) return;
  fail(describe(receiver) + ' ' + sel_getName(selector) + " comes on the queue " + currentQueue());
}

void note(const std::string& text) {
  const std::string queue = currentQueue();
  journal().messages.push_back(queue.empty() ? text : queue + ": " + text);
}

void recordText(id receiver, SEL selector, const std::vector<std::string>& arguments) {
  checkThread(receiver, selector);
  note(describe(receiver) + ' ' + messageText(sel_getName(selector), arguments));
}

void fail(const std::string& why) {
  std::fprintf(stderr, "%s\n", why.c_str());
  std::abort();
}

void failWithoutBehaviour(id receiver, SEL selector) {
  fail(describe(receiver) + ' ' + sel_getName(selector) + " has no behaviour here");
}

}  // namespace vistrel::fake
