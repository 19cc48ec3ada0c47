// Identifiers of any bytes through the status center's three operations, the
// guide and the permission list, on a simulated Mac of a chosen release,
// sandbox and language. Each answer stays within its documented values; the
// only assertion allowed is the guide's for an anchor that makes no URL.
#include <cstddef>
#include <cstdint>
#include <string>

#include "FuzzInput.h"
#include "PermissionList/VantroViewController.h"
#include "Simulator/SimPermissionList.h"
#include "StatusCenter/VantroRequestStatusCenter.h"
#include "Vocabulary/NewerPrivacyCategories.h"

using namespace vantro;

// Seeds: every identifier the framework knows, the newer ones served, on each
// release in turn, and one with a space that makes no URL.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
    fuzz::writeSeedsWhenAsked([](auto write) {
        std::size_t release = 0;
        auto seed = [&](std::string_view identifier) {
            write(fuzz::configurationBytes(release++ % std::size(fuzz::FuzzedReleases)) + "\1\0" + std::string(identifier));
        };
        for (auto identifier : VantroPrivacyAllIdentifiers) seed(identifier);
        for (auto identifier : VantroPrivacyNewerIdentifiers) seed(identifier);
        seed("Privacy AllFiles");
    });
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::FuzzInput input(data, size);
    auto configuration = fuzz::fuzzedConfiguration(input);
    bool newer = input.flag();
    bool silent = input.flag();
    std::string identifier(input.rest());

    sim::SimulatedMac mac(configuration);
    VantroRequestStatusCenter::setServesNewerPrivacyCategories(newer);
    auto center = VantroRequestStatusCenter::sharedRequestStatusCenter();
    auto status = center->privacyAuthorizationStatusForIdentifier(identifier);
    if (status < 0 || status > 3) __builtin_trap();
    auto type = center->authorizationRequestTypeForIdentifier(identifier);
    if (type < PrivacyAuthorizationRequestTypeRequest || type > PrivacyAuthorizationRequestTypeCheck) __builtin_trap();
    center->requestPrivacyAuthorizationForIdentifier(identifier, silent);
    mac.runFor(5);

    fuzz::guideSession(mac, identifier, 3);

    auto controller = VantroViewController::create();
    controller->setRequestedPrivacyCategoryIdentifiers({identifier, std::string(VantroPrivacyFullDiskAccess)});
    {
        sim::SimPermissionList list(mac, controller);
        list.show();
        mac.runFor(2);
        (void)sim::SimPermissionList::describe(list.rows());
    }
    mac.runUntilIdle(30);
    VantroRequestStatusCenter::setServesNewerPrivacyCategories(false);
    return 0;
}
