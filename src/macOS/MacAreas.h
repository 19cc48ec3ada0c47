#pragma once

// The makers of the real Mac's seam areas, one per file of the shell.
// MacPlatform.mm puts them together.

#include <memory>

#include "Platform/Platform.h"

namespace vantro::mac {

std::unique_ptr<System> makeSystem();
std::unique_ptr<FileSystem> makeFileSystem();
std::unique_ptr<RunLoop> makeRunLoop();
std::unique_ptr<Defaults> makeDefaults();
std::unique_ptr<Bundles> makeBundles();
std::unique_ptr<Log> makeLog();
std::unique_ptr<AssertionHandler> makeAssertionHandler();
std::unique_ptr<Alerts> makeAlerts();
std::unique_ptr<Workspace> makeWorkspace();
std::unique_ptr<Services> makeServices();
std::unique_ptr<Windows> makeWindows();
std::unique_ptr<AppleEvents> makeAppleEvents();
std::unique_ptr<Dragging> makeDragging();

}  // namespace vantro::mac
