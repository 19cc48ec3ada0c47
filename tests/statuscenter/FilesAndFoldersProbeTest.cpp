#include <gtest/gtest.h>

#include <cerrno>

#include "statuscenter/CenterFixture.h"

namespace vantro {
namespace {

using sim::Consent;
using sim::ProtectedFolder;
using sim::SimFileSystem;
using S = VantroRequestStatusCenter;
using Identifier = std::optional<std::string_view>;

// Up to 1671 every identifier is authorized without looking; above, only the
// three folders have directories, and the identifier must match exactly.
TEST(FilesAndFoldersProbe, AuthorizedWithoutLookingUpTo1671AndOnlyTheFoldersHaveDirectories) {
    struct Case { double appKit; Identifier identifier; PrivacyAuthorizationStatus status; } cases[] = {
        {1561.5, VantroPrivacyDesktopFolder, 2}, {1671.0, VantroPrivacyPhotos, 2}, {1671.99, "Privacy_Nonsense", 2},
        {1671.99, std::nullopt, 2},              {1672.0, VantroPrivacyFullDiskAccess, 0}, {1672.0, VantroPrivacyFilesAndFolders, 0},
        {1672.0, "privacy_desktopfolder", 0},   {1672.0, std::nullopt, 0},
    };
    for (const auto& c : cases) {
        sim::SimulatedMac mac(test::atAppKit(c.appKit));
        mac.privacy().setFolderConsent(ProtectedFolder::Desktop, Consent::Denied);
        EXPECT_EQ(S::filesAndFoldersAuthorizationStatus(c.identifier), c.status) << c.appKit << " " << c.identifier.value_or("nil");
        EXPECT_EQ(mac.fileSystem().listingCount(), 0u) << c.appKit;
        EXPECT_TRUE(mac.privacy().prompts().empty());
    }
    sim::SimulatedMac above(test::atAppKit(1672.0));
    above.privacy().setFolderConsent(ProtectedFolder::Desktop, Consent::Denied);
    EXPECT_EQ(S::filesAndFoldersAuthorizationStatus(VantroPrivacyDesktopFolder), 1);
}

PlatformError nested(const char* domain, long code, long innerCode, const char* innerDomain) {
    return PlatformError{domain, code, std::make_shared<PlatformError>(PlatformError{innerDomain, innerCode, nullptr})};
}

TEST(FilesAndFoldersProbe, VerdictTable) {
    using Setup = void (*)(sim::SimulatedMac&);
    struct Case { const char* name; Setup setup; PrivacyAuthorizationStatus status; } cases[] = {
        {"allowed", [](sim::SimulatedMac& m) { m.privacy().setFolderConsent(ProtectedFolder::Downloads, Consent::Authorized); }, 2},
        {"refused", [](sim::SimulatedMac& m) { m.privacy().setFolderConsent(ProtectedFolder::Downloads, Consent::Denied); }, 1},
        {"missing", [](sim::SimulatedMac& m) { m.fileSystem().setHomeEntry("Downloads", SimFileSystem::Entry::Missing); }, 0},
        {"a plain file", [](sim::SimulatedMac& m) { m.fileSystem().setHomeEntry("Downloads", SimFileSystem::Entry::PlainFile); }, 0},
        {"EACCES on an existing folder",
         [](sim::SimulatedMac& m) {
             m.privacy().setFolderConsent(ProtectedFolder::Downloads, Consent::Authorized);
             m.fileSystem().setListingError("~/Downloads", EACCES);
         },
         2},
        {"Full Disk Access opens a refused folder",
         [](sim::SimulatedMac& m) {
             m.privacy().setFolderConsent(ProtectedFolder::Downloads, Consent::Denied);
             m.privacy().setFullDiskAccess(true);
         },
         2},
        // Only an EPERM beneath the file manager's error means refused.
        {"code 1 of another domain beneath",
         [](sim::SimulatedMac& m) { m.fileSystem().setListingError("~/Downloads", nested("NSCocoaErrorDomain", 257, 1, "NSOSStatusErrorDomain")); }, 2},
        {"EPERM as the outer error",
         [](sim::SimulatedMac& m) { m.fileSystem().setListingError("~/Downloads", nested("NSPOSIXErrorDomain", 1, 13, "NSPOSIXErrorDomain")); }, 2},
    };
    for (const auto& c : cases) {
        sim::SimulatedMac mac;
        c.setup(mac);
        EXPECT_EQ(S::filesAndFoldersAuthorizationStatus(VantroPrivacyDownloadsFolder), c.status) << c.name;
        EXPECT_TRUE(mac.privacy().prompts().empty()) << c.name;
    }
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
