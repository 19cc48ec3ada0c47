// Stand-in used only by the Mac shell type-check: the CoreFoundation types,
// macros and functions the shell uses. GNUstep ships no CoreFoundation.
//
// The reference types carry objc_bridge attributes as Apple's do, so
// toll-free casts such as `(__bridge CFStringRef)@"x"` and
// `(__bridge NSURL *)url` compile under ARC, and a cast to the wrong class
// (`(__bridge NSArray *)aString`) is diagnosed (-Wbridge-cast) as on the Mac.
// The functions sit inside an arc_cf_code_audited region as Apple's headers do
// (CF_IMPLICIT_BRIDGING_ENABLED), so ARC applies the same Create/Copy rules.
//
// Nullability: CFPreferences is audited in the SDK; CFBase, CFArray, CFError
// and CFURL functions are not (the documentation shows their Swift parameters
// as implicitly unwrapped `!`), so those are spelled _Null_unspecified here,
// which is what an unannotated pointer means.
#ifndef VANTRO_MACSHELL_COREFOUNDATION_H
#define VANTRO_MACSHELL_COREFOUNDATION_H

#include <stdbool.h>
#include <stdint.h>
#include <MacTypes.h>
#include <os/availability.h>

#define CF_BRIDGED_TYPE(T) __attribute__((objc_bridge(T)))
#define CF_RETURNS_RETAINED __attribute__((cf_returns_retained))
#define CF_CONSUMED __attribute__((cf_consumed))
#define CF_IMPLICIT_BRIDGING_ENABLED _Pragma("clang arc_cf_code_audited begin")
#define CF_IMPLICIT_BRIDGING_DISABLED _Pragma("clang arc_cf_code_audited end")

#ifdef __cplusplus
#define CF_EXTERN_C_BEGIN extern "C" {
#define CF_EXTERN_C_END }
#else
#define CF_EXTERN_C_BEGIN
#define CF_EXTERN_C_END
#endif

// CF_ENUM gives a named enumeration with a fixed underlying type. CF_OPTIONS
// does the same in C, but in C++ it names the plain integer type so that a
// bitwise OR of two options still converts to it, as Apple's macro does.
#define CF_ENUM(type, name) enum name : type name; enum name : type
#ifdef __cplusplus
#define CF_OPTIONS(type, name) type name; enum : type
#else
#define CF_OPTIONS(type, name) enum __attribute__((flag_enum)) name : type name; enum name : type
#endif

// Base types. Checked against developer.apple.com/documentation/corefoundation/cftyperef,
// .../cftypeid (UInt), .../cfallocator, and docs.rs core-foundation-sys base.rs
// (CFIndex = c_long, CFTypeID = c_ulong, CFOptionFlags = c_ulong on 64-bit).
typedef const CF_BRIDGED_TYPE(id) void *CFTypeRef;
typedef unsigned long CFTypeID;
typedef unsigned long CFOptionFlags;
typedef signed long CFIndex;
typedef CFTypeRef CFPropertyListRef;
typedef const struct CF_BRIDGED_TYPE(id) __CFAllocator *CFAllocatorRef;
typedef const struct CF_BRIDGED_TYPE(NSString) __CFString *CFStringRef;
typedef const struct CF_BRIDGED_TYPE(NSData) __CFData *CFDataRef;
typedef const struct CF_BRIDGED_TYPE(NSURL) __CFURL *CFURLRef;
typedef const struct CF_BRIDGED_TYPE(NSArray) __CFArray *CFArrayRef;
typedef const struct CF_BRIDGED_TYPE(NSDictionary) __CFDictionary *CFDictionaryRef;
typedef struct CF_BRIDGED_TYPE(NSError) __CFError *CFErrorRef;
typedef struct CF_BRIDGED_TYPE(id) __CFRunLoop *CFRunLoopRef;
typedef CFStringRef CFRunLoopMode;

// Compile-time constant strings; clang builds the CFString itself.
#define CFSTR(cStr) ((CFStringRef)__builtin___CFStringMakeConstantString("" cStr ""))

// CFURLBookmarkResolutionOptions is CFOptionFlags; the without-UI mask is
// 1 << 8. Checked against developer.apple.com/documentation/corefoundation/cfurlbookmarkresolutionoptions,
// docs.rs apple-cf (CFURLBookmarkResolutionOptions = CFOptionFlags,
// kCFURLBookmarkResolutionWithoutUIMask = 256) and learn.microsoft.com
// NSUrlBookmarkResolutionOptions (WithoutUI = 256).
typedef CF_OPTIONS(CFOptionFlags, CFURLBookmarkResolutionOptions) {
    kCFURLBookmarkResolutionWithoutUIMask = (1UL << 8),
};

CF_IMPLICIT_BRIDGING_ENABLED
CF_EXTERN_C_BEGIN

// Checked against developer.apple.com/documentation/corefoundation/kcfallocatordefault
// (`let kCFAllocatorDefault: CFAllocator!`) and .../cfgettypeid(_:)
// (`CFTypeRef!`); CFRetain and CFRelease are declared like CFGetTypeID, their
// nullability unconfirmed (docs.rs core-foundation-sys base: both take CFTypeRef).
extern const CFAllocatorRef _Null_unspecified kCFAllocatorDefault;
CFTypeID CFGetTypeID(CFTypeRef _Null_unspecified cf);
CFTypeRef _Null_unspecified CFRetain(CFTypeRef _Null_unspecified cf);
void CFRelease(CFTypeRef _Null_unspecified cf);

// CFDataGetTypeID: unconfirmed (its page was not found); declared like every
// documented XGetTypeID function, e.g. .../cfarraygettypeid() `() -> CFTypeID`.
// CFArrayGetCount checked against .../cfarraygetcount(_:) (`CFArray!`).
CFTypeID CFDataGetTypeID(void);
// Checked against developer.apple.com/documentation/corefoundation/cfbooleangettypeid().
CFTypeID CFBooleanGetTypeID(void);
CFIndex CFArrayGetCount(CFArrayRef _Null_unspecified theArray);

// Checked against developer.apple.com/documentation/corefoundation/cferrorcopydescription(_:)
// (`(CFError!) -> CFString!`, never returns NULL, Create rule).
CFStringRef _Null_unspecified CFErrorCopyDescription(CFErrorRef _Null_unspecified err);

// Checked against developer.apple.com/documentation/corefoundation/cfpreferencescopyappvalue(_:_:)
// (`(CFString, CFString) -> CFPropertyList?`).
CFPropertyListRef _Nullable CFPreferencesCopyAppValue(CFStringRef _Nonnull key,
                                                      CFStringRef _Nonnull applicationID);

// Checked against developer.apple.com/documentation/corefoundation/cfurlcreatebyresolvingbookmarkdata(_:_:_:_:_:_:_:)
// (every parameter implicitly unwrapped) and docs.rs core-foundation-sys url.
CFURLRef _Null_unspecified CFURLCreateByResolvingBookmarkData(
    CFAllocatorRef _Null_unspecified allocator, CFDataRef _Null_unspecified bookmark,
    CFURLBookmarkResolutionOptions options, CFURLRef _Null_unspecified relativeToURL,
    CFArrayRef _Null_unspecified resourcePropertiesToInclude, Boolean *_Null_unspecified isStale,
    CFErrorRef _Null_unspecified *_Null_unspecified error);

// Checked against developer.apple.com/documentation/corefoundation/cfrunloopgetmain()
// (`() -> CFRunLoop!`), .../cfrunloopaddcommonmode(_:_:) and docs.rs apple-cf
// and core-foundation-sys runloop (`(CFRunLoopRef, CFRunLoopMode)`; CFRunLoopMode
// is a CFStringRef).
CFRunLoopRef _Null_unspecified CFRunLoopGetMain(void);
void CFRunLoopAddCommonMode(CFRunLoopRef _Null_unspecified rl, CFRunLoopMode _Null_unspecified mode);

CF_EXTERN_C_END
CF_IMPLICIT_BRIDGING_DISABLED

#endif
