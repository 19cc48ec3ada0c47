// Stand-in used only by the Mac shell type-check: the Apple Event data-model
// types. On the Mac, Foundation's NSAppleEventDescriptor.h brings these in
// (its API is written in AEDesc, DescType, AEEventClass and AEEventID), so
// AppleAdditions.h includes this file; <CoreServices/CoreServices.h> and
// <ApplicationServices/ApplicationServices.h> include it too.
//
// AEDesc is packed to 2-byte alignment as in the SDK. The header is not
// nullability-audited in the SDK, so nothing here carries annotations.
// Checked against docs.rs objc2-core-services AEDesc (`#[repr(C, packed(2))]`,
// fields descriptorType: DescType, dataHandle: AEDataStorage),
// developer.apple.com/documentation/foundation/nsappleeventdescriptor/aedesc
// and the Inside Macintosh IAC chapter on descriptor records. typeWildCard is
// '****' (0x2A2A2A2A) in an anonymous enum of AEDataModel.h: unconfirmed
// against an Apple page (none found); the value matches every binding seen.
#ifndef VANTRO_MACSHELL_AEDATAMODEL_H
#define VANTRO_MACSHELL_AEDATAMODEL_H

#include <MacTypes.h>

typedef FourCharCode DescType;
typedef FourCharCode AEKeyword;
typedef FourCharCode AEEventClass;
typedef FourCharCode AEEventID;

typedef struct OpaqueAEDataStorageType *AEDataStorageType;
typedef AEDataStorageType *AEDataStorage;

#pragma pack(push, 2)
struct AEDesc {
    DescType descriptorType;
    AEDataStorage dataHandle;
};
#pragma pack(pop)
typedef struct AEDesc AEDesc;
typedef AEDesc AEAddressDesc;

enum {
    typeWildCard = '****'
};

#endif
