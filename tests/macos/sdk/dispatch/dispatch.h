#pragma once

#import <Foundation/Foundation.h>

#define NSEC_PER_SEC 1000000000ull
#define DISPATCH_TIME_NOW (0ull)
#define DISPATCH_QUEUE_SERIAL nullptr

typedef unsigned int qos_class_t;
enum : qos_class_t { QOS_CLASS_USER_INTERACTIVE = 0x21, QOS_CLASS_DEFAULT = 0x15 };

@protocol OS_dispatch_queue <NSObject>
@end
@protocol OS_dispatch_queue_attr <NSObject>
@end
@protocol OS_dispatch_semaphore <NSObject>
@end

typedef NSObject<OS_dispatch_queue>* dispatch_queue_t;
typedef NSObject<OS_dispatch_queue_attr>* dispatch_queue_attr_t;
typedef NSObject<OS_dispatch_semaphore>* dispatch_semaphore_t;
typedef uint64_t dispatch_time_t;
typedef void (^dispatch_block_t)(void);
typedef void (*dispatch_function_t)(void* _Nullable);

extern "C" {
dispatch_queue_t _Nonnull dispatch_get_main_queue(void);
dispatch_queue_t _Nonnull dispatch_get_global_queue(intptr_t identifier, uintptr_t flags);
dispatch_queue_attr_t _Nullable dispatch_queue_attr_make_with_qos_class(
    dispatch_queue_attr_t _Nullable attributes, qos_class_t quality, int relativePriority);
dispatch_queue_t _Nonnull dispatch_queue_create(const char* _Nullable label,
                                                dispatch_queue_attr_t _Nullable attributes);
void dispatch_queue_set_specific(dispatch_queue_t _Nonnull queue, const void* _Nonnull key,
                                 void* _Nullable context, dispatch_function_t _Nullable destructor);
void* _Nullable dispatch_get_specific(const void* _Nonnull key);
void dispatch_async(dispatch_queue_t _Nonnull queue, dispatch_block_t _Nonnull block);
void dispatch_after(dispatch_time_t when, dispatch_queue_t _Nonnull queue,
                    dispatch_block_t _Nonnull block);
dispatch_time_t dispatch_time(dispatch_time_t base, int64_t nanoseconds);
dispatch_semaphore_t _Nonnull dispatch_semaphore_create(intptr_t value);
intptr_t dispatch_semaphore_signal(dispatch_semaphore_t _Nonnull semaphore);
intptr_t dispatch_semaphore_wait(dispatch_semaphore_t _Nonnull semaphore, dispatch_time_t timeout);
}
