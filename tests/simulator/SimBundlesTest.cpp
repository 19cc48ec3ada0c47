#include <gtest/gtest.h>

#include "Simulator/SimulatedMac.h"

namespace vantro::sim {
namespace {

// What Foundation answers when no preference is served is its own choice; the
// contract (tests/platform/contract) asks only for one of the localizations
// offered. The simulated Mac answers as Core Foundation's published source
// does: U.S. English where a localization serves it, else the first offered.
TEST(SimBundles, WithNoPreferenceServedEnglishThenTheFirstLocalizationIsChosen) {
    SimulatedMac mac;
    struct Case {
        std::vector<std::string> localizations, preferences, expected;
    } cases[] = {
        {{"de", "en", "ja"}, {"fr"}, {"en"}},
        {{"de", "en-US", "ja"}, {}, {"en-US"}},
        {{"de", "ja"}, {"fr"}, {"de"}},
        {{"ja", "de"}, {"fr"}, {"ja"}},
        {{"de", "en"}, {"fr", "de"}, {"de"}},
        {{}, {"de"}, {}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(mac.bundles().preferredLocalizations(c.localizations, c.preferences), c.expected)
            << c.localizations.size() << " " << c.preferences.size();
}

}  // namespace
}  // namespace vantro::sim
