#include <algorithm>
#include <map>
#include <utility>
#include <vector>

#include "tests/macos/fakes/Recorder.h"
#include "tests/macos/fakes/World.h"

// Grand Central Dispatch over virtual time: serial queues, each of which runs one block at a time, on
// the scenario's one thread.

using vistrel::platform::QualityOfService;
using vistrel::platform::simulated::SimulatedQueue;

@interface VLQueue : NSObject <OS_dispatch_queue>
@end

@implementation VLQueue {
 @public
  vistrel::platform::DispatchQueue* _queue;
  std::shared_ptr<vistrel::platform::DispatchQueue> _kept;  // of the queues that were created
  std::map<const void*, void*> _specifics;
}
@end

@interface VLQueueAttributes : NSObject <OS_dispatch_queue_attr>
@end

@implementation VLQueueAttributes {
 @public
  QualityOfService _quality;
}
@end

@interface VLSemaphore : NSObject <OS_dispatch_semaphore>
@end

@implementation VLSemaphore {
 @public
  std::shared_ptr<vistrel::platform::Semaphore> _semaphore;
}
@end
