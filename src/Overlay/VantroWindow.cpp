#include "Overlay/VantroWindow.h"

#include "Platform/HostProcess.h"

namespace vantro {

namespace {

bool publicInterfacesOnly() { return HostProcess::current().platform().system().usesOnlyPublicInterfaces(); }

}  // namespace

unsigned long vantroWindowStyleMask() {
    return publicInterfacesOnly() ? NSWindowStyleMaskBorderless | NSWindowStyleMaskNonactivatingPanel
                                  : NSWindowStyleMaskBorderless;
}

bool vantroWindowAnswersActivationHook() { return !publicInterfacesOnly(); }

}  // namespace vantro
