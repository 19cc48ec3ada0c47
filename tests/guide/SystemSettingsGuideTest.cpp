#include <gtest/gtest.h>

#include <set>

#include "Guide/Vantro.h"
#include "Overlay/VantroWindowController.h"
#include "Simulator/SimulatedMac.h"
#include "Vocabulary/NewerPrivacyCategories.h"
#include "support/TemporaryResources.h"

namespace vantro {
namespace {

const std::string preferencesForm = "x-apple.systempreferences:com.apple.preference.security?";
const std::string settingsForm = "x-apple.systempreferences:com.apple.settings.PrivacySecurity.extension?";

// From AppKit 2299 (macOS 13) the guide opens System Settings' own form, and
// the folder categories open the Files and Folders list that exists there.
TEST(SystemSettingsGuide, PaneURLFollowsTheRelease) {
    struct Case {
        double appKit;
        std::optional<std::string_view> anchor;
        std::string url;
    } cases[] = {
        {2298.99, VantroPrivacyFullDiskAccess, preferencesForm + "Privacy_AllFiles"},
        {2299.0, VantroPrivacyFullDiskAccess, settingsForm + "Privacy_AllFiles"},
        {2298.99, VantroPrivacyDesktopFolder, preferencesForm + "Privacy"},
        {2299.0, VantroPrivacyDesktopFolder, settingsForm + "Privacy_FilesAndFolders"},
        {2299.0, VantroPrivacyFilesAndFolders, settingsForm + "Privacy_FilesAndFolders"},
        {2299.0, std::nullopt, settingsForm + "Privacy"},
        {2299.0, VantroPrivacyAssistive, settingsForm + "Privacy_Accessibility"},
        {2685.4, VantroPrivacyPhotos, settingsForm + "Privacy_Photos"},
        {2298.99, VantroPrivacyDiagnostics, preferencesForm + "Privacy_Diagnostics"},
        {2299.0, VantroPrivacyDiagnostics, settingsForm + "Privacy_Analytics"},
    };
    for (const auto& c : cases) {
        sim::SimulatedMac mac(test::atAppKit(c.appKit, "13"));
        EXPECT_TRUE(Vantro::openPrivacyPreferencesWithAnchor(c.anchor));
        ASSERT_EQ(mac.workspace().openedURLs().size(), 1u);
        EXPECT_EQ(mac.workspace().openedURLs()[0], c.url) << c.appKit << " " << c.anchor.value_or("nil");
    }
}

// Every anchor the framework sends System Settings is one it knows: each
// category opens its own sub-pane, not the page above them.
TEST(SystemSettingsGuide, EveryCategoryOpensASubPaneSystemSettingsKnows) {
    std::vector<std::string_view> identifiers(VantroPrivacyAllIdentifiers.begin(), VantroPrivacyAllIdentifiers.end());
    identifiers.insert(identifiers.end(), {"Privacy_ScreenCapture", "Privacy_ListenEvent", "Privacy_Camera",
                                           "Privacy_Microphone", "Privacy_Bluetooth"});
    for (const char* release : {"13", "15", "26"}) {
        for (auto identifier : identifiers) {
            sim::SimulatedMac mac({.release = release});
            Vantro::openPrivacyPreferencesWithAnchor(identifier);
            mac.runFor(2.0);
            EXPECT_TRUE(mac.systemPreferences().showsSubPane()) << release << " " << identifier << " shows \""
                                                                 << mac.systemPreferences().windowTitle() << "\"";
        }
    }
}

// System Settings has no lock: no unlock request is sent to it, neither by a
// session's first sight nor asked for directly, even though its scripting
// answers with the Security pane's old identifier as the current pane.
TEST(SystemSettingsGuide, NoUnlockIsAskedOfSystemSettings) {
    struct Case { const char* release; int authorizeEvents; } cases[] = {{"12", 2}, {"13", 0}, {"15", 0}, {"27", 0}};
    for (const auto& c : cases) {
        sim::SimulatedMac mac(sim::MacConfiguration{.release = c.release});
        mac.privacy().setAutomationConsent(SystemPreferencesBundleIdentifier, sim::Consent::Authorized);
        mac.systemPreferences().setUnlockAnswerDelay(-1);
        Vantro::sharedKit()->askAccessForPanelIdentifier(VantroPrivacyFullDiskAccess);
        mac.runFor(2.0);
        EXPECT_EQ(mac.systemPreferences().currentPane(), "com.apple.preference.security") << c.release;
        Vantro::authorizeIfPossible();
        EXPECT_EQ(mac.systemPreferences().authorizeEvents(), c.authorizeEvents) << c.release;
        Vantro::sharedKit()->stop();
    }
}

// The overlay's message from macOS 13: no lock, a switch to turn on, and for
// the lists an application is added to, both ways of adding it.
TEST(SystemSettingsGuide, PromptsSayWhatSystemSettingsShows) {
    struct Case {
        double appKit;
        const char* identifier;
        const char* language;
        const char* message;
    } cases[] = {
        {2298.99, "Privacy_AllFiles", "en",
         "Click the lock to make changes, then drag Vantro Demo into the list above to give it Full Disk Access."},
        {2299.0, "Privacy_AllFiles", "en",
         "Drag Vantro Demo into the list above, or click + below the list and choose Vantro Demo. Then turn on its switch "
         "to give it Full Disk Access."},
        {2299.0, "Privacy_AllFiles", "de",
         "Ziehe Vantro Demo in die Liste oben, oder klicke unter der Liste auf + und wähle Vantro Demo. Schalte es dann "
         "ein, um ihm Festplattenvollzugriff zu geben."},
        {2685.4, "Privacy_Accessibility", "en",
         "Find Vantro Demo in the list above and turn on its switch. If Vantro Demo is missing, drag it into the list or "
         "click + below the list."},
        {2299.0, "Privacy_DesktopFolder", "en", "Find Vantro Demo in the list above and turn on the folders it may use."},
        {2299.0, "Privacy_Automation", "de", "Suche Vantro Demo in der Liste oben und schalte die Programme ein, die es steuern darf."},
        {2299.0, "Privacy_Photos", "en", "Find Vantro Demo in the list above and turn on its switch."},
        {2298.99, "Privacy_Photos", "en", "Find Vantro Demo in the list above and tick its box."},
        {2299.0, "Privacy_Nothing", "en",
         "Drag Vantro Demo into the list above, or click + below the list and choose Vantro Demo. Then turn on its switch."},
    };
    for (const auto& c : cases) {
        auto configuration = test::atAppKit(c.appKit, "13");
        configuration.languages = {c.language};
        sim::SimulatedMac mac(configuration);
        auto guide = Vantro::sharedKit();
        guide->askAccessForPanelIdentifier(std::string_view(c.identifier));
        EXPECT_EQ(guide->message().value_or("(none)"), c.message) << c.appKit << " " << c.identifier;
        guide->stop();
    }
}

// Every prompt the guide shows over System Settings fits what the user sees
// there, in every language: no lock, no box to tick, a switch to turn on, the
// "+" where the list takes applications, and on 27 the name the Accessibility
// list has there.
TEST(SystemSettingsGuide, EveryPromptFitsSystemSettings) {
    struct Words { const char* language; std::vector<std::string> foreign; std::string turnOn; } languages[] = {
        {"en", {"lock", "tick", "box"}, "turn on"},
        {"de", {"Schloss", "kreuze"}, "chalte"},
        {"fr", {"cadenas", "coch", "case"}, "ctivez"},
        {"ja", {"カギ", "鍵", "チェック"}, "オン"},
    };
    const std::set<std::string> takesApplications = {"Privacy_AllFiles", "Privacy_Accessibility", "Privacy_Assistive",
                                                     "Privacy_ScreenCapture", "Privacy_ListenEvent", "Privacy_Nothing"};
    std::vector<std::string> identifiers(VantroPrivacyAllIdentifiers.begin(), VantroPrivacyAllIdentifiers.end());
    identifiers.insert(identifiers.end(), VantroPrivacyNewerIdentifiers.begin(), VantroPrivacyNewerIdentifiers.end());
    identifiers.push_back("Privacy_Nothing");
    for (const char* release : {"13", "15", "27"}) {
        for (const auto& words : languages) {
            sim::SimulatedMac mac(sim::MacConfiguration{.release = release, .languages = {words.language}});
            setNewerPrivacyCategoriesServed(true);
            const std::string deviceControl =
                *sim::SimSystemPreferences::settingsSubPaneTitle(words.language, "Privacy_Accessibility", 27);
            for (const auto& identifier : identifiers) {
                auto guide = Vantro::sharedKit();
                guide->askAccessForPanelIdentifier(std::string_view(identifier));
                const std::string message = guide->message().value_or("");
                guide->stop();
                const std::string name = std::string(release) + " " + words.language + " " + identifier + ": " + message;
                ASSERT_FALSE(message.empty()) << name;
                for (const auto& word : words.foreign) EXPECT_EQ(message.find(word), std::string::npos) << name;
                EXPECT_NE(message.find(words.turnOn), std::string::npos) << name;
                EXPECT_EQ(message.find('+') != std::string::npos, takesApplications.count(identifier) > 0) << name;
                const bool accessibility = identifier == "Privacy_Accessibility" || identifier == "Privacy_Assistive";
                EXPECT_EQ(message.find(deviceControl) != std::string::npos, accessibility && std::string(release) == "27") << name;
            }
            setNewerPrivacyCategoriesServed(false);
        }
    }
}

// A prompt name without a System Settings text keeps its text from "strings".
TEST(SystemSettingsGuide, APromptWithoutASystemSettingsTextKeepsItsOwn) {
    test::TemporaryResources resources;
    resources.write("Prompts.plist", test::plistDictionary(
                                         "<key>keys</key><dict><key>Privacy_Default</key><string>Plain</string>"
                                         "<key>Privacy_Photos</key><string>Special</string></dict>"
                                         "<key>strings</key><dict><key>Plain</key><string>Grant Permission</string>"
                                         "<key>Special</key><string>Grant Permission</string></dict>"
                                         "<key>systemSettingsStrings</key><dict><key>Special</key>"
                                         "<string>Permission Granted</string></dict>"));
    sim::SimulatedMac mac(resources.configuration(test::atAppKit(2299.0, "13")));
    auto guide = Vantro::sharedKit();
    guide->askAccessForPanelIdentifier(VantroPrivacyPhotos);
    EXPECT_EQ(guide->message(), "Permission Granted");
    guide->askAccessForPanelIdentifier(VantroPrivacyContacts);
    EXPECT_EQ(guide->message(), "Grant Permission");
    guide->stop();
}

// The user follows the guide from the "Privacy & Security" page into a
// sub-pane, then to another page. Up to macOS 12 the title check hides the
// overlay once the window leaves the pane it was seen on; System Settings'
// titles name the sub-pane, or are missing without Screen Recording, so from
// 13 the check is off and the overlay stays over the window.
TEST(SystemSettingsGuide, TheTitleCheckIsOffOnSystemSettings) {
    struct Case {
        const char* release;
        bool screenRecording;
        bool shownOnList;
        bool shownOnGeneral;
        bool sawPane;
    } cases[] = {
        {"12", true, false, false, true},
        {"12", false, true, true, false},
        {"13", true, true, true, false},
        {"13", false, true, true, false},
        {"26", true, true, true, false},
    };
    for (const auto& c : cases) {
        sim::SimulatedMac mac(sim::MacConfiguration{.release = c.release});
        mac.windows().setScreenRecordingAllowed(c.screenRecording);
        auto guide = Vantro::sharedKit();
        guide->askAccessForPanelIdentifier(std::nullopt);
        mac.runFor(2.0);
        ASSERT_TRUE(guide->isOverlayShown()) << c.release;
        // Up to 12 the list stands for another tab of the same pane: a pane
        // of its own shows the change of title.
        if (mac.systemPreferences().isSystemSettings())
            mac.systemPreferences().userOpensPrivacyList("Privacy_AllFiles");
        else
            mac.systemPreferences().userShowsPane("com.apple.preference.other");
        mac.runFor(0.1);
        EXPECT_EQ(guide->isOverlayShown(), c.shownOnList) << c.release << " " << c.screenRecording;
        mac.systemPreferences().userShowsPane("com.apple.preference.general");
        mac.runFor(0.1);
        EXPECT_EQ(guide->isOverlayShown(), c.shownOnGeneral) << c.release << " " << c.screenRecording;
        EXPECT_EQ(guide->didSeePrivacyPanel(), c.sawPane) << c.release << " " << c.screenRecording;
        guide->stop();
    }
}

}  // namespace
}  // namespace vantro

namespace vantro {
namespace {

// What the guide takes for System Settings' alert sheet: a window of the
// settings application in front of the settings window, centred on it,
// hanging from its top, and less than half its width and height.
TEST(SystemSettingsGuide, WhatCountsAsTheReopenSheet) {
    struct Case { const char* name; double dx, dy, width, height; bool sheet; } cases[] = {
        {"centred under the toolbar", 0, 52, 260, 170, true},
        {"right under the top", 0, 0, 260, 170, true},
        {"as low as a sheet begins", 0, 80, 260, 170, true},
        {"lower", 0, 81, 260, 170, false},
        {"above the window", 0, -1, 260, 170, false},
        {"2 points off centre", 2, 52, 260, 170, true},
        {"3 points off centre", 3, 52, 260, 170, false},
        {"half the window wide", 0, 52, 357.5, 170, false},
        {"half the window high", 0, 52, 260, 310, false},
    };
    for (const auto& c : cases) {
        sim::SimulatedMac mac(sim::MacConfiguration{.release = "15"});
        auto guide = Vantro::sharedKit();
        guide->askAccessForPanelIdentifier(VantroPrivacyFullDiskAccess);
        mac.runFor(2.0);
        ASSERT_TRUE(guide->isOverlayShown()) << c.name;
        auto& settings = mac.systemPreferences();
        const Rect window = settings.windowFrame();  // 715 × 620
        settings.addExtraWindow({{{window.origin.x + (window.size.width - c.width) / 2 + c.dx, window.origin.y + c.dy}, {c.width, c.height}},
                                 std::nullopt});
        mac.windows().bringWindowForward(sim::SimWindows::preferencesWindowNumber + 1);
        guide->updateOverlay();
        EXPECT_EQ(guide->isReopenSheetShown(), c.sheet) << c.name;
        EXPECT_EQ(guide->windowController()->window()->frame().size.width, window.size.width) << c.name << ": the overlay stays on the window";
        guide->stop();
    }
}

}  // namespace
}  // namespace vantro
