#include <gtest/gtest.h>

#include "Simulator/SimulatedMac.h"
#include "StatusCenter/VantroRequestStatusCenter.h"

namespace vantro {
namespace {

using S = VantroRequestStatusCenter;

TEST(EnvironmentChecks, TheSandboxIsReadFromTheSignatureOnce) {
    struct Case { const char* name; sim::MacConfiguration configuration; bool sandboxed; int checks; } cases[] = {
        {"not sandboxed", {}, false, 1},
        {"sandboxed", {.sandboxed = true}, true, 1},
        {"no static code", {.sandboxed = true, .staticCodeCreationFails = true}, false, 0},
        {"no requirement", {.sandboxed = true, .requirementCreationFails = true}, false, 0},
        // Only the entitlements count: a build changed after signing is
        // still the sandboxed host it was signed as.
        {"executable changed", {.sandboxed = true, .executableChangedAfterSigning = true}, true, 1},
        {"resources changed", {.sandboxed = true, .resourcesChangedAfterSigning = true}, true, 1},
    };
    for (const auto& c : cases) {
        sim::SimulatedMac mac(c.configuration);
        EXPECT_EQ(S::isApplicationSandboxed(), c.sandboxed) << c.name;
        EXPECT_EQ(S::isApplicationSandboxed(), c.sandboxed) << c.name;
        EXPECT_EQ(mac.system().validityChecks(), c.checks) << c.name;
    }
}

TEST(EnvironmentChecks, TheHomeDirectoryComesFromTheUserDatabase) {
    {
        sim::SimulatedMac mac;
        EXPECT_EQ(S::userHomeDirectory(), mac.homeDirectory());
    }
    sim::SimulatedMac mac(sim::MacConfiguration{.userDatabaseHasEntry = false});
    EXPECT_EQ(S::userHomeDirectory(), std::nullopt);
}

}  // namespace
}  // namespace vantro
