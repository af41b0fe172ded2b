#include <cstdio>
#include <cstdlib>
#include <utility>
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
  /// For each pool, how many objects were in those around it.
  std::vector<std::size_t> starts;
  std::vector<Object*> objects;
  /// What a method has just returned, for its caller to take over.
  Object* returned = nullptr;
};

thread_local Pools pools;

void leaveToPool(Object* object) {
  if (pools.starts.empty()) {
    std::fprintf(stderr, "an object is left to an autorelease pool where there is none: a leak\n");
    std::abort();
  }
  pools.objects.push_back(object);
}

/// The caller has gone on to something else.
void leaveReturnedToPool() {
  if (pools.returned != nullptr) leaveToPool(std::exchange(pools.returned, nullptr));
}

}  // namespace

extern "C" {

void* objc_autoreleasePoolPush() {
  leaveReturnedToPool();
  pools.starts.push_back(pools.objects.size());
  return reinterpret_cast<void*>(pools.starts.size());
}

/// Of pools within, too: a C++ exception passes them over.
void objc_autoreleasePoolPop(void* pool) {
  leaveReturnedToPool();
  const std::size_t depth = reinterpret_cast<std::size_t>(pool) - 1;
  // An object that goes may put others here.
  while (pools.objects.size() > pools.starts[depth]) {
    Object* object = pools.objects.back();
    pools.objects.pop_back();
    objc_release(object);
    leaveReturnedToPool();
  }
  pools.starts.resize(depth);
}

Object* objc_autorelease(Object* object) {
  leaveReturnedToPool();
  if (object != nullptr) leaveToPool(object);
  return object;
}

Object* objc_retainAutorelease(Object* object) { return objc_autorelease(objc_retain(object)); }

// A caller that takes a result over at once keeps it from the pool: clang's "Automatic Reference
// Counting", "objc_retainAutoreleasedReturnValue".

Object* objc_autoreleaseReturnValue(Object* object) {
  leaveReturnedToPool();
  return pools.returned = object;
}

Object* objc_retainAutoreleaseReturnValue(Object* object) {
  return objc_autoreleaseReturnValue(objc_retain(object));
}

Object* objc_retainAutoreleasedReturnValue(Object* object) {
  if (object == nullptr || pools.returned != object) return objc_retain(object);
  return std::exchange(pools.returned, nullptr);
}

Object* objc_unsafeClaimAutoreleasedReturnValue(Object* object) {
  if (object == nullptr || pools.returned != object) return object;
  objc_release(std::exchange(pools.returned, nullptr));
  return object;
}
}
