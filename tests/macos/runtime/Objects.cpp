#include "tests/macos/runtime/Objects.h"

#include <Block.h>
#include <atomic>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <mutex>
#include <new>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "tests/macos/runtime/Classes.h"

// Instances and who refers to them: what clang's "Automatic Reference Counting" (16, "Runtime
// support") asks of a runtime.

extern "C" {
void objc_release(vistrel::objc::Object* object);
}

namespace vistrel::objc {

namespace {

/// Stands in front of every instance.
struct alignas(std::max_align_t) Header {
  std::atomic<long> references = 1;
};

/// The references of an object whose `dealloc` runs, which may take some and give them back.
constexpr long onItsWayOut = std::numeric_limits<long>::min() / 2;

Header& headerOf(Object* object) { return reinterpret_cast<Header*>(object)[-1]; }

/// Everything about objects that more than one thread may ask for.
struct Ledger {
  std::mutex mutex;
  std::unordered_map<Object*, std::unordered_set<Object**>> weakReferences;
  std::unordered_map<Object*, std::map<const void*, Object*>> associations;
  std::map<std::string, long> live;
};

Ledger& ledger() {
  static auto* const ledger = new Ledger;
  return *ledger;
}

void countLive(const Class& type, long change) {
  Ledger& all = ledger();
  const std::lock_guard lock(all.mutex);
  long& count = all.live[type.name];
  count += change;
  if (count == 0) all.live.erase(type.name);
}

bool isCounted(const Object* object) {
  return object != nullptr && !isImmortal(object) && !isBlock(object);
}

void constructIvars(Object* object, const Class* type) {
  if (type == nullptr) return;
  constructIvars(object, type->superclass);
  callOwnMethod(object, *type, ".cxx_construct");
}

void destructIvars(Object* object) {
  for (const Class* type = object->isa; type != nullptr; type = type->superclass) {
    callOwnMethod(object, *type, ".cxx_destruct");
  }
}

void send(Object* object, const char* name) {
  const Selector selector{name, nullptr};
  methodFor(object->isa, &selector).implementation(object, &selector);
}

void forgetWeakReferences(Object* object) {
  Ledger& all = ledger();
  const std::lock_guard lock(all.mutex);
  const auto found = all.weakReferences.find(object);
  if (found == all.weakReferences.end()) return;
  for (Object** reference : found->second) *reference = nullptr;
  all.weakReferences.erase(found);
}

/// With the ledger locked.
void pointWeakly(Ledger& all, Object** reference, Object* object) {
  if (isCounted(*reference)) {
    const auto found = all.weakReferences.find(*reference);
    if (found != all.weakReferences.end()) found->second.erase(reference);
  }
  *reference = object;
  if (isCounted(object)) all.weakReferences[object].insert(reference);
}

/// Null when the last reference has gone and the object is on its way out.
Object* retainedUnlessDying(Object* object) {
  if (!isCounted(object)) return object;
  std::atomic<long>& references = headerOf(object).references;
  long count = references.load();
  while (count > 0 && !references.compare_exchange_weak(count, count + 1)) {
  }
  return count > 0 ? object : nullptr;
}

void releaseAssociations(Object* object) {
  std::map<const void*, Object*> associated;
  {
    const std::lock_guard lock(ledger().mutex);
    const auto found = ledger().associations.extract(object);
    if (!found.empty()) associated = std::move(found.mapped());
  }
  for (const auto& [key, value] : associated) objc_release(value);
}

}  // namespace

std::map<std::string, long> liveObjects() {
  const std::lock_guard lock(ledger().mutex);
  return ledger().live;
}

}  // namespace vistrel::objc

using namespace vistrel::objc;

extern "C" {

Object* class_createInstance(Class* type, std::size_t /*extraBytes*/) {
  const auto size = static_cast<std::size_t>(type->instanceSize);
  void* memory = std::calloc(1, sizeof(Header) + size);
  if (memory == nullptr) throw std::bad_alloc();
  auto* object = reinterpret_cast<Object*>(new (memory) Header + 1);
  object->isa = type;
  countLive(*type, 1);
  constructIvars(object, type);
  return object;
}

Object* object_dispose(Object* object) {
  destructIvars(object);
  releaseAssociations(object);
  countLive(*object->isa, -1);
  std::free(&headerOf(object));
  return nullptr;
}

Object* objc_retain(Object* object) {
  if (object == nullptr) return nullptr;
  if (isBlock(object)) return static_cast<Object*>(_Block_copy(object));
  if (isCounted(object)) ++headerOf(object).references;
  return object;
}

void objc_release(Object* object) {
  if (object == nullptr) return;
  if (isBlock(object)) return _Block_release(object);
  if (!isCounted(object) || --headerOf(object).references != 0) return;
  headerOf(object).references = onItsWayOut;
  forgetWeakReferences(object);
  send(object, "dealloc");
}

Object* objc_retainBlock(Object* block) { return objc_retain(block); }

void objc_storeStrong(Object** place, Object* value) {
  objc_retain(value);
  Object* former = *place;
  *place = value;
  objc_release(former);
}

Object* objc_storeWeak(Object** reference, Object* value) {
  Ledger& all = ledger();
  const std::lock_guard lock(all.mutex);
  pointWeakly(all, reference, value);
  return value;
}

Object* objc_initWeak(Object** reference, Object* value) {
  *reference = nullptr;
  return objc_storeWeak(reference, value);
}

void objc_destroyWeak(Object** reference) { objc_storeWeak(reference, nullptr); }

Object* objc_loadWeakRetained(Object** reference) {
  const std::lock_guard lock(ledger().mutex);
  return retainedUnlessDying(*reference);
}

void objc_copyWeak(Object** to, Object** from) {
  Object* value = objc_loadWeakRetained(from);
  objc_initWeak(to, value);
  objc_release(value);
}

void objc_moveWeak(Object** to, Object** from) {
  objc_copyWeak(to, from);
  objc_destroyWeak(from);
}

/// Retains, which is the one policy that the declarations name.
void objc_setAssociatedObject(Object* object, const void* key, Object* value,
                              unsigned long /*policy*/) {
  objc_retain(value);
  Object* former = nullptr;
  {
    const std::lock_guard lock(ledger().mutex);
    former = std::exchange(ledger().associations[object][key], value);
  }
  objc_release(former);
}

Object* objc_getAssociatedObject(Object* object, const void* key) {
  const std::lock_guard lock(ledger().mutex);
  const auto found = ledger().associations.find(object);
  return found == ledger().associations.end() ? nullptr : found->second[key];
}

void objc_enumerationMutation(Object* /*collection*/) {
  std::fprintf(stderr, "a collection is changed while it is enumerated\n");
  std::abort();
}
}
