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

TEST(SimPrivacy, AFreshMacHasGrantedAndAskedNothing) {
    SimulatedMac mac;
    auto& privacy = mac.privacy();
    for (auto s : {PromptedService::Calendars, PromptedService::Reminders, PromptedService::Contacts, PromptedService::Photos})
        EXPECT_EQ(privacy.consent(s), Consent::NotDetermined);
    for (auto f : {ProtectedFolder::Desktop, ProtectedFolder::Documents, ProtectedFolder::Downloads})
        EXPECT_EQ(privacy.folderConsent(f), Consent::NotDetermined);
    EXPECT_FALSE(privacy.hasFullDiskAccess());
    EXPECT_FALSE(privacy.isAccessibilityTrusted());
    for (const auto& d : SimPrivacy::fullDiskAccessDirectories()) {
        bool isDirectory = false;
        EXPECT_TRUE(mac.fileSystem().fileExistsAtPath(mac.homeDirectory() + "/" + d, &isDirectory) && isDirectory) << d;
    }
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

TEST(SimPrivacy, PlainPermissionErrorsAndEntriesAreUpToTheTest) {
    SimulatedMac mac;
    mac.privacy().setFolderConsent(ProtectedFolder::Documents, Consent::Authorized);
    mac.fileSystem().setListingError("~/Documents", EACCES);
    auto error = listingError(mac, mac.homeDirectory() + "/Documents");
    EXPECT_EQ(error.code, NSFileReadNoPermissionError);
    EXPECT_EQ(error.underlying->code, EACCES);
    mac.fileSystem().setListingError("~/Documents", 0);
    EXPECT_TRUE(mac.fileSystem().contentsOfDirectoryAtPath(mac.homeDirectory() + "/Documents", nullptr));

    bool isDirectory = true;
    mac.fileSystem().setHomeEntry("Library/Cookies", SimFileSystem::Entry::PlainFile);
    EXPECT_TRUE(mac.fileSystem().fileExistsAtPath(mac.homeDirectory() + "/Library/Cookies", &isDirectory));
    EXPECT_FALSE(isDirectory);
    mac.fileSystem().setHomeEntry("Library/Cookies", SimFileSystem::Entry::Missing);
    EXPECT_FALSE(mac.fileSystem().fileExistsAtPath(mac.homeDirectory() + "/Library/Cookies", nullptr));
    EXPECT_EQ(listingError(mac, mac.homeDirectory() + "/Library/Cookies").underlying->code, ENOENT);
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

TEST(SimPrivacy, ConsentByIdentifier) {
    struct Case {
        const char* identifier;
        Consent consent;
        bool accepted;
    } cases[] = {
        {"Privacy_AllFiles", Consent::Authorized, true},   {"Privacy_AllFiles", Consent::Restricted, false},
        {"Privacy_Assistive", Consent::Authorized, true},  {"Privacy_Accessibility", Consent::Restricted, false},
        {"Privacy_DesktopFolder", Consent::Denied, true},  {"Privacy_DownloadsFolder", Consent::Restricted, false},
        {"Privacy_Photos", Consent::Restricted, true},     {"Privacy_Contacts", Consent::Denied, true},
        {"Privacy_Automation", Consent::Authorized, false}, {"Privacy_FilesAndFolders", Consent::Authorized, false},
        {"privacy_photos", Consent::Authorized, false},    {"", Consent::Authorized, false},
    };
    for (const auto& c : cases) {
        SimulatedMac mac;
        EXPECT_EQ(mac.privacy().setConsentForIdentifier(c.identifier, c.consent), c.accepted) << c.identifier;
    }
    SimulatedMac mac;
    mac.privacy().setConsentForIdentifier("Privacy_Assistive", Consent::Authorized);
    mac.privacy().setConsentForIdentifier("Privacy_Photos", Consent::Restricted);
    mac.privacy().setConsentForIdentifier("Privacy_DocumentsFolder", Consent::Authorized);
    EXPECT_TRUE(mac.privacy().isAccessibilityTrusted());
    EXPECT_EQ(mac.privacy().consent(PromptedService::Photos), Consent::Restricted);
    EXPECT_EQ(mac.privacy().folderConsent(ProtectedFolder::Documents), Consent::Authorized);
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

TEST(SimServices, BookmarksResolveWhileTheirTargetExists) {
    SimulatedMac mac;
    auto data = SimServices::bookmarkDataForPath(mac.services().photoLibraryPath());
    auto resolved = mac.services().resolveBookmarkData(data, kCFURLBookmarkResolutionWithoutUIMask);
    ASSERT_TRUE(resolved.url.has_value());
    EXPECT_TRUE(resolved.url->isFileURL);
    EXPECT_EQ(resolved.url->path, mac.services().photoLibraryPath());
    mac.fileSystem().setHomeEntry(SimPrivacy::photoLibraryDirectory, SimFileSystem::Entry::Missing);
    resolved = mac.services().resolveBookmarkData(data, kCFURLBookmarkResolutionWithoutUIMask);
    EXPECT_FALSE(resolved.url.has_value());
    EXPECT_FALSE(resolved.errorDescription.empty());
}

}  // namespace
}  // namespace vantro::sim
