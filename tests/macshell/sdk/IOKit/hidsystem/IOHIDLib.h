// Stand-in used only by the Mac shell type-check: Input Monitoring's access
// check and request (macOS 10.15).
#ifndef VANTRO_MACSHELL_IOHIDLIB_H
#define VANTRO_MACSHELL_IOHIDLIB_H

#include <stdbool.h>
#include <os/availability.h>

#ifdef __cplusplus
extern "C" {
#endif

// Plain C enums: PostEvent 0, ListenEvent 1; Granted 0, Denied 1, Unknown 2.
// Checked against docs.rs objc2-io-kit IOHIDCheckAccess and
// IOHIDRequestAccess (`(IOHIDRequestType) -> IOHIDAccessType` and
// `(IOHIDRequestType) -> bool`; the request blocks until the user answers, per
// the function's documentation there). The enum values are unconfirmed
// against an Apple page.
// All four appeared in macOS 10.15.
typedef enum {
    kIOHIDRequestTypePostEvent,
    kIOHIDRequestTypeListenEvent
} IOHIDRequestType API_AVAILABLE(macos(10.15));

typedef enum {
    kIOHIDAccessTypeGranted,
    kIOHIDAccessTypeDenied,
    kIOHIDAccessTypeUnknown
} IOHIDAccessType API_AVAILABLE(macos(10.15));

IOHIDAccessType IOHIDCheckAccess(IOHIDRequestType requestType) API_AVAILABLE(macos(10.15));
bool IOHIDRequestAccess(IOHIDRequestType requestType) API_AVAILABLE(macos(10.15));

#ifdef __cplusplus
}
#endif

#endif
