// The framework's release for its hosts.
//
// Implements: VantroVersionNumber and VantroVersionString, from the core's
// release number.

#import <Vantro/Vantro.h>

#include "Vocabulary/VantroVersion.h"

const double VantroVersionNumber =
    vantro::kVersionMajor + vantro::kVersionMinor / 100.0 + vantro::kVersionPatch / 10000.0;
NSString* const VantroVersionString = @(vantro::kVersionString);
