#import <Foundation/Foundation.h>

#include <strings.h>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "tests/macos/fakes/Objects.h"
#include "tests/macos/fakes/Recorder.h"
#include "tests/macos/fakes/State.h"
#include "tests/macos/fakes/World.h"
#include "tests/macos/runtime/Classes.h"
#include "tests/macos/runtime/Strings.h"

// The values that messages carry. They do what Foundation documents and are not recorded.

extern "C" {
id class_createInstance(Class type, size_t extraBytes) __attribute__((ns_returns_retained));
void object_dispose(void* object);
Class class_getSuperclass(Class type);
BOOL class_respondsToSelector(Class type, SEL selector);
Class objc_getClass(const char* name);
SEL sel_registerName(const char* name);
}

using namespace vistrel;

@implementation NSObject

+ (instancetype)alloc {
  return class_createInstance(self, 0);
}

+ (Class)class {
  return self;
}

/// Nil when instances have no such method.
+ (NSMethodSignature*)instanceMethodSignatureForSelector:(SEL)selector {
  const auto* const type = static_cast<const objc::Class*>((__bridge const void*)self);
  const objc::Slot* const method = objc::findMethod(type, sel_getName(selector));
  if (method == nullptr) return nil;
  return [[NSMethodSignature alloc] initWithTypes:method->types];
}

- (instancetype)init {
  return self;
}

- (void)dealloc {
  void* const gone = (__bridge void*)self;
  fake::forgetObject(gone);
  object_dispose(gone);
}

- (BOOL)isKindOfClass:(Class)type {
  for (Class each = object_getClass(self); each != nil; each = class_getSuperclass(each)) {
    if (each == type) return YES;
  }
  return NO;
}

- (BOOL)respondsToSelector:(SEL)selector {
  return class_respondsToSelector(object_getClass(self), selector);
}

- (id)copy {
  return self;
}

- (void)perform:(SEL)selector with:(id)argument {
  const objc::Slot& method =
      objc::methodFor(objc::classOf(static_cast<const objc::Object*>((__bridge const void*)self)),
                      reinterpret_cast<const objc::Selector*>(selector));
  reinterpret_cast<void (*)(id, SEL, id)>(method.implementation)(self, selector, argument);
}

@end

/// A string that is no literal.
@interface VLText : NSString {
 @public
  std::string _text;
}
@end

@implementation VLText

- (const char*)UTF8String {
  return _text.c_str();
}

@end

@implementation NSString

+ (instancetype)stringWithUTF8String:(const char*)text {
  VLText* string = [[VLText alloc] init];
  string->_text = text;
  return string;
}

- (const char*)UTF8String {
  fake::failWithoutBehaviour(self, _cmd);
}

- (BOOL)isEqualToString:(NSString*)other {
  return std::strcmp(self.UTF8String, other.UTF8String) == 0;
}

// The language of the scenarios is English in ASCII.
- (NSComparisonResult)localizedCaseInsensitiveCompare:(NSString*)other {
  const int order = strcasecmp(self.UTF8String, other.UTF8String);
  if (order == 0) return NSOrderedSame;
  return order < 0 ? NSOrderedAscending : NSOrderedDescending;
}

@end

@implementation NSConstantString

- (const char*)UTF8String {
  static auto* const texts = new std::map<const void*, std::string>;
  const void* const literal = (__bridge const void*)self;
  const auto [place, isNew] = texts->try_emplace(literal);
  if (isNew) place->second = objc::textOfLiteral(static_cast<const objc::Object*>(literal));
  return place->second.c_str();
}

@end

@implementation NSValue

- (const char*)objCType {
  fake::failWithoutBehaviour(self, _cmd);
}

@end

@implementation NSNumber {
  long long _value;
  const char* _type;
}

+ (NSNumber*)numberWithBool:(BOOL)value {
  NSNumber* number = [[NSNumber alloc] init];
  number->_value = value;
  number->_type = @encode(BOOL);
  return number;
}

+ (NSNumber*)numberWithInteger:(NSInteger)value {
  NSNumber* number = [[NSNumber alloc] init];
  number->_value = value;
  number->_type = @encode(NSInteger);
  return number;
}

- (const char*)objCType {
  return _type;
}

- (double)doubleValue {
  return static_cast<double>(_value);
}

- (long long)longLongValue {
  return _value;
}

@end

namespace {

/// Hands out all objects at once; who enumerates looks whether `changes` changes meanwhile.
NSUInteger enumerate(const std::vector<id>& objects, unsigned long& changes,
                     NSFastEnumerationState& state) {
  if (state.state != 0) return 0;
  state.state = 1;
  state.mutationsPtr = &changes;
  state.itemsPtr = const_cast<id __unsafe_unretained*>(
      reinterpret_cast<const id __unsafe_unretained*>(objects.data()));
  return objects.size();
}

}  // namespace

@interface NSArray () {
 @public
  unsigned long _changes;
  std::vector<id> _objects;
}
@end

@implementation NSArray

+ (instancetype)arrayWithObjects:(const id[])objects count:(NSUInteger)count {
  NSArray* array = [[self alloc] init];
  array->_objects.assign(objects, objects + count);
  return array;
}

- (id)firstObject {
  return _objects.empty() ? nil : _objects.front();
}

- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained[])__unused buffer
                                    count:(NSUInteger)__unused length {
  return enumerate(_objects, _changes, *state);
}

@end

@implementation NSMutableArray

+ (instancetype)array {
  return [[self alloc] init];
}

- (void)addObject:(id)object {
  ++_changes;
  _objects.push_back(object);
}

- (id)copy {
  NSArray* copy = [[NSArray alloc] init];
  copy->_objects = _objects;
  return copy;
}

@end

@implementation NSDictionary {
  std::map<std::string, id> _values;
  std::vector<id> _keys;
}

+ (instancetype)dictionaryWithObjects:(const id[])objects
                              forKeys:(const id<NSCopying>[])keys
                                count:(NSUInteger)count {
  NSDictionary* dictionary = [[self alloc] init];
  for (NSUInteger i = 0; i < count; ++i) {
    dictionary->_keys.push_back(keys[i]);
    dictionary->_values[static_cast<NSString*>(keys[i]).UTF8String] = objects[i];
  }
  return dictionary;
}

- (id)objectForKeyedSubscript:(id)key {
  const auto found = _values.find(static_cast<NSString*>(key).UTF8String);
  return found != _values.end() ? found->second : nil;
}

- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained[])__unused buffer
                                    count:(NSUInteger)__unused length {
  return enumerate(_keys, state->extra[0], *state);
}

@end

namespace {

/// Seconds that the clock of the wall is ahead of the one that counts from the start of the system.
constexpr double startOfSystem = 599'000'000;

double wallClock() { return fake::world().dispatch().now().secondsSinceReference; }

/// Run loops keep their timers until those are invalidated: NSTimer, and its invalidate.
std::vector<NSTimer*>& runningTimers() {
  static auto* const timers = new std::vector<NSTimer*>;
  return *timers;
}

void fireLater(NSTimer* timer) {
  __weak NSTimer* const weak = timer;
  fake::runLater(dispatch_get_main_queue(), timer.delay, ^{
    NSTimer* const due = weak;
    if (due == nil || !due.isValid) return;
    due.block(due);
    if (!due.repeats) [due invalidate];
    if (due.isValid) fireLater(due);
  });
}

}  // namespace

@implementation NSDate

+ (NSTimeInterval)timeIntervalSinceReferenceDate {
  return wallClock();
}

+ (instancetype)dateWithTimeIntervalSinceNow:(NSTimeInterval)seconds {
  NSDate* date = [[self alloc] init];
  date.moment = wallClock() + seconds;
  return fake::leftToPool(date);
}

@end

@implementation NSTimer (VLBehaviour)

+ (NSTimer*)scheduledTimerWithTimeInterval:(NSTimeInterval)interval
                                   repeats:(BOOL)repeats
                                     block:(void (^)(NSTimer*))block {
  fake::record(self, _cmd, interval, repeats, block);
  if (!NSThread.isMainThread) fake::fail("a timer is scheduled on a thread without a run loop");
  NSTimer* timer = [[NSTimer alloc] init];
  timer.delay = interval;
  // Of a timer that does not repeat it is 0: NSTimer, timeInterval.
  timer.timeInterval = repeats ? interval : 0;
  timer.block = block;
  timer.repeats = repeats;
  runningTimers().push_back(timer);
  fireLater(timer);
  return timer;
}

- (BOOL)isValid {
  return self.block != nil;
}

- (void)invalidate {
  fake::record(self, _cmd);
  NSTimer* const kept = self;
  kept.block = nil;
  std::erase(runningTimers(), kept);
}

@end

@implementation NSProcessInfo (VLBehaviour)

- (NSTimeInterval)systemUptime {
  return wallClock() - startOfSystem;
}

- (int)processIdentifier {
  return 4242;
}

@end

@implementation NSURL (VLBehaviour)

+ (instancetype)URLWithString:(NSString*)text {
  NSURL* url = [[self alloc] init];
  url.text = text;
  return url;
}

@end

@implementation NSBundle (VLBehaviour)

- (NSString*)bundlePath {
  return @"/Applications/Vistrel.app";
}

- (id)objectForInfoDictionaryKey:(NSString*)key {
  if (![key isEqualToString:@"CFBundleShortVersionString"]) return nil;
  const auto& version = fake::world().desktop().version;
  if (!version) return [NSNumber numberWithInteger:1];
  return [NSString stringWithUTF8String:version->c_str()];
}

@end

@implementation NSData (VLBehaviour)

+ (instancetype)dataWithBytes:(const void*)bytes length:(NSUInteger)length {
  NSData* data = [[self alloc] init];
  data.text =
      [NSString stringWithUTF8String:std::string(static_cast<const char*>(bytes), length).c_str()];
  return fake::leftToPool(data);
}

@end

@implementation NSFileHandle (VLBehaviour)

- (BOOL)writeData:(NSData*)data error:(NSError**)__unused error {
  fake::note("write " + fake::describe(data.text));
  return YES;
}

@end

@implementation NSTask (VLBehaviour)

- (BOOL)launchAndReturnError:(NSError**)__unused error {
  std::string command = self.launchPath.UTF8String;
  for (NSString* argument in self.arguments) command += std::string(" ") + argument.UTF8String;
  fake::note("launch " + command);
  return fake::world().desktop().launches;
}

@end

extern "C" {

Class NSClassFromString(NSString* name) {
  const auto& classes = fake::world().desktop().virtualDisplays.classes;
  const auto found = classes.find(name.UTF8String);
  return objc_getClass(found != classes.end() ? found->second.c_str() : name.UTF8String);
}

SEL NSSelectorFromString(NSString* name) { return sel_registerName(name.UTF8String); }
}
