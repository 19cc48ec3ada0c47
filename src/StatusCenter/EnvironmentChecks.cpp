#include <cstdint>
#include <mutex>

#include "Platform/HostProcess.h"
#include "StatusCenter/VantroRequestStatusCenter.h"

namespace vantro {

namespace {

constexpr std::int32_t errSecSuccess = 0;
constexpr std::string_view sandboxRequirement = "entitlement[\"com.apple.security.app-sandbox\"] exists";

struct EnvironmentProcessState {
    std::once_flag sandboxOnce;
    bool isApplicationSandboxed = false;
    std::once_flag homeOnce;
    std::optional<std::string> userHomeDirectory;
};

}  // namespace

bool VantroRequestStatusCenter::isApplicationSandboxed() {
    auto& process = HostProcess::current();
    auto& state = process.value<EnvironmentProcessState>();
    std::call_once(state.sandboxOnce, [&] {
        auto& system = process.platform().system();
        auto code = system.createStaticCodeWithPath(system.mainBundleURL(), kSecCSDefaultFlags);
        auto requirement = system.createRequirementWithString(sandboxRequirement, kSecCSDefaultFlags);
        // Only the signature's entitlements matter, not the integrity of the
        // executable or the resources.
        if (code && requirement) {
            state.isApplicationSandboxed =
                system.checkStaticCodeValidity(*code, kSecCSDoNotValidateExecutable | kSecCSDoNotValidateResources,
                                               *requirement) == errSecSuccess;
        }
    });
    return state.isApplicationSandboxed;
}

std::optional<std::string> VantroRequestStatusCenter::userHomeDirectory() {
    auto& process = HostProcess::current();
    auto& state = process.value<EnvironmentProcessState>();
    std::call_once(state.homeOnce, [&] {
        // Without an entry in the user database there is no home to tell: the
        // answer stays nil for the life of the process rather than falling
        // back to a tilde expansion, which a sandboxed host would get wrong.
        if (auto home = process.platform().system().userDatabaseHomeDirectory())
            state.userHomeDirectory = process.platform().fileSystem().stringByStandardizingPath(*home);
    });
    return state.userHomeDirectory;
}

}  // namespace vantro
