#include <gtest/gtest.h>

#include <cerrno>

#include "Simulator/SimulatedMac.h"
#include "StatusCenter/VantroRequestStatusCenter.h"
#include "support/TemporaryResources.h"

namespace vantro {
namespace {

using sim::Consent;
using sim::ProtectedFolder;
using sim::SimFileSystem;
using S = VantroRequestStatusCenter;

TEST(FilesAndFoldersProbe, AuthorizedWithoutLookingUpTo1671) {
    for (double appKit : {1561.5, 1671.0, 1671.99}) {
        sim::SimulatedMac mac(test::atAppKit(appKit));
        for (auto identifier : {std::optional<std::string_view>(VantroPrivacyDesktopFolder),
                                std::optional<std::string_view>(VantroPrivacyPhotos),
                                std::optional<std::string_view>("Privacy_Nonsense"), std::optional<std::string_view>()}) {
            EXPECT_EQ(S::filesAndFoldersAuthorizationStatus(identifier), 2) << appKit;
        }
        EXPECT_EQ(mac.fileSystem().listingCount(), 0u) << appKit;
        EXPECT_TRUE(mac.privacy().prompts().empty());
    }
    sim::SimulatedMac above(test::atAppKit(1672.0));
    above.privacy().setFolderConsent(ProtectedFolder::Desktop, Consent::Denied);
    EXPECT_EQ(S::filesAndFoldersAuthorizationStatus(VantroPrivacyDesktopFolder), 1);
}

TEST(FilesAndFoldersProbe, VerdictTable) {
    enum Setup { Granted, Refused, Missing, PlainFile, Eacces, RefusedWithFullDiskAccess, CodeOneElsewhere, OuterEperm };
    struct Case {
        const char* name;
        Setup setup;
        PrivacyAuthorizationStatus status;
    } cases[] = {
        {"allowed", Granted, 2},
        {"refused", Refused, 1},
        {"missing", Missing, 0},
        {"a plain file", PlainFile, 0},
        {"EACCES on an existing folder", Eacces, 2},
        {"Full Disk Access opens a refused folder", RefusedWithFullDiskAccess, 2},
        // Only an EPERM beneath the file manager's error means refused.
        {"code 1 of another domain beneath", CodeOneElsewhere, 2},
        {"EPERM as the outer error", OuterEperm, 2},
    };
    for (const auto& c : cases) {
        sim::SimulatedMac mac;
        auto& privacy = mac.privacy();
        switch (c.setup) {
        case Granted: privacy.setFolderConsent(ProtectedFolder::Downloads, Consent::Authorized); break;
        case Refused: privacy.setFolderConsent(ProtectedFolder::Downloads, Consent::Denied); break;
        case Missing: mac.fileSystem().setHomeEntry("Downloads", SimFileSystem::Entry::Missing); break;
        case PlainFile: mac.fileSystem().setHomeEntry("Downloads", SimFileSystem::Entry::PlainFile); break;
        case Eacces:
            privacy.setFolderConsent(ProtectedFolder::Downloads, Consent::Authorized);
            mac.fileSystem().setListingError("~/Downloads", EACCES);
            break;
        case RefusedWithFullDiskAccess:
            privacy.setFolderConsent(ProtectedFolder::Downloads, Consent::Denied);
            privacy.setFullDiskAccess(true);
            break;
        case CodeOneElsewhere:
            mac.fileSystem().setListingError(
                "~/Downloads", PlatformError{"NSCocoaErrorDomain", 257,
                                             std::make_shared<PlatformError>(PlatformError{"NSOSStatusErrorDomain", 1, nullptr})});
            break;
        case OuterEperm:
            mac.fileSystem().setListingError(
                "~/Downloads", PlatformError{"NSPOSIXErrorDomain", 1,
                                             std::make_shared<PlatformError>(PlatformError{"NSPOSIXErrorDomain", 13, nullptr})});
            break;
        }
        EXPECT_EQ(S::filesAndFoldersAuthorizationStatus(VantroPrivacyDownloadsFolder), c.status) << c.name;
        EXPECT_TRUE(privacy.prompts().empty()) << c.name;
    }
}

TEST(FilesAndFoldersProbe, OtherIdentifiersHaveNoDirectories) {
    sim::SimulatedMac mac;
    for (auto identifier : {std::optional<std::string_view>(VantroPrivacyFullDiskAccess),
                            std::optional<std::string_view>(VantroPrivacyFilesAndFolders),
                            std::optional<std::string_view>("privacy_desktopfolder"), std::optional<std::string_view>()}) {
        EXPECT_EQ(S::filesAndFoldersAuthorizationStatus(identifier), 0);
    }
    EXPECT_EQ(mac.fileSystem().listingCount(), 0u);
}

TEST(FilesAndFoldersProbe, TheFirstListingAsksTheUserAndEveryCallProbesAgain) {
    sim::SimulatedMac mac;
    mac.privacy().answerNextPrompt(sim::PromptAnswer::allow(3.0));
    mac.privacy().answerNextPrompt(sim::PromptAnswer::deny(0.5));
    EXPECT_EQ(S::filesAndFoldersAuthorizationStatus(VantroPrivacyDocumentsFolder), 2);
    EXPECT_DOUBLE_EQ(mac.now(), 3.0) << "the listing waits for the user's answer";
    EXPECT_EQ(S::filesAndFoldersAuthorizationStatus(VantroPrivacyDocumentsFolder), 2);
    EXPECT_EQ(mac.privacy().prompts().size(), 1u) << "the answer is remembered";
    EXPECT_EQ(mac.fileSystem().listingsOf("~/Documents"), 2u);

    EXPECT_EQ(S::filesAndFoldersAuthorizationStatus(VantroPrivacyDesktopFolder), 1);
    EXPECT_EQ(mac.privacy().folderConsent(ProtectedFolder::Desktop), Consent::Denied);
}

TEST(FilesAndFoldersProbe, APromptNobodyAnswersRefusesThisListingOnly) {
    sim::SimulatedMac mac;
    mac.privacy().answerNextPrompt(sim::PromptAnswer::never());
    EXPECT_EQ(S::filesAndFoldersAuthorizationStatus(VantroPrivacyDesktopFolder), 1);
    EXPECT_EQ(mac.privacy().folderConsent(ProtectedFolder::Desktop), Consent::NotDetermined);
    mac.privacy().answerNextPrompt(sim::PromptAnswer::allow());
    EXPECT_EQ(S::filesAndFoldersAuthorizationStatus(VantroPrivacyDesktopFolder), 2);
    EXPECT_EQ(mac.privacy().prompts().size(), 2u);
}

}  // namespace
}  // namespace vantro
