#pragma once

#include <memory>

#include "Platform/HostProcess.h"

namespace vantro::mac {

// The real Mac behind the seam: one object per area, each implemented on
// AppKit, Foundation and the system frameworks. Made by the Mac process on
// first use; tests of the seam's contract make one of their own.
std::unique_ptr<Platform> makePlatform();

// Makes the real Mac's HostProcess the default process, so that the first
// call of HostProcess::current() on any thread creates it. Safe to call from
// any thread, any number of times; the first call wins.
void installHostProcess();

}  // namespace vantro::mac
