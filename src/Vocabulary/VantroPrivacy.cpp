#include "Vocabulary/VantroPrivacy.h"

#include <cmath>

#include "Platform/HostProcess.h"

namespace vantro {

double flooredAppKitVersion() {
    return std::floor(HostProcess::current().platform().system().appKitVersionNumber());
}

}  // namespace vantro
