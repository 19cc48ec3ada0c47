#pragma once

#include "Platform/Alerts.h"
#include "Platform/AppleEvents.h"
#include "Platform/Bundles.h"
#include "Platform/Defaults.h"
#include "Platform/Diagnostics.h"
#include "Platform/Dragging.h"
#include "Platform/FileSystem.h"
#include "Platform/RunLoop.h"
#include "Platform/Services.h"
#include "Platform/System.h"
#include "Platform/Windows.h"
#include "Platform/Workspace.h"

namespace vantro {

// The seam: every platform area the framework uses. An implementation (the
// real Mac, or a simulated one) provides each area for the life of the
// process that owns it.
class Platform {
public:
    Platform() = default;
    Platform(const Platform&) = delete;
    Platform& operator=(const Platform&) = delete;
    virtual ~Platform() = default;

    virtual System& system() = 0;
    virtual FileSystem& fileSystem() = 0;
    virtual RunLoop& runLoop() = 0;
    virtual Defaults& defaults() = 0;
    virtual Bundles& bundles() = 0;
    virtual Log& log() = 0;
    virtual AssertionHandler& assertionHandler() = 0;
    virtual Alerts& alerts() = 0;
    virtual Workspace& workspace() = 0;
    virtual Services& services() = 0;
    virtual Windows& windows() = 0;
    virtual AppleEvents& appleEvents() = 0;
    virtual Dragging& dragging() = 0;
};

}  // namespace vantro
