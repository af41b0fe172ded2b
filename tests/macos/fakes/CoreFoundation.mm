#import <CoreFoundation/CoreFoundation.h>

#import <Foundation/Foundation.h>
#import <objc/runtime.h>

#include "tests/macos/fakes/World.h"

// Objects of Core Foundation, and those that follow its rules, are objects of classes here.

extern "C" {

void* objc_retain(const void* object);
void objc_release(const void* object);

CFTypeRef CFRetain(CFTypeRef object) { return objc_retain(object); }
void CFRelease(CFTypeRef object) { objc_release(object); }

CFTypeID CFGetTypeID(CFTypeRef object) {
  id const value = (__bridge id)object;
  if ([value isKindOfClass:[NSArray class]]) return CFArrayGetTypeID();
  return reinterpret_cast<CFTypeID>((__bridge void*)object_getClass(value));
}

CFTypeID CFArrayGetTypeID() { return reinterpret_cast<CFTypeID>((__bridge void*)[NSArray class]); }

CFDictionaryRef CGSessionCopyCurrentDictionary() {
  if (!vistrel::fake::world().desktop().hasWindowServer) return nullptr;
  return (__bridge_retained CFDictionaryRef) @{};
}
}
