#include "Vocabulary/NewerPrivacyCategories.h"

#include <algorithm>

#include "Platform/HostProcess.h"

namespace vantro {

namespace {

struct NewerCategoriesProcessState {
    bool served = false;
};

NewerCategoriesProcessState& processState() { return HostProcess::current().value<NewerCategoriesProcessState>(); }

}  // namespace

bool isNewerPrivacyCategory(std::string_view identifier) {
    return std::find(VantroPrivacyNewerIdentifiers.begin(), VantroPrivacyNewerIdentifiers.end(), identifier) !=
           VantroPrivacyNewerIdentifiers.end();
}

std::optional<PrivacyCategoryIdentifier> privacyCategoryIdentifierNamed(std::string_view identifier) {
    for (auto known : VantroPrivacyAllIdentifiers)
        if (known == identifier) return known;
    for (auto known : VantroPrivacyNewerIdentifiers)
        if (known == identifier) return known;
    return std::nullopt;
}

bool newerPrivacyCategoriesServed() { return processState().served; }

void setNewerPrivacyCategoriesServed(bool served) { processState().served = served; }

bool isPrivacyCategoryWithheld(std::string_view identifier) {
    return isNewerPrivacyCategory(identifier) && !newerPrivacyCategoriesServed();
}

bool systemHasNewerPrivacyCategory(std::string_view identifier) {
    if (!isNewerPrivacyCategory(identifier)) return false;
    // The capture devices' privacy came with 10.14; the rest with 10.15.
    const bool captureDevice = identifier == VantroPrivacyCamera || identifier == VantroPrivacyMicrophone;
    return flooredAppKitVersion() > (captureDevice ? 1561.0 : 1671.0);
}

}  // namespace vantro
