// The guide's Objective-C twin: its class operations that talk to the
// system, each forwarded to the core.

#import <Vantro/VantroGuide.h>

#include <string>

#include "Guide/Vantro.h"
#include "macOS/MacFoundation.h"
#include "macOS/MacPlatform.h"
#include "macOS/MacWorkspace.h"

@implementation Vantro

+ (BOOL)openPrivacyPreferencesWithAnchor:(PrivacyCategoryIdentifier)anchor {
    vantro::mac::installHostProcess();
    std::string storage;
    return vantro::Vantro::openPrivacyPreferencesWithAnchor(vantro::mac::toOptionalView(anchor, storage));
}

+ (BOOL)checkPermissionToAutomate:(NSString*)bundleIdentifier
               runningApplication:(NSRunningApplication* _Nullable __autoreleasing* _Nullable)runningApplication {
    vantro::mac::installHostProcess();
    // The core leaves the out-pointer as it found it where the system cannot
    // tell: start from the caller's value so that "untouched" survives.
    vantro::RunningApplicationPtr target = runningApplication ? vantro::mac::runningApplicationFor(*runningApplication) : nullptr;
    BOOL permitted = vantro::Vantro::checkPermissionToAutomate(vantro::mac::toString(bundleIdentifier),
                                                               runningApplication ? &target : nullptr);
    if (runningApplication) *runningApplication = vantro::mac::nsRunningApplication(target);
    return permitted;
}

+ (void)authorizeIfPossible {
    vantro::mac::installHostProcess();
    vantro::Vantro::authorizeIfPossible();
}

@end
