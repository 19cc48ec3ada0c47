#include <gtest/gtest.h>

#include <cerrno>
#include <functional>
#include <string>

#include "Simulator/SimulatedMac.h"
#include "StatusCenter/VantroRequestStatusCenter.h"
#include "support/TemporaryResources.h"

namespace vantro {
namespace {

using sim::Consent;
using sim::PromptAnswer;
using sim::PromptedService;
using sim::SimServices;
using S = VantroRequestStatusCenter;

constexpr const char* photosFramework = "/System/Library/Frameworks/Photos.framework";
constexpr const char* assetsLibraryServices = "/System/Library/PrivateFrameworks/AssetsLibraryServices.framework";

std::size_t privateObjectMessages(sim::SimulatedMac& mac) {
    std::size_t n = 0;
    for (const auto& m : mac.services().messages()) n += m.rfind("PLPrivacy", 0) == 0;
    return n;
}

TEST(PhotosAuthorization, AuthorizedWithoutLoadingAnythingUpTo1561) {
    for (double appKit : {1404.5, 1561.0, 1561.99}) {
        sim::SimulatedMac mac(test::atAppKit(appKit, "10.13"));
        mac.privacy().setConsent(PromptedService::Photos, Consent::Denied);
        EXPECT_EQ(S::sharedRequestStatusCenter()->photosAuthorizationStatus(), 2) << appKit;
        EXPECT_TRUE(mac.services().messages().empty()) << appKit;
    }
}

TEST(PhotosAuthorization, WithoutThePublicClassThereIsNothingToAskFor) {
    sim::SimulatedMac mac(sim::MacConfiguration{.release = "10.14"});
    mac.services().availability().photoLibrary = false;
    auto center = S::sharedRequestStatusCenter();
    EXPECT_EQ(center->photosAuthorizationStatus(), 2);
    center->requestPhotosAuthorization(false);
    mac.runUntilIdle(5);
    EXPECT_TRUE(mac.alerts().shown().empty());
    EXPECT_TRUE(mac.privacy().prompts().empty());
    EXPECT_EQ(mac.services().loads(photosFramework), 1);
}

TEST(PhotosAuthorization, FromCatalinaOnThePublicAnswerIsMappedDirectly) {
    struct Case {
        Consent consent;
        PrivacyAuthorizationStatus status;
    } cases[] = {{Consent::NotDetermined, 0}, {Consent::Restricted, 1}, {Consent::Denied, 1}, {Consent::Authorized, 2}};
    for (const auto& c : cases) {
        for (auto appKit : {1672.0, 2575.3}) {
            sim::SimulatedMac mac(test::atAppKit(appKit));
            mac.privacy().setConsent(PromptedService::Photos, c.consent);
            EXPECT_EQ(S::sharedRequestStatusCenter()->photosAuthorizationStatus(), c.status);
            EXPECT_EQ(privateObjectMessages(mac), 0u);
            EXPECT_EQ(mac.fileSystem().listingCount(), 0u);
        }
    }
    sim::SimulatedMac later;
    later.services().availability().photoLibraryStatus = 4;  // limited access
    EXPECT_EQ(S::sharedRequestStatusCenter()->photosAuthorizationStatus(), 0);
}

TEST(PhotosAuthorization, OnMojaveOnlyAnAuthorizedAnswerIsExamined) {
    for (long code : {0L, 1L, 2L}) {
        sim::SimulatedMac mac(sim::MacConfiguration{.release = "10.14"});
        mac.services().availability().photoLibraryStatus = code;
        EXPECT_EQ(S::sharedRequestStatusCenter()->photosAuthorizationStatus(), code == 0 ? 0 : 1) << code;
        EXPECT_EQ(privateObjectMessages(mac), 0u);
        EXPECT_EQ(mac.services().loads(assetsLibraryServices), 0);
    }
}

// Each row on 10.14 with the public answer "authorized".
TEST(PhotosAuthorization, MojaveDecisionTable) {
    using Setup = std::function<void(sim::SimulatedMac&, SimServices::PhotosPrivacy&)>;
    struct Case {
        const char* name;
        Setup setup;
        PrivacyAuthorizationStatus status;
    };
    auto consent = [](Consent c) { return [c](sim::SimulatedMac& m, SimServices::PhotosPrivacy&) { m.privacy().setConsent(PromptedService::Photos, c); }; };
    auto onlyStatus = [](std::int32_t status) {
        return [status](sim::SimulatedMac&, SimServices::PhotosPrivacy& p) {
            p.respondsToAllowed = p.respondsToNotAllowed = p.respondsToRestricted = false;
            p.status = status;
        };
    };
    auto withoutObject = [](Consent c, bool fullDiskAccess) {
        return [c, fullDiskAccess](sim::SimulatedMac& m, SimServices::PhotosPrivacy& p) {
            p.classExists = false;
            m.privacy().setConsent(PromptedService::Photos, c);
            m.privacy().setFullDiskAccess(fullDiskAccess);
        };
    };
    const Case cases[] = {
        {"allowed", consent(Consent::Authorized), 2},
        {"not allowed", consent(Consent::Denied), 1},
        {"restricted", consent(Consent::Restricted), 1},
        {"allowed wins over a fixed not-allowed",
         [](sim::SimulatedMac&, SimServices::PhotosPrivacy& p) { p.allowed = true; p.notAllowed = true; }, 2},
        {"status 0", onlyStatus(0), 2},
        {"status 1", onlyStatus(1), 1},
        {"status 3", onlyStatus(3), 1},
        {"status 2", onlyStatus(2), 0},
        {"status 7", onlyStatus(7), 0},
        {"none of its answers",
         [](sim::SimulatedMac& m, SimServices::PhotosPrivacy& p) {
             p.respondsToAllowed = p.respondsToNotAllowed = p.respondsToRestricted = p.respondsToStatus = false;
             m.privacy().setConsent(PromptedService::Photos, Consent::Denied);
         },
         0},
        {"a nil shared object",
         [](sim::SimulatedMac& m, SimServices::PhotosPrivacy& p) {
             p.sharedInstanceIsNil = true;
             m.privacy().setConsent(PromptedService::Photos, Consent::Denied);
         },
         0},
        {"no private class, library refused", withoutObject(Consent::Denied, false), 1},
        {"no private class, Full Disk Access", withoutObject(Consent::Denied, true), 2},
        {"no sharedInstance, library refused",
         [](sim::SimulatedMac& m, SimServices::PhotosPrivacy& p) {
             p.respondsToSharedInstance = false;
             m.privacy().setConsent(PromptedService::Photos, Consent::Denied);
         },
         1},
        {"no private class, EACCES is 257 too",
         [](sim::SimulatedMac& m, SimServices::PhotosPrivacy& p) {
             p.classExists = false;
             m.privacy().setConsent(PromptedService::Photos, Consent::Authorized);
             m.fileSystem().setListingError(m.services().photoLibraryPath(), EACCES);
         },
         1},
        {"no private class, another failure",
         [](sim::SimulatedMac& m, SimServices::PhotosPrivacy& p) {
             p.classExists = false;
             m.privacy().setConsent(PromptedService::Photos, Consent::Denied);
             m.fileSystem().setListingError(m.services().photoLibraryPath(), EIO);
         },
         2},
        {"no private class, library readable", withoutObject(Consent::Authorized, false), 2},
        {"no private class, library unknown",
         [](sim::SimulatedMac& m, SimServices::PhotosPrivacy& p) {
             p.classExists = false;
             m.privacy().setConsent(PromptedService::Photos, Consent::Denied);
             m.services().setLibraryPreference(SimServices::LibraryPreference::Absent);
         },
         2},
        {"no private class, library gone",
         [](sim::SimulatedMac& m, SimServices::PhotosPrivacy& p) {
             p.classExists = false;
             m.privacy().setConsent(PromptedService::Photos, Consent::Denied);
             m.fileSystem().setHomeEntry(sim::SimPrivacy::photoLibraryDirectory, sim::SimFileSystem::Entry::Missing);
         },
         2},
    };
    for (const auto& c : cases) {
        sim::SimulatedMac mac(sim::MacConfiguration{.release = "10.14"});
        mac.services().availability().photoLibraryStatus = 3;
        c.setup(mac, mac.services().availability().photosPrivacy);
        EXPECT_EQ(S::sharedRequestStatusCenter()->photosAuthorizationStatus(), c.status) << c.name;
    }
}

TEST(PhotosAuthorization, ANilSharedObjectNeitherAnswersNorLetsTheLibraryBeProbed) {
    sim::SimulatedMac mac(sim::MacConfiguration{.release = "10.14"});
    mac.services().availability().photoLibraryStatus = 3;
    mac.services().availability().photosPrivacy.sharedInstanceIsNil = true;
    EXPECT_EQ(S::sharedRequestStatusCenter()->photosAuthorizationStatus(), 0);
    EXPECT_EQ(privateObjectMessages(mac), 1u);  // sharedInstance only
    EXPECT_EQ(mac.fileSystem().listingCount(), 0u);
}

TEST(PhotosAuthorization, WithoutTrustInThePrivateObjectTheLibraryIsProbed) {
    sim::SimulatedMac mac(sim::MacConfiguration{.release = "10.14"});
    mac.privacy().setConsent(PromptedService::Photos, Consent::Denied);  // reads "authorized" publicly on 10.14
    auto center = S::sharedRequestStatusCenter();
    center->setCanRelyOnPLPrivacyValue(false);
    EXPECT_EQ(center->photosAuthorizationStatus(), 1);
    EXPECT_EQ(privateObjectMessages(mac), 0u);
    EXPECT_EQ(mac.services().loads(assetsLibraryServices), 0);
    EXPECT_EQ(mac.fileSystem().listingsOf(mac.services().photoLibraryPath()), 1u);
}

TEST(PhotosAuthorization, AfterOneCompletedRequestThePrivateObjectIsNoLongerConsulted) {
    // Both answers read "authorized" publicly on 10.14.
    for (Consent consent : {Consent::Authorized, Consent::Denied}) {
        sim::SimulatedMac mac(sim::MacConfiguration{.release = "10.14"});
        mac.privacy().setConsent(PromptedService::Photos, consent);
        const PrivacyAuthorizationStatus expected = consent == Consent::Authorized ? 2 : 1;
        auto center = S::sharedRequestStatusCenter();
        EXPECT_EQ(center->photosAuthorizationStatus(), expected);
        EXPECT_GT(privateObjectMessages(mac), 0u);

        center->requestPhotosAuthorization(true);
        EXPECT_TRUE(center->canRelyOnPLPrivacyValue()) << "not before the answer is back";
        mac.runUntilIdle(10);
        EXPECT_FALSE(center->canRelyOnPLPrivacyValue());
        const std::size_t before = privateObjectMessages(mac);
        EXPECT_EQ(center->photosAuthorizationStatus(), expected);
        EXPECT_EQ(privateObjectMessages(mac), before);
        EXPECT_TRUE(mac.privacy().prompts().empty());
    }
}

TEST(PhotosAuthorization, AGrantOnMojaveTouchesTheLibraryOffTheMainThread) {
    sim::SimulatedMac mac(sim::MacConfiguration{.release = "10.14"});
    mac.privacy().answerNextPrompt(PromptAnswer::allow(0));
    auto center = S::sharedRequestStatusCenter();
    center->requestPhotosAuthorization(true);
    mac.runOnePass();  // the user allows
    mac.runOnePass();  // the handler, on a system queue
    EXPECT_EQ(mac.fileSystem().listingsOf(mac.services().photoLibraryPath()), 1u);
    EXPECT_TRUE(center->canRelyOnPLPrivacyValue()) << "the flag changes on the main queue only";
    mac.runOnePass();
    EXPECT_FALSE(center->canRelyOnPLPrivacyValue());
}

TEST(PhotosAuthorization, RequestsAlertOnceWhenLoudAndRefused) {
    struct Case {
        std::string release;
        Consent before;
        std::optional<PromptAnswer> answer;
        bool silent;
        std::size_t alerts;
    } cases[] = {
        {"10.15", Consent::NotDetermined, PromptAnswer::deny(), false, 1},
        {"10.15", Consent::NotDetermined, PromptAnswer::deny(), true, 0},
        {"10.15", Consent::NotDetermined, PromptAnswer::allow(), false, 0},
        {"15", Consent::Restricted, std::nullopt, false, 1},
        {"10.14", Consent::Denied, std::nullopt, false, 1},
        {"10.15", Consent::NotDetermined, PromptAnswer::never(), false, 0},
    };
    for (const auto& c : cases) {
        sim::SimulatedMac mac(sim::MacConfiguration{.release = c.release});
        mac.privacy().setConsent(PromptedService::Photos, c.before);
        if (c.answer) mac.privacy().answerNextPrompt(*c.answer);
        auto center = S::sharedRequestStatusCenter();
        center->requestPhotosAuthorization(c.silent);
        mac.runUntilIdle(30);
        ASSERT_EQ(mac.alerts().shown().size(), c.alerts) << c.release;
        for (const auto& shown : mac.alerts().shown()) EXPECT_TRUE(shown.onMainThread);
        EXPECT_EQ(center->canRelyOnPLPrivacyValue(), c.answer && c.answer->choice == PromptAnswer::Choice::Never);
    }
}

TEST(PhotosAuthorization, TheAnswerFindsAStatusCenterThatIsGoneAndDoesNothing) {
    sim::SimulatedMac mac;
    auto center = makeShared<VantroRequestStatusCenter>();
    std::weak_ptr<VantroRequestStatusCenter> weak = center;
    mac.privacy().answerNextPrompt(PromptAnswer::deny(0));
    center->requestPhotosAuthorization(false);
    center.reset();
    mac.runOnePass();  // the user refuses
    mac.runOnePass();  // the handler posts its block, holding the center weakly
    EXPECT_TRUE(weak.expired());
    mac.runUntilIdle(5);
    EXPECT_TRUE(mac.alerts().shown().empty());
}

TEST(PhotosAuthorization, TheFrameworksAreLoadedOncePerProcess) {
    sim::SimulatedMac mac(sim::MacConfiguration{.release = "10.14"});
    mac.services().availability().photoLibraryStatus = 3;
    auto center = S::sharedRequestStatusCenter();
    for (int i = 0; i < 3; ++i) center->photosAuthorizationStatus();
    center->requestPhotosAuthorization(true);
    S::loadPhotosFramework();
    S::loadAssetsLibraryServicesFramework();
    EXPECT_EQ(mac.services().loads(photosFramework), 1);
    EXPECT_EQ(mac.services().loads(assetsLibraryServices), 1);
}

TEST(PhotosAuthorization, AClassAlreadyThereIsNotLoadedAgain) {
    sim::SimulatedMac mac(sim::MacConfiguration{.release = "10.15"});
    mac.services().loadBundleAtPath(photosFramework);
    S::loadPhotosFramework();
    EXPECT_EQ(mac.services().loads(photosFramework), 1);
}

TEST(PhotosAuthorization, TheLibraryPathComesFromThePublicURLFirst) {
    sim::SimulatedMac mac;
    S::loadPhotosFramework();
    mac.services().availability().systemPhotoLibraryURL = PlatformURL{true, "/Volumes/Photos/../Library.photoslibrary"};
    EXPECT_EQ(S::photosSystemLibraryPath(), "/Volumes/Photos/../Library.photoslibrary") << "as it stands";
    EXPECT_EQ(mac.services().count("CFURLCreateByResolvingBookmarkData options 256"), 0u);

    mac.services().availability().systemPhotoLibraryURL = PlatformURL{false, "/photos"};
    EXPECT_EQ(S::photosSystemLibraryPath(), mac.services().photoLibraryPath());
    EXPECT_EQ(mac.services().count("CFURLCreateByResolvingBookmarkData options 256"), 1u);
}

TEST(PhotosAuthorization, TheDaemonsBookmark) {
    struct Case {
        const char* name;
        SimServices::LibraryPreference preference;
        bool found;
        bool logs;
    } cases[] = {
        {"valid", SimServices::LibraryPreference::ValidBookmark, true, false},
        {"unresolvable", SimServices::LibraryPreference::UnresolvableBookmark, false, true},
        {"not data", SimServices::LibraryPreference::NotData, false, false},
        {"absent", SimServices::LibraryPreference::Absent, false, false},
    };
    for (const auto& c : cases) {
        sim::SimulatedMac mac;
        mac.services().setLibraryPreference(c.preference);
        auto path = S::photosSystemLibraryPath();
        EXPECT_EQ(path.has_value(), c.found) << c.name;
        if (c.found) {
            EXPECT_EQ(*path, mac.services().photoLibraryPath());
        }
        std::vector<std::string> expected;
        if (c.logs)
            expected.push_back("Could not decode kRDLibraryKey_Canonical value in com.apple.photolibraryd. Error: "
                               "The file couldn't be opened because it isn't in the correct format.");
        EXPECT_EQ(mac.log().lines(), expected) << c.name;
    }
}

}  // namespace
}  // namespace vantro
