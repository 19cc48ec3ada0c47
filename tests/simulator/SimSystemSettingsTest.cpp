#include <gtest/gtest.h>

#include "Simulator/SimulatedMac.h"

namespace vantro::sim {
namespace {

const std::string preferencesForm = "x-apple.systempreferences:com.apple.preference.security?";
const std::string settingsForm = "x-apple.systempreferences:com.apple.settings.PrivacySecurity.extension?";

// Opens `url` and lets System Settings launch and come forward.
void openAndWait(SimulatedMac& mac, const std::string& url) {
    mac.workspace().openURL(url);
    mac.runFor(1.0);
}

const Value* settingsWindowDescription(const std::vector<Value>& list) {
    for (const auto& description : list)
        if (description.find("kCGWindowNumber")->integerValue() == SimWindows::preferencesWindowNumber) return &description;
    return nullptr;
}

TEST(SimSystemSettings, TheWindowIsTitledWithTheSubPaneInTheUsersLanguage) {
    struct Case {
        const char* release;
        const char* language;
        std::string url;
        const char* title;
    } cases[] = {
        {"13", "en", preferencesForm + "Privacy_AllFiles", "Full Disk Access"},
        {"15", "de", settingsForm + "Privacy_AllFiles", "Festplattenvollzugriff"},
        {"26", "ja", preferencesForm + "Privacy_Photos", "写真"},
        {"13", "en", settingsForm + "Privacy_ScreenCapture", "Screen Recording"},
        {"14", "en", settingsForm + "Privacy_ScreenCapture", "Screen & System Audio Recording"},
        {"27", "en", settingsForm + "Privacy_Accessibility", "Device Control and Data Access"},
        // An anchor without a sub-pane lands on the page.
        {"13", "en", settingsForm + "Privacy_Nonsense", "Privacy & Security"},
        {"15", "de", preferencesForm + "Privacy", "Datenschutz & Sicherheit"},
        // A language it does not speak gives English.
        {"15", "it", settingsForm + "Privacy_AllFiles", "Full Disk Access"},
        // System Preferences knows only its own form.
        {"12", "en", preferencesForm + "Privacy_AllFiles", "Security & Privacy"},
        {"12", "en", settingsForm + "Privacy_AllFiles", "com.apple.settings.PrivacySecurity.extension"},
    };
    for (const auto& c : cases) {
        SimulatedMac mac(MacConfiguration{.release = c.release, .languages = {c.language}});
        openAndWait(mac, c.url);
        EXPECT_EQ(mac.systemPreferences().windowTitle(), c.title) << c.release << " " << c.language << " " << c.url;
    }
}

TEST(SimSystemSettings, TheSidebarWindowKeepsItsWidthAndHasNoLock) {
    SimulatedMac settings(MacConfiguration{.release = "13"});
    auto& preferences = settings.systemPreferences();
    EXPECT_EQ(preferences.applicationName(), "System Settings");
    EXPECT_EQ(preferences.windowFrame().size.width, 715);
    preferences.setWindowFrame({{10, 20}, {900, 500}});
    EXPECT_EQ(preferences.windowFrame(), (Rect{{10, 20}, {715, 500}}));
    EXPECT_FALSE(preferences.isLocked());
    openAndWait(settings, preferencesForm + "Privacy_AllFiles");
    preferences.authorize();
    settings.runFor(3.0);
    EXPECT_FALSE(settings.timeline().contains("password"));
    EXPECT_FALSE(settings.timeline().contains("lock"));

    SimulatedMac monterey(MacConfiguration{.release = "12"});
    EXPECT_EQ(monterey.systemPreferences().applicationName(), "System Preferences");
    EXPECT_EQ(monterey.systemPreferences().windowFrame().size, (Size{668, 580}));
    monterey.systemPreferences().setWindowFrame({{10, 20}, {900, 500}});
    EXPECT_EQ(monterey.systemPreferences().windowFrame().size.width, 900);
    EXPECT_TRUE(monterey.systemPreferences().isLocked());
}

TEST(SimSystemSettings, TitlesAreListedOnlyWithScreenRecording) {
    SimulatedMac mac(MacConfiguration{.release = "14"});
    openAndWait(mac, settingsForm + "Privacy_AllFiles");
    auto list = mac.windows().windowListDescriptions(kCGWindowListOptionOnScreenOnly | kCGWindowListExcludeDesktopElements);
    const Value* description = settingsWindowDescription(*list);
    ASSERT_NE(description, nullptr);
    EXPECT_EQ(description->find("kCGWindowName"), nullptr);
    mac.windows().setScreenRecordingAllowed(true);
    list = mac.windows().windowListDescriptions(kCGWindowListOptionOnScreenOnly | kCGWindowListExcludeDesktopElements);
    description = settingsWindowDescription(*list);
    EXPECT_EQ(description->find("kCGWindowName")->string(), "Full Disk Access");
}

// The host reaches a list by a drop or by "+", switched off; only the switch,
// after the password, grants the category.
TEST(SimSystemSettings, AddingThenSwitchingOnAfterThePasswordGrants) {
    enum class Add { Drop, Plus };
    for (Add add : {Add::Drop, Add::Plus}) {
        SimulatedMac mac(MacConfiguration{.release = "15"});
        auto& settings = mac.systemPreferences();
        openAndWait(mac, settingsForm + "Privacy_AllFiles");
        EXPECT_FALSE(settings.userSwitchesOnHost()) << "nothing to switch on before the host is listed";
        if (add == Add::Drop)
            EXPECT_TRUE(settings.acceptsDrop(SimWorkspace::directoryURL(mac.hostBundlePath()), settings.listPoint()));
        else
            EXPECT_TRUE(settings.userAddsHostWithPlusButton());
        EXPECT_TRUE(settings.listsHost("Privacy_AllFiles"));
        EXPECT_FALSE(settings.hostSwitchedOn("Privacy_AllFiles"));
        EXPECT_FALSE(mac.privacy().hasFullDiskAccess());

        settings.setUnlockAnswerDelay(1.0);
        EXPECT_TRUE(settings.userSwitchesOnHost());
        EXPECT_TRUE(settings.asksForPassword());
        EXPECT_FALSE(settings.userSwitchesOnHost()) << "one password prompt at a time";
        mac.runFor(0.99);
        EXPECT_FALSE(mac.privacy().hasFullDiskAccess());
        mac.runFor(0.01);
        EXPECT_FALSE(settings.asksForPassword());
        EXPECT_TRUE(settings.hostSwitchedOn("Privacy_AllFiles"));
        EXPECT_TRUE(mac.privacy().hasFullDiskAccess());
        EXPECT_FALSE(settings.userSwitchesOnHost()) << "already on";
        EXPECT_TRUE(settings.grantedByDrop().empty());
    }
    // A password nobody gives leaves the switch off.
    SimulatedMac mac(MacConfiguration{.release = "13"});
    openAndWait(mac, settingsForm + "Privacy_AllFiles");
    mac.systemPreferences().userAddsHostWithPlusButton();
    mac.systemPreferences().setUnlockAnswerDelay(-1);
    EXPECT_TRUE(mac.systemPreferences().userSwitchesOnHost());
    mac.runFor(30);
    EXPECT_TRUE(mac.systemPreferences().asksForPassword());
    EXPECT_FALSE(mac.privacy().hasFullDiskAccess());
}

TEST(SimSystemSettings, OnlyListsThatTakeApplicationsCanBeAddedTo) {
    struct Case {
        std::string url;
        bool takes;
    } cases[] = {
        {settingsForm + "Privacy_AllFiles", true},
        {preferencesForm + "Privacy_Accessibility", true},
        {settingsForm + "Privacy_Photos", false},
        {settingsForm + "Privacy", false},
        {settingsForm + "Privacy_Nonsense", false},
    };
    for (const auto& c : cases) {
        SimulatedMac mac(MacConfiguration{.release = "26"});
        auto& settings = mac.systemPreferences();
        openAndWait(mac, c.url);
        EXPECT_EQ(settings.userAddsHostWithPlusButton(), c.takes) << c.url;
        EXPECT_EQ(settings.acceptsDrop(SimWorkspace::directoryURL(mac.hostBundlePath()), settings.listPoint()), c.takes) << c.url;
    }
}

}  // namespace
}  // namespace vantro::sim
