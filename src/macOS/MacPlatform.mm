// The real Mac behind the seam, and the process the framework runs in there.
//
// Implements: Platform (every area, from the shell's files), the default
// HostProcess made on the first call of HostProcess::current() on any thread.
// Known gaps: none here; each area's file lists its own.

#include "macOS/MacPlatform.h"

#include <dispatch/dispatch.h>

#include "macOS/MacAreas.h"

namespace vantro::mac {

namespace {

class MacPlatform final : public Platform {
public:
    MacPlatform()
        : system_(makeSystem()), fileSystem_(makeFileSystem()), runLoop_(makeRunLoop()), defaults_(makeDefaults()),
          bundles_(makeBundles()), log_(makeLog()), assertionHandler_(makeAssertionHandler()), alerts_(makeAlerts()),
          workspace_(makeWorkspace()), services_(makeServices()), windows_(makeWindows()),
          appleEvents_(makeAppleEvents()), dragging_(makeDragging()) {}

    System& system() override { return *system_; }
    FileSystem& fileSystem() override { return *fileSystem_; }
    RunLoop& runLoop() override { return *runLoop_; }
    Defaults& defaults() override { return *defaults_; }
    Bundles& bundles() override { return *bundles_; }
    Log& log() override { return *log_; }
    AssertionHandler& assertionHandler() override { return *assertionHandler_; }
    Alerts& alerts() override { return *alerts_; }
    Workspace& workspace() override { return *workspace_; }
    Services& services() override { return *services_; }
    Windows& windows() override { return *windows_; }
    AppleEvents& appleEvents() override { return *appleEvents_; }
    Dragging& dragging() override { return *dragging_; }

private:
    std::unique_ptr<System> system_;
    std::unique_ptr<FileSystem> fileSystem_;
    std::unique_ptr<RunLoop> runLoop_;
    std::unique_ptr<Defaults> defaults_;
    std::unique_ptr<Bundles> bundles_;
    std::unique_ptr<Log> log_;
    std::unique_ptr<AssertionHandler> assertionHandler_;
    std::unique_ptr<Alerts> alerts_;
    std::unique_ptr<Workspace> workspace_;
    std::unique_ptr<Services> services_;
    std::unique_ptr<Windows> windows_;
    std::unique_ptr<AppleEvents> appleEvents_;
    std::unique_ptr<Dragging> dragging_;
};

}  // namespace

std::unique_ptr<Platform> makePlatform() { return std::make_unique<MacPlatform>(); }

void installHostProcess() {
    // Only the maker is set here; the process itself is made by the first
    // call that needs it, under HostProcess's own guard, on whatever thread.
    static dispatch_once_t once;
    dispatch_once(&once, ^{
        HostProcess::setDefaultFactory([] { return std::make_unique<HostProcess>(makePlatform()); });
    });
}

}  // namespace vantro::mac
