#include <gtest/gtest.h>
#include <unistd.h>

#include "platform/PlatformUnderTest.h"

namespace vantro::test {
namespace {

// The user defaults' contract: the host's booleans and the system's
// preference domains. Keys start with "VantroContract" so that a Mac's real
// defaults can be told from them and cleared of them.
class DefaultsContract : public ::testing::Test {
protected:
    std::string key(const std::string& name) { return "VantroContract." + std::to_string(getpid()) + "." + name; }

    std::unique_ptr<PlatformUnderTest> put = makePlatformUnderTest();
    Defaults& defaults = put->platform().defaults();
};

TEST_F(DefaultsContract, BooleansRoundTripAndAnUnsetOneIsFalse) {
    EXPECT_FALSE(defaults.boolForKey(key("NeverSet")));
    const std::string flag = key("Flag");
    for (bool value : {true, true, false, true, false}) {
        defaults.setBool(value, flag);
        EXPECT_EQ(defaults.boolForKey(flag), value);
    }
    EXPECT_FALSE(defaults.boolForKey(key("NeverSet"))) << "setting one key leaves the others";
}

TEST_F(DefaultsContract, AMissingDomainOrValueIsNothing) {
    EXPECT_EQ(defaults.persistentDomainForName("com.example.vantro.contract.no-such-domain"), std::nullopt);
    EXPECT_EQ(defaults.copyAppValue(key("Missing"), "com.example.vantro.contract.no-such-application"), std::nullopt);

    // The global domain is there, and where it names the user's languages it
    // does so as an array of strings.
    auto global = defaults.persistentDomainForName(NSGlobalDomain);
    ASSERT_TRUE(global.has_value());
    if (auto it = global->find("AppleLanguages"); it != global->end()) {
        ASSERT_TRUE(it->second.isArray()) << it->second.description();
        for (const auto& language : *it->second.array()) EXPECT_TRUE(language.isString()) << language.description();
    }
}

}  // namespace
}  // namespace vantro::test
