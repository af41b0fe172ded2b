#import <dispatch/dispatch.h>

#include <map>
#include <utility>

#include "tests/macos/fakes/Objects.h"
#include "tests/macos/fakes/Recorder.h"
#include "tests/macos/fakes/World.h"

// Grand Central Dispatch over virtual time, on the scenario's one thread: serial queues, each of
// which runs one block at a time. A global queue, which is concurrent, is a serial one here.

using vistrel::platform::DispatchQueue;
using vistrel::platform::QualityOfService;
using vistrel::platform::Semaphore;
using vistrel::platform::simulated::SimulatedQueue;
using namespace vistrel;

@interface VLQueue : NSObject <OS_dispatch_queue> {
 @public
  std::shared_ptr<DispatchQueue> _queue;
  std::map<const void*, void*> _specifics;
}
@end

@implementation VLQueue
@end

@interface VLQueueAttributes : NSObject <OS_dispatch_queue_attr> {
 @public
  qos_class_t _quality;
}
@end

@implementation VLQueueAttributes
@end

@interface VLSemaphore : NSObject <OS_dispatch_semaphore> {
 @public
  std::shared_ptr<Semaphore> _semaphore;
}
@end

@implementation VLSemaphore
@end

namespace {

VLQueue* mainQueue = nil;
VLQueue* globalQueue = nil;
VLQueue* service = nil;
/// Whose block runs; nil outside any block, which is on the main thread.
VLQueue* current = nil;

VLQueue* makeQueue(std::shared_ptr<DispatchQueue> queue) {
  VLQueue* made = [[VLQueue alloc] init];
  made->_queue = std::move(queue);
  return made;
}

VLQueue* makeSerialQueue(const char* label, QualityOfService quality) {
  return makeQueue(fake::world().dispatch().makeSerialQueue(label, quality));
}

/// Of one that lives as long as the world.
std::shared_ptr<DispatchQueue> unowned(DispatchQueue& queue) {
  return {std::shared_ptr<void>(), &queue};
}

double secondsUntil(dispatch_time_t when) { return static_cast<double>(when) / NSEC_PER_SEC; }

}  // namespace

namespace vistrel::fake {

void openQueues() {
  mainQueue = makeQueue(unowned(world().dispatch().mainQueue()));
  globalQueue = makeSerialQueue("global", QualityOfService::standard);
  service = makeSerialQueue("service", QualityOfService::standard);
}

void closeQueues() { mainQueue = globalQueue = service = nil; }

dispatch_queue_t serviceQueue() { return service; }

void runLater(dispatch_queue_t queue, double seconds, dispatch_block_t block) {
  VLQueue* const target = static_cast<VLQueue*>(queue);
  auto run = [target, block] {
    VLQueue* const outer = std::exchange(current, target);
    // Each queue has a pool of its own: Concurrency Programming Guide, "Dispatch Queues".
    @autoreleasepool {
      block();
    }
    current = outer;
  };
  if (target == mainQueue) return world().dispatch().mainAsyncAfter(seconds, std::move(run));
  std::dynamic_pointer_cast<SimulatedQueue>(target->_queue)->asyncAfter(seconds, std::move(run));
}

std::string currentQueue() { return NSThread.isMainThread ? "" : current->_queue->label(); }

}  // namespace vistrel::fake

@implementation NSThread

+ (BOOL)isMainThread {
  return fake::world().dispatch().mainQueue().isCurrent();
}

@end

extern "C" {

dispatch_queue_t dispatch_get_main_queue() { return mainQueue; }

dispatch_queue_t dispatch_get_global_queue(intptr_t identifier, uintptr_t flags) {
  fake::note("dispatch_get_global_queue " + std::to_string(identifier) + ' ' +
             std::to_string(flags));
  return globalQueue;
}

dispatch_queue_attr_t dispatch_queue_attr_make_with_qos_class(dispatch_queue_attr_t /*attributes*/,
                                                              qos_class_t quality,
                                                              int /*relativePriority*/) {
  VLQueueAttributes* made = [[VLQueueAttributes alloc] init];
  made->_quality = quality;
  return made;
}

dispatch_queue_t dispatch_queue_create(const char* label, dispatch_queue_attr_t attributes) {
  const bool isInteractive =
      attributes != nil &&
      static_cast<VLQueueAttributes*>(attributes)->_quality == QOS_CLASS_USER_INTERACTIVE;
  return makeSerialQueue(
      label, isInteractive ? QualityOfService::userInteractive : QualityOfService::standard);
}

void dispatch_queue_set_specific(dispatch_queue_t queue, const void* key, void* context,
                                 dispatch_function_t destructor) {
  if (destructor != nullptr) fake::fail("destructors of a queue's values have no behaviour here");
  static_cast<VLQueue*>(queue)->_specifics[key] = context;
}

void* dispatch_get_specific(const void* key) {
  if (current == nil) return nullptr;
  const auto found = current->_specifics.find(key);
  return found == current->_specifics.end() ? nullptr : found->second;
}

void dispatch_async(dispatch_queue_t queue, dispatch_block_t block) {
  fake::runLater(queue, 0, block);
}

// Times are told from the moment that they are made at, which is when they are used.

dispatch_time_t dispatch_time(dispatch_time_t base, int64_t nanoseconds) {
  if (base != DISPATCH_TIME_NOW) fake::fail("times after others have no behaviour here");
  return nanoseconds > 0 ? static_cast<dispatch_time_t>(nanoseconds) : 0;
}

void dispatch_after(dispatch_time_t when, dispatch_queue_t queue, dispatch_block_t block) {
  fake::runLater(queue, secondsUntil(when), block);
}

dispatch_semaphore_t dispatch_semaphore_create(intptr_t value) {
  VLSemaphore* made = [[VLSemaphore alloc] init];
  made->_semaphore = fake::world().dispatch().makeSemaphore(static_cast<int>(value));
  return made;
}

intptr_t dispatch_semaphore_signal(dispatch_semaphore_t semaphore) {
  static_cast<VLSemaphore*>(semaphore)->_semaphore->signal();
  return 0;
}

intptr_t dispatch_semaphore_wait(dispatch_semaphore_t semaphore, dispatch_time_t timeout) {
  VLQueue* const waiting = std::exchange(current, static_cast<VLQueue*>(nil));
  const bool signalled =
      static_cast<VLSemaphore*>(semaphore)->_semaphore->wait(secondsUntil(timeout));
  current = waiting;
  return signalled ? 0 : 1;
}
}
