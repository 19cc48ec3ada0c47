#include <gtest/gtest.h>

#include "Guide/Vantro.h"
#include "Simulator/SimulatedMac.h"
#include "support/TemporaryResources.h"

namespace vantro {
namespace {

const std::string prefix = "x-apple.systempreferences:com.apple.preference.security?";

TEST(PaneOpening, AnchorsFollowTheTable) {
    struct Case {
        double appKit;
        std::optional<std::string_view> anchor;
        const char* inURL;
    } cases[] = {
        {1894.5, std::nullopt, "Privacy"},
        {1894.5, VantroPrivacyFilesAndFolders, "Privacy"},
        {1894.5, VantroPrivacyDesktopFolder, "Privacy"},
        {1894.5, VantroPrivacyDocumentsFolder, "Privacy"},
        {1894.5, VantroPrivacyDownloadsFolder, "Privacy"},
        {1894.5, VantroPrivacyNetworkVolume, "Privacy"},
        {1894.5, VantroPrivacyRemovableVolume, "Privacy"},
        {1266.0, VantroPrivacyAssistive, "Privacy_Accessibility"},
        {1265.99, VantroPrivacyAssistive, "Privacy_Assistive"},
        {1265.0, VantroPrivacyAssistive, "Privacy_Assistive"},
        {1265.0, VantroPrivacyAccessibility, "Privacy_Accessibility"},
        {1894.5, VantroPrivacyAccessibility, "Privacy_Accessibility"},
        {1894.5, VantroPrivacyFullDiskAccess, "Privacy_AllFiles"},
        {1894.5, VantroPrivacyAutomation, "Privacy_Automation"},
        {1894.5, std::string_view("Privacy_Camera"), "Privacy_Camera"},
        // Identifiers are told apart by case: these are none of the above.
        {1894.5, std::string_view("privacy_desktopfolder"), "privacy_desktopfolder"},
        {1894.5, std::string_view("PRIVACY_FILESANDFOLDERS"), "PRIVACY_FILESANDFOLDERS"},
        {1266.0, std::string_view("privacy_assistive"), "privacy_assistive"},
        {1266.0, std::string_view("Privacy_assistive"), "Privacy_assistive"},
    };
    for (const auto& c : cases) {
        sim::SimulatedMac mac(test::atAppKit(c.appKit));
        EXPECT_TRUE(Vantro::openPrivacyPreferencesWithAnchor(c.anchor));
        ASSERT_EQ(mac.workspace().openedURLs().size(), 1u);
        EXPECT_EQ(mac.workspace().openedURLs()[0], prefix + c.inURL) << c.appKit << " " << c.anchor.value_or("nil");
    }
}

TEST(PaneOpening, ARefusedURLAssertsAndReturnsNoWhenTheHandlerReturns) {
    sim::SimulatedMac mac;
    mac.assertionHandler().setRaises(false);
    EXPECT_FALSE(Vantro::openPrivacyPreferencesWithAnchor(std::string_view("Privacy AllFiles")));  // a space makes no URL
    mac.workspace().setRefusesURLs(true);
    EXPECT_FALSE(Vantro::openPrivacyPreferencesWithAnchor(VantroPrivacyFullDiskAccess));
    ASSERT_EQ(mac.assertionHandler().failures().size(), 2u);
    const auto& failure = mac.assertionHandler().failures()[1];
    EXPECT_EQ(failure.method, "openPrivacyPreferencesWithAnchor:");
    EXPECT_EQ(failure.object, "Vantro");
    EXPECT_EQ(failure.description, "Failed to open URL " + prefix + "Privacy_AllFiles");
    EXPECT_EQ(mac.assertionHandler().failures()[0].description, "Failed to open URL " + prefix + "Privacy AllFiles");
}

TEST(PaneOpening, TheDefaultHandlerRaises) {
    sim::SimulatedMac mac;
    mac.workspace().setRefusesURLs(true);
    EXPECT_THROW(Vantro::openPrivacyPreferencesWithAnchor(VantroPrivacyPhotos), sim::AssertionFailure);
}

}  // namespace
}  // namespace vantro
