#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Platform/Platform.h"

namespace vantro::test {

// An assertion failure as the installed handler received it.
struct RecordedAssertionFailure {
    std::string method;
    std::string object;
    std::string file;
    long line = 0;
    std::string description;
};

// A file of a bundle made for a test: its path inside the bundle's resources
// folder ("de.lproj/InfoPlist.strings") and its bytes.
struct BundleFile {
    std::string relativePath;
    std::string contents;
};

// One implementation of the platform seam, set up for the contract suites.
// Each implementation of the seam has one (the simulated Mac on Linux, the
// real Mac shell on a Mac); makePlatformUnderTest() makes the one this test
// binary was built with. The contract suites use only this interface and the
// seam headers, so the same sources run against every implementation.
//
// Made on the main thread, it is the current HostProcess for its life: the
// framework's shared instances made while it lives belong to it alone. It
// installs an assertion handler that records each failure and returns, and
// starts recording the system log.
class PlatformUnderTest {
public:
    PlatformUnderTest() = default;
    PlatformUnderTest(const PlatformUnderTest&) = delete;
    PlatformUnderTest& operator=(const PlatformUnderTest&) = delete;
    virtual ~PlatformUnderTest();

    virtual Platform& platform() = 0;

    // Runs the main run loop in `mode` for `seconds`: virtual seconds on the
    // simulated Mac, real ones on a Mac. Keep them short (a twentieth of a
    // second): a contract states what has run, never how long it took.
    virtual void runMainLoop(double seconds, std::string_view mode = NSDefaultRunLoopMode) = 0;

    // The folder "~" stands for.
    virtual std::string homeDirectory() = 0;
    // An empty folder of this harness's own, on the disk the platform's file
    // manager and bundles see; removed, whatever it holds, with the harness.
    virtual const std::string& scratchDirectory() const = 0;

    // Makes `path` unreadable by its permission bits, so that listing it fails
    // with EACCES. False when that cannot be arranged here.
    virtual bool denyReadingByPermissions(const std::string& path);
    // A directory that the system's privacy protection keeps this process out
    // of, so that listing it fails with EPERM; nullopt when there is none (a
    // process that has Full Disk Access).
    virtual std::optional<std::string> privacyProtectedDirectory() = 0;

    // The lines written to the system log since the harness was made, in
    // order, as the log received them (without a timestamp or process prefix).
    virtual std::vector<std::string> logLines() = 0;
    // The assertion failures received since the harness was made, in order.
    virtual std::vector<RecordedAssertionFailure> assertionFailures() = 0;

    // Posts NSWorkspaceDidActivateApplicationNotification on the shared
    // workspace's notification center, as the system does when an application
    // becomes active, carrying `application` under NSWorkspaceApplicationKey
    // (no such key when it is nullptr). The registrations receive it before
    // this returns, as with any notification posted on the main thread.
    virtual void postActivationNotification(const RunningApplicationPtr& application) = 0;

    // Writes a bundle named `name`.bundle into the scratch folder: a
    // Contents/Info.plist (development region "en") and, under
    // Contents/Resources, the given files. Returns the bundle's path.
    std::string makeBundle(std::string_view name, const std::vector<BundleFile>& files);

    // Runs the main run loop in steps of `step` seconds until `done` answers
    // true or `limit` seconds have been run. Returns whether `done` was met.
    bool runMainLoopUntil(const std::function<bool()>& done, double limit = 2.0,
                          std::string_view mode = NSDefaultRunLoopMode, double step = 0.05);

protected:
    // Makes a fresh folder inside `parent` for scratchDirectory().
    static std::string makeScratchFolder(const std::string& parent);
    // Gives back every permission a test took away below `path`, then removes it.
    static void removeScratchFolder(const std::string& path);
};

std::unique_ptr<PlatformUnderTest> makePlatformUnderTest();

}  // namespace vantro::test
