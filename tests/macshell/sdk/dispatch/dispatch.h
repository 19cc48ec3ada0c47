// Stand-in used only by the Mac shell type-check: the libdispatch calls and
// types the shell uses.
//
// Under ARC on the Mac, dispatch objects are Objective-C objects: each type is
// `NSObject<OS_dispatch_…> *`, a protocol-qualified NSObject pointer whose
// protocols mirror the queue hierarchy (the main queue is a serial queue is a
// queue). Modelling them the same way lets `dispatch_queue_t q =
// dispatch_get_main_queue();` compile, keeps blocks capturing them under ARC,
// and rejects passing a semaphore where a queue is wanted.
//
// Checked against developer.apple.com/documentation/dispatch (dispatch_after,
// dispatch_time, dispatch_get_global_queue, dispatch_get_main_queue,
// dispatch_queue_main_t, dispatch_once_t, dispatch_time_t,
// dispatch_semaphore_wait, dispatch_semaphore_signal,
// dispatch_queue_priority_t, DISPATCH_QUEUE_PRIORITY_DEFAULT),
// opensource.apple.com libdispatch once.h (dispatch_once's block is noescape),
// docs.rs apple-cf (dispatch_semaphore_create(value: isize)) and
// swift-corelibs-libdispatch's time.h and queue.h for the macro values and for
// which functions warn on an unused result (dispatch_time,
// dispatch_get_global_queue). The SDK defines dispatch_get_main_queue as an
// inline function reading a global; an extern declaration has the same type.
#ifndef VANTRO_MACSHELL_DISPATCH_H
#define VANTRO_MACSHELL_DISPATCH_H

#include <stdint.h>
#import <Foundation/NSObject.h>

#define DISPATCH_TIME_NOW (0ull)
#define DISPATCH_TIME_FOREVER (~0ull)
#define NSEC_PER_SEC 1000000000ull
#define DISPATCH_QUEUE_PRIORITY_DEFAULT 0

#define VANTRO_DISPATCH_DECL_PROTOCOL(name, super) \
    @protocol OS_##name <OS_##super> \
    @end

@protocol OS_dispatch_object <NSObject>
@end
VANTRO_DISPATCH_DECL_PROTOCOL(dispatch_queue, dispatch_object)
VANTRO_DISPATCH_DECL_PROTOCOL(dispatch_queue_global, dispatch_queue)
VANTRO_DISPATCH_DECL_PROTOCOL(dispatch_queue_serial, dispatch_queue)
VANTRO_DISPATCH_DECL_PROTOCOL(dispatch_queue_main, dispatch_queue_serial)
VANTRO_DISPATCH_DECL_PROTOCOL(dispatch_semaphore, dispatch_object)

#pragma clang assume_nonnull begin

typedef NSObject<OS_dispatch_queue> *dispatch_queue_t;
typedef NSObject<OS_dispatch_queue_global> *dispatch_queue_global_t;
typedef NSObject<OS_dispatch_queue_main> *dispatch_queue_main_t;
typedef NSObject<OS_dispatch_semaphore> *dispatch_semaphore_t;

typedef void (^dispatch_block_t)(void);
typedef intptr_t dispatch_once_t;
typedef uint64_t dispatch_time_t;
typedef long dispatch_queue_priority_t;

#ifdef __cplusplus
extern "C" {
#endif

void dispatch_once(dispatch_once_t *predicate, __attribute__((noescape)) dispatch_block_t block);

void dispatch_async(dispatch_queue_t queue, dispatch_block_t block);
void dispatch_after(dispatch_time_t when, dispatch_queue_t queue, dispatch_block_t block);

__attribute__((warn_unused_result)) dispatch_time_t dispatch_time(dispatch_time_t when, int64_t delta);

dispatch_queue_main_t dispatch_get_main_queue(void);
__attribute__((warn_unused_result)) dispatch_queue_global_t dispatch_get_global_queue(intptr_t identifier,
                                                                                      uintptr_t flags);

dispatch_semaphore_t dispatch_semaphore_create(intptr_t value);
intptr_t dispatch_semaphore_wait(dispatch_semaphore_t dsema, dispatch_time_t timeout);
intptr_t dispatch_semaphore_signal(dispatch_semaphore_t dsema);

#ifdef __cplusplus
}
#endif

#pragma clang assume_nonnull end

#undef VANTRO_DISPATCH_DECL_PROTOCOL

#endif
