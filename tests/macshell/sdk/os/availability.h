// Stand-in used only by the Mac shell type-check: API_AVAILABLE, which
// records the release an API appeared in. It expands to clang's availability
// attribute as Apple's macro does, so that the check, compiled for an
// x86_64-apple-macosx10.13 target, warns about an unguarded use of a newer
// API exactly as Apple's compiler does (-Wunguarded-availability-new; an
// error with -Werror). Each platform is written `macos(10.15)`; up to three.
// Checked against clang's attribute reference (availability: "introduced=",
// the platform names macos and ios) and developer.apple.com's "Running code
// on a specific platform or OS version" (API_AVAILABLE(macos(10.15)) form).
#ifndef VANTRO_MACSHELL_OS_AVAILABILITY_H
#define VANTRO_MACSHELL_OS_AVAILABILITY_H

#ifndef API_AVAILABLE
#define VANTRO_SDK_AVAILABLE_macos(version) availability(macos, introduced = version)
#define VANTRO_SDK_AVAILABLE_ios(version) availability(ios, introduced = version)
#define VANTRO_SDK_AVAILABLE_ONE(platform) VANTRO_SDK_AVAILABLE_##platform
#define VANTRO_SDK_AVAILABLE_1(a) VANTRO_SDK_AVAILABLE_ONE(a)
#define VANTRO_SDK_AVAILABLE_2(a, b) VANTRO_SDK_AVAILABLE_ONE(a), VANTRO_SDK_AVAILABLE_ONE(b)
#define VANTRO_SDK_AVAILABLE_3(a, b, c) VANTRO_SDK_AVAILABLE_ONE(a), VANTRO_SDK_AVAILABLE_ONE(b), VANTRO_SDK_AVAILABLE_ONE(c)
#define VANTRO_SDK_AVAILABLE_PICK(_1, _2, _3, name, ...) name
#define API_AVAILABLE(...) \
    __attribute__((VANTRO_SDK_AVAILABLE_PICK(__VA_ARGS__, VANTRO_SDK_AVAILABLE_3, VANTRO_SDK_AVAILABLE_2, \
                                             VANTRO_SDK_AVAILABLE_1, )(__VA_ARGS__)))
#endif

#endif
