#include <gtest/gtest.h>

#include "Simulator/SimulatedMac.h"

namespace vantro::sim {
namespace {

std::vector<long> numbersOf(const std::vector<Value>& list) {
    std::vector<long> numbers;
    for (const auto& d : list) numbers.push_back(d.find("kCGWindowNumber")->integerValue());
    return numbers;
}

// System Preferences in front with its window and a second one minimised
// into the Dock.
struct PreferencesInFront {
    explicit PreferencesInFront(SimulatedMac& mac) {
        mac.systemPreferences().addExtraWindow({{{40, 60}, {500, 400}}, "Minimised", true});
        mac.workspace().start(SystemPreferencesBundleIdentifier);
        mac.workspace().activate(SystemPreferencesBundleIdentifier);
        mac.runOnePass();
    }
};

TEST(SimWindowList, OptionsDecideWhichWindowsAreListed) {
    constexpr int spMain = SimWindows::preferencesWindowNumber, spMinimised = spMain + 1, host = SimWindows::hostWindowNumber;
    constexpr int icons = SimWindows::desktopIconsWindowNumber, picture = SimWindows::desktopPictureWindowNumber;
    struct Case {
        std::uint32_t options;
        std::vector<long> numbers;
    } cases[] = {
        {kCGWindowListOptionOnScreenOnly | kCGWindowListExcludeDesktopElements, {spMain, host}},
        {kCGWindowListOptionOnScreenOnly, {spMain, host, icons, picture}},
        // Off-screen windows follow the on-screen ones.
        {kCGWindowListExcludeDesktopElements, {spMain, host, spMinimised}},
        {0, {spMain, host, icons, picture, spMinimised}},
    };
    SimulatedMac mac;
    PreferencesInFront front(mac);
    for (const auto& c : cases) {
        auto list = mac.windows().windowListDescriptions(c.options);
        ASSERT_TRUE(list.has_value());
        EXPECT_EQ(numbersOf(*list), c.numbers) << "options " << c.options;
        for (const auto& d : *list) {
            const long number = d.find("kCGWindowNumber")->integerValue();
            EXPECT_EQ(d.find("kCGWindowIsOnscreen") != nullptr, number != spMinimised) << number;
        }
    }
    // A hidden application's windows are off screen.
    mac.workspace().host()->setHidden(true);
    auto onScreen = mac.windows().windowListDescriptions(kCGWindowListOptionOnScreenOnly | kCGWindowListExcludeDesktopElements);
    EXPECT_EQ(numbersOf(*onScreen), (std::vector<long>{spMain}));
    auto all = mac.windows().windowListDescriptions(0);
    auto layerOf = [&](long number) {
        for (const auto& d : *all)
            if (d.find("kCGWindowNumber")->integerValue() == number) return d.find("kCGWindowLayer")->integerValue();
        return 0L;
    };
    // The levels of CGWindowLevel.h.
    EXPECT_EQ(layerOf(icons), -2147483603L);
    EXPECT_EQ(layerOf(picture), -2147483623L);
}

// activateWithOptions: sent by the host to another application.
TEST(SimActivation, OptionsAndTheActiveApplicationDecideWhetherItTakesEffect) {
    enum Active { Host, Finder, Preferences };
    struct Case {
        const char* release;
        Active active;
        unsigned options;
        bool preferencesActiveAfter;
        bool notified;
    } cases[] = {
        {"10.15", Host, 0, true, true},
        {"10.15", Finder, 0, false, false},
        {"10.15", Finder, NSApplicationActivateAllWindows, false, false},
        {"10.15", Finder, NSApplicationActivateIgnoringOtherApps, true, true},
        {"13", Finder, NSApplicationActivateIgnoringOtherApps, true, true},
        // From 14 on the flag has no effect.
        {"14", Finder, NSApplicationActivateIgnoringOtherApps, false, false},
        {"14", Host, 0, true, true},
        // Activating the application already active posts nothing.
        {"10.15", Preferences, 0, true, false},
    };
    for (const auto& c : cases) {
        SimulatedMac mac(MacConfiguration{.release = c.release});
        auto preferences = mac.workspace().start(SystemPreferencesBundleIdentifier);
        if (c.active == Finder) mac.workspace().activate("com.apple.finder");
        if (c.active == Preferences) mac.workspace().activate(preferences);
        mac.runUntilIdle();
        int notifications = 0;
        mac.workspace().addActivationObserver(&notifications, [&](RunningApplicationPtr) { ++notifications; });
        const bool answer = preferences->activateWithOptions(c.options);
        mac.runUntilIdle();
        const std::string label = std::string(c.release) + " options " + std::to_string(c.options) + " active " + std::to_string(c.active);
        EXPECT_EQ(mac.workspace().front() == preferences, c.preferencesActiveAfter) << label;
        EXPECT_EQ(answer, c.preferencesActiveAfter) << label;
        EXPECT_EQ(notifications > 0, c.notified) << label;
        mac.workspace().removeObserver(&notifications);
    }
}

TEST(SimActivation, TheHostLearnsOfAnActivationWhenItsMainThreadRuns) {
    SimulatedMac mac;
    mac.workspace().activate("com.apple.finder");
    EXPECT_EQ(mac.workspace().front()->bundleIdentifier(), "com.apple.finder");
    EXPECT_EQ(mac.workspace().frontmostApplication(), mac.workspace().host());
    mac.runOnePass();
    EXPECT_EQ(mac.workspace().frontmostApplication()->bundleIdentifier(), "com.apple.finder");
}

TEST(SimAppleEvents, TheQueryAnswersForTheEventsAskedAbout) {
    const FourCharCode wild = typeWildCard;
    struct Case {
        std::optional<Consent> consent;
        FourCharCode eventClass, eventID;
        bool ask;
        OSStatus status;
        bool prompted;
    } cases[] = {
        {Consent::Authorized, wild, wild, false, noErr, false},
        {Consent::Denied, wild, wild, false, errAEEventNotPermitted, false},
        {std::nullopt, wild, wild, false, errAEEventWouldRequireUserConsent, false},
        {std::nullopt, wild, wild, true, errAEEventNotPermitted, true},  // the user says no
        // A single event that needs no consent may always be sent.
        {Consent::Denied, fourCharCode("aevt"), fourCharCode("oapp"), false, noErr, false},
        {std::nullopt, fourCharCode("ascr"), fourCharCode("gdte"), false, noErr, false},
        // Any other narrower question answers as the user decided.
        {Consent::Denied, fourCharCode("misc"), fourCharCode("maut"), false, errAEEventNotPermitted, false},
        {Consent::Authorized, fourCharCode("aevt"), wild, false, noErr, false},
        {std::nullopt, fourCharCode("aevt"), wild, false, errAEEventWouldRequireUserConsent, false},
    };
    for (const auto& c : cases) {
        SimulatedMac mac;
        mac.workspace().start("com.apple.finder");
        if (c.consent) mac.privacy().setAutomationConsent("com.apple.finder", *c.consent);
        auto target = mac.appleEvents().descriptorWithBundleIdentifier("com.apple.finder");
        EXPECT_EQ(mac.appleEvents().determinePermissionToAutomateTarget(*target, c.eventClass, c.eventID, c.ask), c.status)
            << c.eventClass << "/" << c.eventID;
        EXPECT_EQ(mac.privacy().prompts().size(), c.prompted ? 1u : 0u) << c.eventClass << "/" << c.eventID;
    }
}

TEST(SimAppleEvents, SystemPreferencesTakesOnlyTheAuthorizeEventAsItsDictionaryDefinesIt) {
    enum Parameter { CurrentPane, PaneOfAnotherObject, PaneIdentifier, None };
    struct Case {
        const char* name;
        FourCharCode eventClass, eventID, keyword;
        Parameter parameter;
        bool unlockPrompt;
    } cases[] = {
        {"the authorize event", fourCharCode("misc"), fourCharCode("maut"), keyDirectObject, CurrentPane, true},
        {"another class", fourCharCode("aevt"), fourCharCode("maut"), keyDirectObject, CurrentPane, false},
        {"another identifier", fourCharCode("misc"), fourCharCode("mvis"), keyDirectObject, CurrentPane, false},
        {"another keyword", fourCharCode("misc"), fourCharCode("maut"), fourCharCode("xpcp"), CurrentPane, false},
        {"the pane's identifier", fourCharCode("misc"), fourCharCode("maut"), keyDirectObject, PaneIdentifier, false},
        {"another application's pane", fourCharCode("misc"), fourCharCode("maut"), keyDirectObject, PaneOfAnotherObject, false},
        {"no parameter", fourCharCode("misc"), fourCharCode("maut"), keyDirectObject, None, false},
    };
    for (const auto& c : cases) {
        SimulatedMac mac;
        mac.privacy().setAutomationConsent(SystemPreferencesBundleIdentifier, Consent::Authorized);
        mac.workspace().start(SystemPreferencesBundleIdentifier);
        auto application = mac.appleEvents().applicationWithBundleIdentifier(SystemPreferencesBundleIdentifier);
        auto other = mac.appleEvents().applicationWithBundleIdentifier(SystemPreferencesBundleIdentifier);
        auto pane = application->propertyWithCode(fourCharCode("xpcp"));
        std::shared_ptr<ScriptingObject> parameter = c.parameter == CurrentPane           ? pane
                                                     : c.parameter == PaneOfAnotherObject ? other->propertyWithCode(fourCharCode("xpcp"))
                                                     : c.parameter == PaneIdentifier      ? pane->propertyWithCode(fourCharCode("ID  "))
                                                                                          : nullptr;
        application->sendEvent(c.eventClass, c.eventID, c.keyword, parameter);
        EXPECT_EQ(mac.timeline().contains("asks for the administrator password"), c.unlockPrompt) << c.name;
        EXPECT_EQ(mac.timeline().contains("ignores the event"), !c.unlockPrompt) << c.name;
    }
}

TEST(SimAppleEvents, TalkingToSystemPreferencesNeedsConsentAndAsksForIt) {
    SimulatedMac mac;
    mac.workspace().start(SystemPreferencesBundleIdentifier);
    auto application = mac.appleEvents().applicationWithBundleIdentifier(SystemPreferencesBundleIdentifier);
    auto pane = application->propertyWithCode(fourCharCode("xpcp"));
    ASSERT_NE(pane, nullptr);
    EXPECT_TRUE(mac.privacy().prompts().empty()) << "a reference alone sends nothing";
    EXPECT_EQ(pane->propertyWithCode(fourCharCode("ID  "))->get(), std::nullopt);  // the user says no
    ASSERT_EQ(mac.privacy().prompts().size(), 1u);
    application->sendEvent(fourCharCode("misc"), fourCharCode("maut"), keyDirectObject, pane);
    EXPECT_EQ(mac.systemPreferences().authorizeEvents(), 0);
    EXPECT_EQ(mac.privacy().prompts().size(), 1u) << "refused once, not asked again";
}

}  // namespace
}  // namespace vantro::sim
