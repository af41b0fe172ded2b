#include <cstdio>
#include <cstdlib>
#include <vector>

#include "tests/macos/runtime/Abi.h"

// Pools of objects that are released when the pool ends. Each thread has its own.

using vistrel::objc::Object;

extern "C" {
Object* objc_retain(Object* object);
void objc_release(Object* object);
}

namespace {

struct Pools {
  int depth = 0;
  std::vector<Object*> objects;
};

thread_local Pools pools;

}  // namespace

extern "C" {

void* objc_autoreleasePoolPush() {
  ++pools.depth;
  return reinterpret_cast<void*>(pools.objects.size());
}

void objc_autoreleasePoolPop(void* pool) {
  // An object that goes may put others here.
  while (pools.objects.size() > reinterpret_cast<std::size_t>(pool)) {
    Object* object = pools.objects.back();
    pools.objects.pop_back();
    objc_release(object);
  }
  --pools.depth;
}

Object* objc_autorelease(Object* object) {
  if (object == nullptr) return nullptr;
  if (pools.depth == 0) {
    std::fprintf(stderr, "an object is left to an autorelease pool where there is none: a leak\n");
    std::abort();
  }
  pools.objects.push_back(object);
  return object;
}

Object* objc_retainAutorelease(Object* object) { return objc_autorelease(objc_retain(object)); }
Object* objc_autoreleaseReturnValue(Object* object) { return objc_autorelease(object); }
Object* objc_retainAutoreleaseReturnValue(Object* object) { return objc_retainAutorelease(object); }
Object* objc_retainAutoreleasedReturnValue(Object* object) { return objc_retain(object); }
Object* objc_unsafeClaimAutoreleasedReturnValue(Object* object) { return object; }
}
