// Stand-in used only by the Mac shell type-check: the Core Graphics window
// list and screen-capture permission calls the shell uses, plus the geometry
// types.
#ifndef VANTRO_MACSHELL_COREGRAPHICS_H
#define VANTRO_MACSHELL_COREGRAPHICS_H

#include <stdbool.h>
#include <stdint.h>
#include <CoreFoundation/CoreFoundation.h>
#import <CoreGraphics/CGGeometry.h>

// CGWindowID is uint32_t and kCGNullWindowID is 0; CGWindowListOption is a
// uint32_t option set with on-screen-only 1 << 0 and exclude-desktop 1 << 4.
// Checked against docs.rs objc2-core-graphics CGWindow.rs (CGWindowID = u32,
// kCGNullWindowID = 0), docs.rs core-graphics display constants
// (kCGWindowListOptionOnScreenOnly = 1 << 0, kCGWindowListExcludeDesktopElements
// = 1 << 4) and developer.apple.com/documentation/coregraphics/cgwindowlistoption.
typedef uint32_t CGWindowID;
#define kCGNullWindowID ((CGWindowID)0)

typedef CF_OPTIONS(uint32_t, CGWindowListOption) {
    kCGWindowListOptionOnScreenOnly = (1 << 0),
    kCGWindowListExcludeDesktopElements = (1 << 4),
};

CF_IMPLICIT_BRIDGING_ENABLED
CF_EXTERN_C_BEGIN
#pragma clang assume_nonnull begin

// Window-description keys: `let kCGWindowNumber: CFString` and so on, so
// const and non-null. Checked against developer.apple.com/documentation/coregraphics/kcgwindownumber,
// .../kcgwindowlayer, .../kcgwindowbounds, .../kcgwindowownerpid,
// .../kcgwindowownername and .../required-window-list-keys (kCGWindowAlpha);
// kCGWindowName unconfirmed (its page was not found; declared like its
// siblings).
extern const CFStringRef kCGWindowNumber;
extern const CFStringRef kCGWindowLayer;
extern const CFStringRef kCGWindowBounds;
extern const CFStringRef kCGWindowOwnerPID;
extern const CFStringRef kCGWindowOwnerName;
extern const CFStringRef kCGWindowName;
extern const CFStringRef kCGWindowAlpha;

// Checked against developer.apple.com/documentation/coregraphics/cgwindowlistcreate
// (returns NULL outside a GUI session), .../cgwindowlistcreatedescriptionfromarray(_:)
// (`(CFArray?) -> CFArray?`) and docs.rs objc2-core-graphics
// (CGWindowListCreateDescriptionFromArray returns Option<CFRetained<CFArray>>).
CFArrayRef _Nullable CGWindowListCreate(CGWindowListOption option, CGWindowID relativeToWindow);
CFArrayRef _Nullable CGWindowListCreateDescriptionFromArray(CFArrayRef _Nullable windowArray);

// Both arguments are nullable in the SDK header per docs.rs objc2-core-graphics
// (dict: Option<&CFDictionary>, rect: *mut CGRect); the documentation page
// shows the Swift form without optionals.
bool CGRectMakeWithDictionaryRepresentation(CFDictionaryRef _Nullable dict, CGRect *_Nullable rect);

// Checked against docs.rs objc2-core-graphics CGRequestScreenCaptureAccess
// (`() -> bool`) and docs.rs core-graphics access.rs (both return bool).
// Both appeared in macOS 10.15.
bool CGPreflightScreenCaptureAccess(void) API_AVAILABLE(macos(10.15));
bool CGRequestScreenCaptureAccess(void) API_AVAILABLE(macos(10.15));

#pragma clang assume_nonnull end
CF_EXTERN_C_END
CF_IMPLICIT_BRIDGING_DISABLED

#endif
