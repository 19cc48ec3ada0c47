// Stand-in used only by the Mac shell type-check: the basic Carbon-era types
// that Apple's <MacTypes.h> defines and that CoreFoundation, Security and the
// Apple Event declarations build on. Sizes are those of the 64-bit SDK, where
// UInt32 and SInt32 are `int`-sized.
// Checked against docs.rs core-foundation-sys base.rs (Boolean = u8,
// OSStatus = i32, SInt32 = c_int), docs.rs objc2-core-services (OSType
// constants are u32) and developer.apple.com/legacy/library/documentation/mac/IAC
// ("noErr 0 No error").
#ifndef VANTRO_MACSHELL_MACTYPES_H
#define VANTRO_MACSHELL_MACTYPES_H

typedef unsigned int UInt32;
typedef signed int SInt32;
typedef unsigned char Boolean;
typedef SInt32 OSStatus;
typedef UInt32 FourCharCode;
// GNUstep's <Foundation/NSFileManager.h> also defines OSType (as uint32_t, the
// same type) behind the OSTYPE_DECLARED guard; defining the guard here keeps a
// single definition whichever header comes first.
#ifndef OSTYPE_DECLARED
typedef FourCharCode OSType;
#define OSTYPE_DECLARED
#endif

enum {
    noErr = 0
};

#endif
