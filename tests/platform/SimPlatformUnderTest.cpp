#include <unistd.h>

#include <cerrno>

#include "Simulator/SimulatedMac.h"
#include "platform/PlatformUnderTest.h"

namespace vantro::test {

namespace {

// The simulated Mac under the contract suites: a fresh Mac per harness, its
// run loop on virtual time, its disk a temporary folder on the real one.
class SimPlatformUnderTest : public PlatformUnderTest {
public:
    SimPlatformUnderTest() : scratch_(makeScratchFolder(mac_.rootDirectory() + "/private/tmp")) {
        mac_.assertionHandler().setRaises(false);
        firstLogLine_ = mac_.log().lines().size();
        firstFailure_ = mac_.assertionHandler().failures().size();
    }
    ~SimPlatformUnderTest() override { removeScratchFolder(scratch_); }

    Platform& platform() override { return mac_.process().platform(); }

    void runMainLoop(double seconds, std::string_view mode) override {
        if (mode == NSDefaultRunLoopMode) mac_.runFor(seconds);
        else mac_.runLoop().runModeUntil(mode, [] { return false; }, seconds);
    }

    std::string homeDirectory() override { return mac_.homeDirectory(); }
    const std::string& scratchDirectory() const override { return scratch_; }

    bool denyReadingByPermissions(const std::string& path) override {
        if (PlatformUnderTest::denyReadingByPermissions(path)) return true;
        // The super-user the tests may run as passes every permission bit; the
        // simulated Mac's per-path listing failure stands in for them then.
        mac_.fileSystem().setListingError(path, EACCES);
        return true;
    }

    std::optional<std::string> privacyProtectedDirectory() override {
        // The host has no Full Disk Access on a fresh simulated Mac.
        return mac_.homeDirectory() + "/Library/Mail";
    }

    std::vector<std::string> logLines() override {
        const auto& lines = mac_.log().lines();
        return {lines.begin() + static_cast<std::ptrdiff_t>(firstLogLine_), lines.end()};
    }

    std::vector<RecordedAssertionFailure> assertionFailures() override {
        std::vector<RecordedAssertionFailure> out;
        const auto& failures = mac_.assertionHandler().failures();
        for (auto it = failures.begin() + static_cast<std::ptrdiff_t>(firstFailure_); it != failures.end(); ++it)
            out.push_back({it->method, it->object, it->file, it->line, it->description});
        return out;
    }

    void postActivationNotification(const RunningApplicationPtr& application) override {
        mac_.workspace().postActivationNotification(application);
    }

private:
    sim::SimulatedMac mac_;
    std::string scratch_;
    std::size_t firstLogLine_ = 0;
    std::size_t firstFailure_ = 0;
};

}  // namespace

std::unique_ptr<PlatformUnderTest> makePlatformUnderTest() { return std::make_unique<SimPlatformUnderTest>(); }

}  // namespace vantro::test
