#pragma once

#import <AppKit/AppKit.h>

#include "Platform/Workspace.h"

namespace vantro::mac {

// The core's running application for an NSRunningApplication: the same
// object for as long as the process runs. nullptr for nil.
RunningApplicationPtr runningApplicationFor(NSRunningApplication* _Nullable application);
// The NSRunningApplication behind a running application the shell made; nil
// for nullptr.
NSRunningApplication* _Nullable nsRunningApplication(const RunningApplicationPtr& application);

}  // namespace vantro::mac
