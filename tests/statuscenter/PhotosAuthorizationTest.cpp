#include <gtest/gtest.h>

#include <cerrno>
#include <string>

#include "statuscenter/CenterFixture.h"

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

// Up to 1561 Photos is authorized without asking; from 10.15 the public
// answer is mapped directly; on 10.14 only an "authorized" public answer is
// examined further.
TEST(PhotosAuthorization, ThePublicAnswerAloneDecidesExceptAnAuthorizedOneOnMojave) {
    struct Case { double appKit; const char* release; Consent consent; std::optional<long> code; PrivacyAuthorizationStatus status; } cases[] = {
        {1404.5, "10.13", Consent::Denied, {}, 2},     {1561.0, "10.13", Consent::Denied, {}, 2},
        {1561.99, "10.13", Consent::Denied, {}, 2},    {1672.0, "10.15", Consent::NotDetermined, {}, 0},
        {1672.0, "10.15", Consent::Restricted, {}, 1}, {2575.3, "15", Consent::Denied, {}, 1},
        {2575.3, "15", Consent::Authorized, {}, 2},    {1672.0, "10.15", Consent::Authorized, 4, 0},  // limited access
        {1671.0, "10.14", Consent::Authorized, 0, 0},  {1671.0, "10.14", Consent::Authorized, 1, 1},
        {1671.0, "10.14", Consent::Authorized, 2, 1},
    };
    for (const auto& c : cases) {
        sim::SimulatedMac mac(test::atAppKit(c.appKit, c.release));
        mac.privacy().setConsent(PromptedService::Photos, c.consent);
        if (c.code) mac.services().availability().photoLibraryStatus = *c.code;
        EXPECT_EQ(S::sharedRequestStatusCenter()->photosAuthorizationStatus(), c.status) << c.appKit << " " << c.code.value_or(-1);
        EXPECT_EQ(privateObjectMessages(mac), 0u) << c.appKit;
        EXPECT_EQ(mac.services().loads(assetsLibraryServices), 0) << c.appKit;
        EXPECT_EQ(mac.fileSystem().listingCount(), 0u) << c.appKit;
        if (c.appKit < 1562) {
            EXPECT_TRUE(mac.services().messages().empty()) << c.appKit;
        }
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

// Each row on 10.14 with the public answer "authorized".
TEST(PhotosAuthorization, MojaveDecisionTable) {
    using Tweak = void (*)(SimServices::PhotosPrivacy&);
    const Tweak asIs = [](SimServices::PhotosPrivacy&) {};
    const Tweak noClass = [](SimServices::PhotosPrivacy& p) { p.classExists = false; };
    const Tweak onlyStatus = [](SimServices::PhotosPrivacy& p) { p.respondsToAllowed = p.respondsToNotAllowed = p.respondsToRestricted = false; };
    enum Library { Readable, Unknown, Gone };
    struct Case { const char* name; Consent consent; Tweak tweak; std::optional<std::int32_t> status; PrivacyAuthorizationStatus expected;
                  bool fullDiskAccess = false; int listingError = 0; Library library = Readable; } cases[] = {
        {"allowed", Consent::Authorized, asIs, {}, 2},
        {"not allowed", Consent::Denied, asIs, {}, 1},
        {"restricted", Consent::Restricted, asIs, {}, 1},
        {"allowed wins over a fixed not-allowed", Consent::NotDetermined,
         [](SimServices::PhotosPrivacy& p) { p.allowed = p.notAllowed = true; }, {}, 2},
        {"status 0", Consent::NotDetermined, onlyStatus, 0, 2},
        {"status 1", Consent::NotDetermined, onlyStatus, 1, 1},
        {"status 3", Consent::NotDetermined, onlyStatus, 3, 1},
        {"status 2", Consent::NotDetermined, onlyStatus, 2, 0},
        {"status 7", Consent::NotDetermined, onlyStatus, 7, 0},
        {"none of its answers", Consent::Denied,
         [](SimServices::PhotosPrivacy& p) { p.respondsToAllowed = p.respondsToNotAllowed = p.respondsToRestricted = p.respondsToStatus = false; },
         {}, 0},
        {"a nil shared object", Consent::Denied, [](SimServices::PhotosPrivacy& p) { p.sharedInstanceIsNil = true; }, {}, 0},
        {"no sharedInstance, library refused", Consent::Denied,
         [](SimServices::PhotosPrivacy& p) { p.respondsToSharedInstance = false; }, {}, 1},
        {"no private class, library refused", Consent::Denied, noClass, {}, 1},
        {"no private class, Full Disk Access", Consent::Denied, noClass, {}, 2, true},
        {"no private class, EACCES is 257 too", Consent::Authorized, noClass, {}, 1, false, EACCES},
        {"no private class, another failure", Consent::Denied, noClass, {}, 2, false, EIO},
        {"no private class, library readable", Consent::Authorized, noClass, {}, 2},
        {"no private class, library unknown", Consent::Denied, noClass, {}, 2, false, 0, Unknown},
        {"no private class, library gone", Consent::Denied, noClass, {}, 2, false, 0, Gone},
    };
    for (const auto& c : cases) {
        sim::SimulatedMac mac(sim::MacConfiguration{.release = "10.14"});
        mac.services().availability().photoLibraryStatus = 3;
        mac.privacy().setConsent(PromptedService::Photos, c.consent);
        mac.privacy().setFullDiskAccess(c.fullDiskAccess);
        auto& privacy = mac.services().availability().photosPrivacy;
        c.tweak(privacy);
        if (c.status) privacy.status = *c.status;
        if (c.listingError) mac.fileSystem().setListingError(mac.services().photoLibraryPath(), c.listingError);
        if (c.library == Unknown) mac.services().setLibraryPreference(SimServices::LibraryPreference::Absent);
        if (c.library == Gone) mac.fileSystem().setHomeEntry(sim::SimPrivacy::photoLibraryDirectory, sim::SimFileSystem::Entry::Missing);
        EXPECT_EQ(S::sharedRequestStatusCenter()->photosAuthorizationStatus(), c.expected) << c.name;
        // With Full Disk Access the library is not listed to find a refusal.
        if (c.fullDiskAccess) {
            EXPECT_EQ(mac.fileSystem().listingsOf(mac.services().photoLibraryPath()), 0u) << c.name;
        }
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

TEST(PhotosAuthorization, TheLibrarysListingRefusesOnlyWithCode257OfAnyDomain) {
    // Unlike the folders' probe, the error's own code decides; its domain and
    // what lies beneath it are not looked at.
    auto error = [](const char* domain, std::int64_t code, std::int64_t underlyingPosix) {
        return PlatformError{domain, code,
                             underlyingPosix ? std::make_shared<PlatformError>(PlatformError{"NSPOSIXErrorDomain", underlyingPosix, nullptr})
                                             : nullptr};
    };
    struct Case {
        const char* name;
        PlatformError listing;
        PrivacyAuthorizationStatus expected;
    } cases[] = {
        {"257 over EPERM", error("NSCocoaErrorDomain", 257, 1), 1},
        {"257 of another domain, nothing beneath", error("NSOSStatusErrorDomain", 257, 0), 1},
        {"another code over EPERM", error("NSCocoaErrorDomain", 256, 1), 2},
    };
    for (const auto& c : cases) {
        sim::SimulatedMac mac(sim::MacConfiguration{.release = "10.14"});
        mac.privacy().setConsent(PromptedService::Photos, Consent::Authorized);
        auto center = S::sharedRequestStatusCenter();
        center->setCanRelyOnPLPrivacyValue(false);
        mac.fileSystem().setListingError(mac.services().photoLibraryPath(), c.listing);
        EXPECT_EQ(center->photosAuthorizationStatus(), c.expected) << c.name;
    }
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

// The App Store build knows PHPhotoLibrary only: on 10.14 its "authorized"
// stands whatever the user decided, and nothing private is asked for by the
// status, the request, the library's path or the framework loaders.
TEST(PhotosAuthorization, TheAppStoreBuildTakesThePublicAnswerAndAsksForNothingPrivate) {
    struct Case { const char* release; Consent consent; bool appStore; PrivacyAuthorizationStatus status; } cases[] = {
        {"10.14", Consent::Denied, false, 1},       {"10.14", Consent::Denied, true, 2},
        {"10.14", Consent::Authorized, true, 2},    {"10.14", Consent::Restricted, true, 1},
        {"10.14", Consent::NotDetermined, true, 0}, {"10.15", Consent::Denied, true, 1},
    };
    for (const auto& c : cases) {
        const std::string name = std::string(c.release) + (c.appStore ? " App Store" : "") + " consent " +
                                 std::to_string(static_cast<int>(c.consent));
        sim::SimulatedMac mac(sim::MacConfiguration{.release = c.release, .appStoreBuild = c.appStore});
        mac.privacy().setConsent(PromptedService::Photos, c.consent);
        mac.privacy().answerNextPrompt(PromptAnswer::allow());
        mac.services().availability().systemPhotoLibraryURL = PlatformURL{true, "/Photos/Library.photoslibrary"};
        auto center = S::sharedRequestStatusCenter();
        EXPECT_EQ(center->photosAuthorizationStatus(), c.status) << name;
        center->requestPhotosAuthorization(true);
        mac.runUntilIdle(10);
        S::loadAssetsLibraryServicesFramework();
        const auto path = S::photosSystemLibraryPath();
        if (!c.appStore) {
            EXPECT_GT(privateObjectMessages(mac), 0u) << name;
            continue;
        }
        EXPECT_EQ(privateObjectMessages(mac), 0u) << name;
        EXPECT_EQ(mac.services().loads(assetsLibraryServices), 0) << name;
        EXPECT_EQ(mac.services().count("PHPhotoLibrary systemPhotoLibraryURL"), 0u) << name;
        EXPECT_EQ(mac.fileSystem().listingsOf(mac.services().photoLibraryPath()), 0u) << name;
        EXPECT_EQ(path, mac.services().photoLibraryPath()) << name << ": the daemon's bookmark, not the private URL";
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
    struct Case { std::string release; Consent before; std::optional<PromptAnswer> answer; bool silent; std::size_t alerts; } cases[] = {
        {"10.15", Consent::NotDetermined, PromptAnswer::deny(), false, 1}, {"10.15", Consent::NotDetermined, PromptAnswer::deny(), true, 0},
        {"10.15", Consent::NotDetermined, PromptAnswer::allow(), false, 0}, {"15", Consent::Restricted, std::nullopt, false, 1},
        {"10.14", Consent::Denied, std::nullopt, false, 1},                 {"10.15", Consent::NotDetermined, PromptAnswer::never(), false, 0},
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

TEST(PhotosAuthorization, TheFrameworksAreLoadedOncePerProcessAndNotAtAllWhenTheirClassIsThere) {
    sim::SimulatedMac mac(sim::MacConfiguration{.release = "10.14"});
    mac.services().availability().photoLibraryStatus = 3;
    auto center = S::sharedRequestStatusCenter();
    for (int i = 0; i < 3; ++i) center->photosAuthorizationStatus();
    center->requestPhotosAuthorization(true);
    S::loadPhotosFramework();
    S::loadAssetsLibraryServicesFramework();
    EXPECT_EQ(mac.services().loads(photosFramework), 1);
    EXPECT_EQ(mac.services().loads(assetsLibraryServices), 1);

    sim::SimulatedMac loaded(sim::MacConfiguration{.release = "10.15"});
    loaded.services().loadBundleAtPath(photosFramework);
    S::loadPhotosFramework();
    EXPECT_EQ(loaded.services().loads(photosFramework), 1);
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
    using P = SimServices::LibraryPreference;
    struct Case { const char* name; P preference; bool found, logs; } cases[] = {
        {"valid", P::ValidBookmark, true, false}, {"unresolvable", P::UnresolvableBookmark, false, true},
        {"not data", P::NotData, false, false},   {"absent", P::Absent, false, false},
    };
    for (const auto& c : cases) {
        sim::SimulatedMac mac;
        mac.services().setLibraryPreference(c.preference);
        EXPECT_EQ(S::photosSystemLibraryPath(), c.found ? std::optional(mac.services().photoLibraryPath()) : std::nullopt) << c.name;
        std::vector<std::string> expected;
        if (c.logs)
            expected.push_back("Could not decode kRDLibraryKey_Canonical value in com.apple.photolibraryd. Error: "
                               "The file couldn't be opened because it isn't in the correct format.");
        EXPECT_EQ(mac.log().lines(), expected) << c.name;
    }
}

}  // namespace
}  // namespace vantro
