// Stand-in used only by the Mac shell type-check: the code-signing calls the
// shell uses to check that an application on disk is Apple-signed.
#ifndef VANTRO_MACSHELL_SECURITY_H
#define VANTRO_MACSHELL_SECURITY_H

#include <stdint.h>
#include <MacTypes.h>
#include <CoreFoundation/CoreFoundation.h>

// Static code is a const __SecCode; a requirement is a (mutable) __SecRequirement.
// Both are CF types bridged to id. Checked against docs.rs objc2-security
// (SecStaticCodeCreateWithPath writes a `*const SecStaticCode`,
// SecRequirementCreateWithString a `*mut SecRequirement`; struct.SecStaticCode
// is a CF type).
typedef const struct CF_BRIDGED_TYPE(id) __SecCode *SecStaticCodeRef;
typedef struct CF_BRIDGED_TYPE(id) __SecRequirement *SecRequirementRef;

// SecCSFlags is a uint32_t option set whose default is 0; the two validation
// flags belong to a separate anonymous uint32_t enumeration (Swift shows them
// as `var …: UInt32`). Checked against
// developer.apple.com/documentation/security/seccsflags/kseccsdefaultflags,
// .../security/kseccsdonotvalidateexecutable, .../kseccsdonotvalidateresources
// and docs.rs security-framework-sys code_signing (SecCSFlags = u32,
// 1 << 1 and 1 << 2).
typedef CF_OPTIONS(uint32_t, SecCSFlags) {
    kSecCSDefaultFlags = 0,
};

enum : uint32_t {
    kSecCSDoNotValidateExecutable = 1 << 1,
    kSecCSDoNotValidateResources = 1 << 2,
};

// errSecSuccess is an OSStatus enumerator. Checked against
// developer.apple.com/documentation/security/errsecsuccess (`var errSecSuccess: OSStatus`).
enum : OSStatus {
    errSecSuccess = 0,
};

CF_EXTERN_C_BEGIN
#pragma clang assume_nonnull begin

// Checked against docs.rs objc2-security SecStaticCodeCreateWithPath (path:
// &CFURL, flags: SecCSFlags, static_code: NonNull<*const SecStaticCode>,
// returns i32), docs.rs security-framework-sys code_signing (returns OSStatus)
// and developer.apple.com/documentation/security/secstaticcodecreatewithpathandattributes(_:_:_:_:)
// (its sibling: `UnsafeMutablePointer<SecStaticCode?>`).
OSStatus SecStaticCodeCreateWithPath(CFURLRef path, SecCSFlags flags,
                                     SecStaticCodeRef _Nullable *_Nonnull CF_RETURNS_RETAINED staticCode);

// Checked against developer.apple.com/documentation/security/secrequirementcreatewithstring(_:_:_:)
// (`(CFString, SecCSFlags, UnsafeMutablePointer<SecRequirement?>) -> OSStatus`).
OSStatus SecRequirementCreateWithString(CFStringRef text, SecCSFlags flags,
                                        SecRequirementRef _Nullable *_Nonnull CF_RETURNS_RETAINED requirement);

// Checked against developer.apple.com/documentation/security/secstaticcodecheckvalidity(_:_:_:)
// (`(SecStaticCode, SecCSFlags, SecRequirement?) -> OSStatus`).
OSStatus SecStaticCodeCheckValidity(SecStaticCodeRef staticCode, SecCSFlags flags,
                                    SecRequirementRef _Nullable requirement);

#pragma clang assume_nonnull end
CF_EXTERN_C_END

#endif
