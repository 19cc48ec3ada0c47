// Stand-in used only by the Mac shell type-check: the pieces of Core Services'
// Apple Event Manager the shell uses to ask whether it may automate another
// application, and the result codes that call returns.
#ifndef VANTRO_MACSHELL_CORESERVICES_H
#define VANTRO_MACSHELL_CORESERVICES_H

#include <MacTypes.h>
#include <CoreFoundation/CoreFoundation.h>
#include <CoreServices/AEDataModel.h>

#ifdef __cplusplus
extern "C" {
#endif

// macOS 10.14+. The shell looks it up with dlsym and calls it through a
// pointer of this type, so the prototype is what must match.
// Checked against docs.rs objc2-core-services AEDeterminePermissionToAutomateTarget
// (target: *const AEAddressDesc, the_ae_event_class: AEEventClass,
// the_ae_event_id: AEEventID, ask_user_if_needed: Boolean shown as bool,
// returns i32 = OSStatus).
OSStatus AEDeterminePermissionToAutomateTarget(const AEAddressDesc *target, AEEventClass theAEEventClass,
                                               AEEventID theAEEventID, Boolean askUserIfNeeded);

#ifdef __cplusplus
}
#endif

// Result codes, each an anonymous `int` enumerator as in MacErrors.h and
// AppleEvents.h. Checked against docs.rs objc2-core-services
// (errAEEventWouldRequireUserConsent: c_int = -1744); errAEEventNotPermitted
// (-1743) and procNotFound (-600, "application isn't running") unconfirmed
// against an Apple page, values as in every binding and error table seen.
enum {
    errAEEventNotPermitted = -1743,
    errAEEventWouldRequireUserConsent = -1744
};

enum {
    procNotFound = -600
};

#endif
