// Stand-in used only by the Mac shell type-check: the umbrella brings in
// Core Foundation, Core Graphics and Core Services (Apple Events) as Apple's
// does, and declares the accessibility-trust call the shell uses.
#ifndef VANTRO_MACSHELL_APPLICATIONSERVICES_H
#define VANTRO_MACSHELL_APPLICATIONSERVICES_H

#include <CoreFoundation/CoreFoundation.h>
#include <CoreServices/CoreServices.h>
#import <CoreGraphics/CoreGraphics.h>

CF_IMPLICIT_BRIDGING_ENABLED
CF_EXTERN_C_BEGIN
#pragma clang assume_nonnull begin

// Checked against docs.rs objc2-application-services AXIsProcessTrustedWithOptions
// (options: Option<&CFDictionary>, returns Boolean shown as bool) and
// kAXTrustedCheckOptionPrompt (&'static CFString: non-null). The key is not
// const in the SDK: the generated Dart binding on pub.dev (cocoa
// native_binding_bindings_generated) gives it a setter; unconfirmed against an
// Apple page.
Boolean AXIsProcessTrustedWithOptions(CFDictionaryRef _Nullable options);
extern CFStringRef kAXTrustedCheckOptionPrompt;

#pragma clang assume_nonnull end
CF_EXTERN_C_END
CF_IMPLICIT_BRIDGING_DISABLED

#endif
