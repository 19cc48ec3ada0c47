#include <gtest/gtest.h>

#include <filesystem>

#include "support/GuideFixture.h"
#include "support/TemporaryResources.h"

namespace vantro::test {
namespace {

using GuideSession = GuideFixture;

TEST_F(GuideSession, AFreshGuideStopsOnQuitAndOnTheHostOnlyAndHasSeenNothing) {
    EXPECT_EQ((std::vector<bool>{guide->stopOnQuitOfSystemPreferences(), guide->stopOnDeactivateOfSystemPreferences(),
                                 guide->stopOnActivateOfHostApplication(), guide->didSeeOtherApplication(),
                                 guide->didSeeSystemPreferences(), guide->didSeePrivacyPanel(), guide->isOverlayShown()}),
              (std::vector<bool>{true, false, true, false, false, false, false}));
    EXPECT_EQ(guide->hostApplication(), mac.workspace().host());
}

TEST_F(GuideSession, ASessionOpensThePaneAndLaysTheOverlayOverTheSettingsWindow) {
    guide->askAccessForPanelIdentifier(VantroPrivacyFullDiskAccess);
    EXPECT_EQ(delegate->calls, std::vector<std::string>{"will Privacy_AllFiles"});
    EXPECT_EQ(guide->message(), "Click the lock to make changes, then drag Vantro Demo into the list above to give it Full Disk Access.");
    EXPECT_EQ(guide->privacyPanelName(), "Security & Privacy");
    ASSERT_EQ(mac.workspace().openedURLs().size(), 1u);
    EXPECT_FALSE(guide->isOverlayShown());

    mac.runFor(0.8);  // System Preferences takes 0.8 s to launch and come forward
    EXPECT_TRUE(guide->didSeeSystemPreferences());
    EXPECT_TRUE(guide->isOverlayShown());
    EXPECT_EQ(delegate->calls, (std::vector<std::string>{"will Privacy_AllFiles", "did Privacy_AllFiles"}));
    EXPECT_NE(guide->monitor(), nullptr);
    auto* window = overlay();
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(window->level(), 101);
    EXPECT_EQ(window->backgroundColor(), Color::clearColor());
    EXPECT_EQ(window->frame(), overWindowAt(386, 120));
    EXPECT_EQ(guide->windowController()->message(), guide->message());

    // Half a second after System Preferences came forward, the first-sight
    // work opens the pane a second time.
    mac.runFor(0.49);
    EXPECT_EQ(mac.workspace().openedURLs().size(), 1u);
    mac.runFor(0.02);
    EXPECT_EQ(mac.workspace().openedURLs().size(), 2u);
    EXPECT_EQ(delegate->count("did"), 1);
}

TEST_F(GuideSession, PromptsComeFromTheTableWithTheHostsNameInEveryPlaceholder) {
    struct Case {
        double appKit;
        std::optional<std::string_view> identifier;
        std::string message;
    } cases[] = {
        {1894.5, std::string_view("Privacy_Camera"), "Drag Vantro Demo into the list above to allow it."},
        {1894.5, std::nullopt, "Drag Vantro Demo into the list above to allow it."},
        {1561.9, VantroPrivacyAccessibility,
         "Click the lock to make changes, then drag Vantro Demo into the list above to let it control your computer."},
        {1562.0, VantroPrivacyAccessibility,
         "Find Vantro Demo in the list above and turn it on. If Vantro Demo is missing, drag it into the list."},
        {1562.0, VantroPrivacyAssistive,
         "Click the lock to make changes, then drag Vantro Demo into the list above to let it control your computer."},
    };
    for (const auto& c : cases) {
        sim::SimulatedMac other(atAppKit(c.appKit));
        auto kit = Vantro::sharedKit();
        kit->askAccessForPanelIdentifier(c.identifier);
        EXPECT_EQ(kit->message(), c.message) << c.appKit << " " << c.identifier.value_or("nil");
        kit->stop();
    }
}

TEST(GuidePrompts, MissingPiecesGiveAnEmptyMessageAndTheSessionGoesOn) {
    TemporaryResources resources;
    resources.write("en.lproj/Localizable.strings", "\"PROMPT_DRAG_TO_LIST\" = \"No placeholder here\";");
    {
        sim::SimulatedMac mac(resources.configuration());
        Vantro::sharedKit()->askAccessForPanelIdentifier(VantroPrivacyCalendars);
        // A key missing from the strings table shows as the key itself.
        EXPECT_EQ(Vantro::sharedKit()->message(), "PROMPT_TICK_THE_BOX");
        Vantro::sharedKit()->askAccessForPanelIdentifier(std::string_view("Privacy_Camera"));
        EXPECT_EQ(Vantro::sharedKit()->message(), "No placeholder here");
    }
    resources.remove("Prompts.plist");
    {
        sim::SimulatedMac mac(resources.configuration());
        Vantro::sharedKit()->askAccessForPanelIdentifier(VantroPrivacyFullDiskAccess);
        EXPECT_EQ(Vantro::sharedKit()->message(), "");
        EXPECT_EQ(mac.workspace().openedURLs().size(), 1u);
        resources.write("Prompts.plist", plistDictionary("<key>keys</key><dict><key>Privacy_Default</key><string>D</string></dict>"
                                                         "<key>strings</key><dict><key>D</key><string>PROMPT_DRAG_TO_LIST</string></dict>"));
        Vantro::sharedKit()->askAccessForPanelIdentifier(VantroPrivacyFullDiskAccess);  // looked for again
        EXPECT_EQ(Vantro::sharedKit()->message(), "No placeholder here");
    }
}

TEST(GuidePaneTitle, FollowsTheUsersLanguagesAndTheRelease) {
    struct Case {
        std::string release;
        std::vector<std::string> languages;
        std::optional<std::string> title;
    } cases[] = {
        {"10.15", {"en"}, "Security & Privacy"},
        {"10.15", {"de-CH", "en"}, "Sicherheit & Datenschutz"},
        {"10.15", {"ko", "ja"}, "セキュリティとプライバシー"},
        {"10.15", {"fr-CA"}, "Sécurité et confidentialité"},
        {"13", {"en-GB"}, "Privacy & Security"},
        // A language the pane lacks, or none at all: Foundation still picks
        // one of the pane's localizations, English where it has one.
        {"10.15", {"ko"}, "Security & Privacy"},
        {"10.15", {}, "Security & Privacy"},
    };
    for (const auto& c : cases) {
        sim::SimulatedMac mac(sim::MacConfiguration{.release = c.release, .languages = c.languages});
        Vantro::sharedKit()->askAccessForPanelIdentifier(VantroPrivacyPhotos);
        EXPECT_EQ(Vantro::sharedKit()->privacyPanelName(), c.title) << c.release << " " << c.languages.size();
    }
}

TEST(GuidePaneTitle, IsReadAgainForEverySession) {
    sim::SimulatedMac mac;
    auto guide = Vantro::sharedKit();
    guide->askAccessForPanelIdentifier(VantroPrivacyPhotos);
    EXPECT_EQ(guide->privacyPanelName(), "Security & Privacy");
    mac.defaults().setUserLanguages({"de"});
    guide->askAccessForPanelIdentifier(VantroPrivacyPhotos);
    EXPECT_EQ(guide->privacyPanelName(), "Sicherheit & Datenschutz");
    std::filesystem::remove_all(mac.realPath("/System/Library/PreferencePanes/Security.prefPane"));
    guide->askAccessForPanelIdentifier(VantroPrivacyPhotos);
    EXPECT_EQ(guide->privacyPanelName(), std::nullopt);
}

TEST_F(GuideSession, AFailedOpenStillToldTheDelegateAndEndsTheSession) {
    mac.assertionHandler().setRaises(false);
    mac.workspace().setRefusesURLs(true);
    guide->askAccessForPanelIdentifier(VantroPrivacyFullDiskAccess);
    EXPECT_EQ(delegate->calls, std::vector<std::string>{"will Privacy_AllFiles"});
    EXPECT_FALSE(sessionRegistered());
    EXPECT_EQ(mac.assertionHandler().failures().size(), 1u);
}

TEST_F(GuideSession, StartingTwiceRegistersTwiceAndOneStopRemovesBoth) {
    int handled = 0;
    guide->askAccessForPanelIdentifier(VantroPrivacyFullDiskAccess);
    guide->askAccessForPanelIdentifier(VantroPrivacyAccessibility);
    EXPECT_EQ(mac.workspace().activationObserverCount(), 2u);
    EXPECT_EQ(delegate->count("will"), 2);
    mac.workspace().addActivationObserver(&handled, [&](RunningApplicationPtr) { ++handled; });
    mac.runFor(1.0);
    EXPECT_EQ(handled, 1);
    guide->stop();
    EXPECT_EQ(mac.workspace().activationObserverCount(), 1u);  // only the test's own
    guide->cancelOverlay();  // again, with nothing registered: harmless
    EXPECT_FALSE(guide->isOverlayShown());
}

}  // namespace
}  // namespace vantro::test
