#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

#include "StatusCenter/VantroRequestStatusCenter.h"
#include "platform/PlatformUnderTest.h"

namespace vantro::test {
namespace {

// The system log's and the assertion handler's contract: what the framework
// writes and reports arrives exactly as it was given, format directives and
// non-ASCII text included.
class DiagnosticsContract : public ::testing::Test {
protected:
    // The captured lines that are among `expected`, in the order captured: a
    // real system may log lines of its own in between.
    std::vector<std::string> linesAmong(const std::vector<std::string>& expected) {
        std::vector<std::string> out;
        for (const auto& line : put->logLines())
            if (std::find(expected.begin(), expected.end(), line) != expected.end()) out.push_back(line);
        return out;
    }

    std::unique_ptr<PlatformUnderTest> put = makePlatformUnderTest();
};

TEST_F(DiagnosticsContract, TheFrameworksLinesReachTheLogUnchanged) {
    auto center = VantroRequestStatusCenter::sharedRequestStatusCenter();
    EXPECT_EQ(center->privacyAuthorizationStatusForIdentifier("Privacy_Automation"), PrivacyAuthorizationStatusNotDetermined);
    // An identifier is logged as it is, whatever it holds.
    center->privacyAuthorizationStatusForIdentifier("Privacy_%@%d_100%");

    // The photo library daemon's undecodable bookmark is logged on a Mac only
    // when its real preference holds one, so the line is sent directly.
    const std::string photos =
        "Could not decode kRDLibraryKey_Canonical value in com.apple.photolibraryd. Error: Error "
        "Domain=NSCocoaErrorDomain Code=259 \"The file couldn’t be opened because it isn’t in the correct format.\"";
    auto& log = put->platform().log();
    log.log(photos);
    // Any thread may log.
    std::thread([&] { log.log("Logged from another thread …"); }).join();

    const std::vector<std::string> expected = {
        "Privacy category identifier not supported: Privacy_Automation",
        "Privacy category identifier not supported: Privacy_%@%d_100%",
        photos,
        "Logged from another thread …",
    };
    EXPECT_EQ(linesAmong(expected), expected);
}

TEST_F(DiagnosticsContract, AssertionFailuresArriveAsGivenAndAReturningHandlerLetsTheCallerGoOn) {
    const std::string prefix = "Failed to open URL x-apple.systempreferences:com.apple.preference.security?";
    const RecordedAssertionFailure calls[] = {
        {"openPrivacyPreferencesWithAnchor:", "Vantro", "Vantro", 476, prefix + "Privacy_AllFiles"},
        // A description is not a format.
        {"openPrivacyPreferencesWithAnchor:", "Vantro", "Vantro", 476, prefix + "Privacy_%@ 100%"},
        // Each part keeps its own place.
        {"askAccessForPanelIdentifier:", "Vantro", "Vantro.m", 1, "No pane for Privacy_Nothing"},
    };
    auto& handler = put->platform().assertionHandler();
    std::size_t wentOn = 0;
    for (const auto& call : calls) {
        handler.handleFailureInMethod(call.method, call.object, call.file, call.line, call.description);
        ++wentOn;
    }
    EXPECT_EQ(wentOn, std::size(calls));

    auto failures = put->assertionFailures();
    ASSERT_EQ(failures.size(), std::size(calls));
    for (std::size_t i = 0; i < failures.size(); ++i) {
        EXPECT_EQ(failures[i].method, calls[i].method) << i;
        EXPECT_EQ(failures[i].object, calls[i].object) << i;
        EXPECT_EQ(failures[i].file, calls[i].file) << i;
        EXPECT_EQ(failures[i].line, calls[i].line) << i;
        EXPECT_EQ(failures[i].description, calls[i].description) << i;
    }
}

}  // namespace
}  // namespace vantro::test
