#include <gtest/gtest.h>

#include <cerrno>

#include "Simulator/SimulatedMac.h"

namespace vantro::sim {
namespace {

PlatformError listingError(SimulatedMac& mac, const std::string& path) {
    PlatformError error;
    EXPECT_FALSE(mac.fileSystem().contentsOfDirectoryAtPath(path, &error).has_value()) << path;
    return error;
}

TEST(SimPrivacy, ProtectedListingsFailWithEpermBeneathCocoa257) {
    struct Case {
        const char* release;
        bool refused;
    } cases[] = {{"10.13", false}, {"10.14", true}, {"15", true}};
    for (const auto& c : cases) {
        SimulatedMac mac(MacConfiguration{.release = c.release});
        std::string mail = mac.homeDirectory() + "/Library/Mail";
        if (!c.refused) {
            EXPECT_TRUE(mac.fileSystem().contentsOfDirectoryAtPath(mail, nullptr).has_value()) << c.release;
            continue;
        }
        auto error = listingError(mac, mail + "/");
        EXPECT_EQ(error.domain, NSCocoaErrorDomain);
        EXPECT_EQ(error.code, NSFileReadNoPermissionError);
        ASSERT_NE(error.underlying, nullptr);
        EXPECT_EQ(error.underlying->domain, NSPOSIXErrorDomain);
        EXPECT_EQ(error.underlying->code, EPERM);
        mac.privacy().setFullDiskAccess(true);
        EXPECT_TRUE(mac.fileSystem().contentsOfDirectoryAtPath(mail, nullptr).has_value()) << c.release;
    }
}

// The answers of the directories of Full Disk Access on 15, 26 and 27: how
// each listing fails (0: it lists), without and with Full Disk Access.
TEST(SimPrivacy, FullDiskAccessDirectoriesAnswerAsTheirRelease) {
    struct Case {
        const char* release;
        const char* directory;
        int without;
        int with;
    } cases[] = {
        {"15", "Library/Application Support/com.apple.TCC", EPERM, 0},
        {"26", "Library/Application Support/com.apple.TCC", EPERM, 0},
        {"27", "Library/Application Support/com.apple.TCC", EPERM, EPERM},
        {"26", "Library/Cookies", EPERM, 0},
        {"27", "Library/Cookies", ENOENT, 0},
        {"27", "Library/Containers/com.apple.mail", ENOENT, 0},
        {"27", "Library/Safari", EPERM, 0},
        {"27", "Library/Mail", EPERM, 0},
        {"27", "Library/Messages", EPERM, 0},
    };
    for (const auto& c : cases) {
        SimulatedMac mac(MacConfiguration{.release = c.release});
        const std::string path = mac.homeDirectory() + "/" + c.directory;
        for (bool held : {false, true}) {
            mac.privacy().setFullDiskAccess(held);
            const int expected = held ? c.with : c.without;
            PlatformError error;
            auto listing = mac.fileSystem().contentsOfDirectoryAtPath(path, &error);
            const std::string name = std::string(c.release) + " " + c.directory + (held ? " held" : "");
            if (expected == 0) {
                ASSERT_TRUE(listing.has_value()) << name;
                EXPECT_FALSE(listing->empty()) << name << ": what the system keeps there";
                continue;
            }
            ASSERT_FALSE(listing.has_value()) << name;
            ASSERT_NE(error.underlying, nullptr) << name;
            EXPECT_EQ(error.underlying->code, expected) << name;
            // Told to, the Mac lists an EPERM refusal as empty; ENOENT stays.
            mac.privacy().setRefusedListingsLookEmpty(true);
            auto hidden = mac.fileSystem().contentsOfDirectoryAtPath(path, nullptr);
            EXPECT_EQ(hidden.has_value(), expected == EPERM) << name;
            if (hidden) {
                EXPECT_TRUE(hidden->empty()) << name;
            }
            mac.privacy().setRefusedListingsLookEmpty(false);
        }
    }
}

TEST(SimPrivacy, FoldersAskOnTheFirstListingFromCatalinaAndRemember) {
    {
        SimulatedMac mojave(MacConfiguration{.release = "10.14"});
        EXPECT_TRUE(mojave.fileSystem().contentsOfDirectoryAtPath(mojave.homeDirectory() + "/Desktop", nullptr));
        EXPECT_TRUE(mojave.privacy().prompts().empty());
    }
    SimulatedMac mac;
    mac.privacy().answerNextPrompt(PromptAnswer::deny(2.5));
    std::string desktop = mac.homeDirectory() + "/Desktop";
    EXPECT_EQ(listingError(mac, desktop).underlying->code, EPERM);
    EXPECT_DOUBLE_EQ(mac.now(), 2.5);
    EXPECT_EQ(mac.privacy().folderConsent(ProtectedFolder::Desktop), Consent::Denied);
    EXPECT_EQ(listingError(mac, desktop + "/sub/..").underlying->code, EPERM);
    ASSERT_EQ(mac.privacy().prompts().size(), 1u);
    EXPECT_EQ(mac.privacy().prompts()[0].allowed, false);
}

TEST(SimPrivacy, ABlockedListingLetsNoMainThreadWorkRun) {
    SimulatedMac mac;
    bool timerFired = false, mainQueueRan = false;
    auto timer = mac.runLoop().scheduledTimer(0.5, false, [&](Timer&) { timerFired = true; });
    mac.runLoop().dispatchAsyncMain([&] { mainQueueRan = true; });
    mac.privacy().answerNextPrompt(PromptAnswer::allow(1.0));
    EXPECT_TRUE(mac.fileSystem().contentsOfDirectoryAtPath(mac.homeDirectory() + "/Downloads", nullptr));
    EXPECT_FALSE(timerFired);
    EXPECT_FALSE(mainQueueRan);
    mac.runOnePass();
    EXPECT_TRUE(timerFired);
    EXPECT_TRUE(mainQueueRan);
}

TEST(SimPrivacy, APromptNobodyAnswersIsGivenUpAndChangesNothing) {
    SimulatedMac mac;
    mac.privacy().answerNextPrompt(PromptAnswer::never());
    EXPECT_EQ(listingError(mac, mac.homeDirectory() + "/Documents").underlying->code, EPERM);
    EXPECT_DOUBLE_EQ(mac.now(), SimPrivacy::promptTimeout);
    EXPECT_EQ(mac.privacy().folderConsent(ProtectedFolder::Documents), Consent::NotDetermined);
    EXPECT_TRUE(mac.privacy().prompts()[0].givenUp);
}

TEST(SimPrivacy, AutomationAnswers) {
    SimulatedMac mac;
    const std::string finder = "com.apple.finder";
    EXPECT_EQ(mac.privacy().determinePermissionToAutomate("com.example.NotRunning", false), -600);
    EXPECT_EQ(mac.privacy().determinePermissionToAutomate(finder, false), -1744);
    mac.privacy().answerNextPrompt(PromptAnswer::never());
    EXPECT_EQ(mac.privacy().determinePermissionToAutomate(finder, true), -1744);
    EXPECT_EQ(mac.privacy().automationConsent(finder), Consent::NotDetermined);
    mac.privacy().answerNextPrompt(PromptAnswer::allow());
    EXPECT_EQ(mac.privacy().determinePermissionToAutomate(finder, true), 0);
    EXPECT_EQ(mac.privacy().determinePermissionToAutomate(finder, false), 0);
    mac.privacy().setAutomationConsent(finder, Consent::Denied);
    EXPECT_EQ(mac.privacy().determinePermissionToAutomate(finder, true), -1743);
}

TEST(SimServices, AnswersArriveOffTheMainThread) {
    SimulatedMac mac;
    std::vector<bool> onMain;
    mac.privacy().answerNextPrompt(PromptAnswer::allow());
    auto record = [&](bool, const PlatformError*) { onMain.push_back(mac.runLoop().isMainThread()); };
    mac.services().requestEventStoreAccess(EKEntityTypeReminder, record);
    mac.services().requestContactsAccess(CNEntityTypeContacts, record);  // Contacts is still undecided: a second prompt
    mac.services().loadBundleAtPath("/System/Library/Frameworks/Photos.framework");
    mac.services().requestPhotoLibraryAuthorization([&](long) { onMain.push_back(mac.runLoop().isMainThread()); });
    EXPECT_TRUE(onMain.empty());
    mac.runUntilIdle(10);
    EXPECT_EQ(onMain, (std::vector<bool>{false, false, false}));
    EXPECT_EQ(mac.privacy().consent(PromptedService::Reminders), Consent::Authorized);
    EXPECT_EQ(mac.privacy().consent(PromptedService::Contacts), Consent::Denied);
}

TEST(SimServices, WhatExistsFollowsTheRelease) {
    struct Case {
        const char* release;
        bool contactStore, photos, privateClass, preference;
    } cases[] = {
        {"10.10", false, false, false, false},
        {"10.11", true, false, false, false},
        {"10.13", true, true, false, false},
        {"10.14", true, true, true, true},
        {"15", true, true, false, true},
    };
    for (const auto& c : cases) {
        SimulatedMac mac(MacConfiguration{.release = c.release});
        auto& s = mac.services();
        EXPECT_EQ(s.classExists("CNContactStore"), c.contactStore) << c.release;
        EXPECT_FALSE(s.classExists("PHPhotoLibrary")) << "not before Photos.framework is loaded";
        s.loadBundleAtPath("/System/Library/Frameworks/Photos.framework");
        s.loadBundleAtPath("/System/Library/PrivateFrameworks/AssetsLibraryServices.framework");
        EXPECT_EQ(s.classExists("PHPhotoLibrary"), c.photos) << c.release;
        EXPECT_EQ(s.classRespondsToSelector("PLPrivacy", "sharedInstance"), c.privateClass) << c.release;
        auto preference = mac.defaults().copyAppValue("WellKnownLibraryPathCache", "com.apple.photolibraryd");
        EXPECT_EQ(preference && preference->findKeyPath("cache.kRDLibraryKey_Canonical") != nullptr, c.preference) << c.release;
    }
}

}  // namespace
}  // namespace vantro::sim
