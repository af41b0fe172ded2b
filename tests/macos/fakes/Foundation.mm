#import <Foundation/Foundation.h>

#include <cstring>
#include <map>
#include <string>
#include <strings.h>
#include <vector>

#include "tests/macos/fakes/Objects.h"
#include "tests/macos/fakes/Recorder.h"
#include "tests/macos/runtime/Classes.h"
#include "tests/macos/runtime/Strings.h"

// The values that messages carry. They do what Foundation documents and are not recorded.

extern "C" {
id class_createInstance(Class type, size_t extraBytes) __attribute__((ns_returns_retained));
void object_dispose(void* object);
Class class_getSuperclass(Class type);
BOOL class_respondsToSelector(Class type, SEL selector);
}

using namespace vistrel;

@implementation NSObject

+ (instancetype)alloc {
  return class_createInstance(self, 0);
}

+ (Class)class {
  return self;
}

+ (NSMethodSignature*)instanceMethodSignatureForSelector:(SEL)selector {
  fake::failWithoutBehaviour(self, selector);
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

@interface NSArray () {
 @public
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
  if (state->state != 0) return 0;
  state->state = 1;
  state->mutationsPtr = &state->extra[0];
  state->itemsPtr = (id __unsafe_unretained*)(void*)_objects.data();
  return _objects.size();
}

@end

@implementation NSMutableArray

+ (instancetype)array {
  return [[self alloc] init];
}

- (void)addObject:(id)object {
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
    dictionary->_values[((NSString*)keys[i]).UTF8String] = objects[i];
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
  if (state->state != 0) return 0;
  state->state = 1;
  state->mutationsPtr = &state->extra[0];
  state->itemsPtr = (id __unsafe_unretained*)(void*)_keys.data();
  return _keys.size();
}

@end
