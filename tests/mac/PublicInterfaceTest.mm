// The public Objective-C classes on a real Mac: the exported vocabulary is the
// core's, the shared instance is one, and an Objective-C subclass's
// redefinition of a per-service operation is what dispatch by identifier runs.

#import <Vantro/Vantro.h>

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "Vocabulary/NewerPrivacyCategories.h"
#include "Vocabulary/VantroPrivacy.h"

namespace {

std::string text(NSString* string) { return string.UTF8String ? string.UTF8String : ""; }

TEST(PublicInterface, ExportedConstantsAreTheCoresValues) {
    NSString* exported[] = {
        VantroPrivacyFullDiskAccess,   VantroPrivacyAutomation,      VantroPrivacyAssistive,
        VantroPrivacyLocationServices, VantroPrivacyContacts,        VantroPrivacyDiagnostics,
        VantroPrivacyCalendars,        VantroPrivacyReminders,       VantroPrivacyPhotos,
        VantroPrivacyAccessibility,    VantroPrivacyFilesAndFolders, VantroPrivacyDesktopFolder,
        VantroPrivacyDocumentsFolder,  VantroPrivacyDownloadsFolder, VantroPrivacyNetworkVolume,
        VantroPrivacyRemovableVolume,
    };
    ASSERT_EQ(std::size(exported), vantro::VantroPrivacyAllIdentifiers.size());
    for (std::size_t i = 0; i < std::size(exported); ++i)
        EXPECT_EQ(text(exported[i]), vantro::VantroPrivacyAllIdentifiers[i]);
    NSString* newer[] = {VantroPrivacyScreenRecording, VantroPrivacyInputMonitoring, VantroPrivacyCamera,
                         VantroPrivacyMicrophone, VantroPrivacyBluetooth};
    ASSERT_EQ(std::size(newer), vantro::VantroPrivacyNewerIdentifiers.size());
    for (std::size_t i = 0; i < std::size(newer); ++i) EXPECT_EQ(text(newer[i]), vantro::VantroPrivacyNewerIdentifiers[i]);

    std::pair<NSString*, std::string_view> keys[] = {
        {PrivacyCategoryIdentifierKey, vantro::PrivacyCategoryIdentifierKey},
        {PrivacyCategoryLabelKey, vantro::PrivacyCategoryLabelKey},
        {PrivacyCategoryReasonKey, vantro::PrivacyCategoryReasonKey},
        {PrivacyCategoryStatusKey, vantro::PrivacyCategoryStatusKey},
        {kContactsAccessRequested, vantro::kContactsAccessRequested},
        {kDesktopFolderAccessRequested, vantro::kDesktopFolderAccessRequested},
        {kDocumentsFolderAccessRequested, vantro::kDocumentsFolderAccessRequested},
        {kDownloadsFolderAccessRequested, vantro::kDownloadsFolderAccessRequested},
        {kScreenRecordingAccessRequested, vantro::kScreenRecordingAccessRequested},
        {IsOverlayShownContext, vantro::IsOverlayShownContext},
    };
    for (const auto& [objc, core] : keys) EXPECT_EQ(text(objc), core);

    EXPECT_EQ(PrivacyAuthorizationStatusAuthorized, vantro::PrivacyAuthorizationStatusAuthorized);
    EXPECT_EQ(PrivacyAuthorizationRequestTypeCheck, vantro::PrivacyAuthorizationRequestTypeCheck);
}

TEST(PublicInterface, ConcurrentFirstCallsGiveOneSharedInstanceWithBothFlagsSet) {
    std::vector<void*> seen(8);
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < seen.size(); ++i)
        threads.emplace_back([&seen, i] { seen[i] = (__bridge void*)VantroRequestStatusCenter.sharedRequestStatusCenter; });
    for (auto& thread : threads) thread.join();
    for (void* instance : seen) EXPECT_EQ(instance, seen.front());
    VantroRequestStatusCenter* shared = VantroRequestStatusCenter.sharedRequestStatusCenter;
    EXPECT_TRUE(shared.allowPotentiallyVerboseRechecks);
    EXPECT_TRUE(shared.canRelyOnPLPrivacyValue);
}

TEST(PublicInterface, UnsupportedIdentifiersAnswerNotDeterminedAndRequestNothing) {
    VantroRequestStatusCenter* center = [[VantroRequestStatusCenter alloc] init];
    for (NSString* identifier in @[ VantroPrivacyAutomation, VantroPrivacyLocationServices, @"Privacy_Bogus" ])
        EXPECT_EQ([center privacyAuthorizationStatusForIdentifier:identifier], PrivacyAuthorizationStatusNotDetermined);
    EXPECT_EQ([center privacyAuthorizationStatusForIdentifier:nil], PrivacyAuthorizationStatusNotDetermined);
    [center requestPrivacyAuthorizationForIdentifier:nil silent:YES];
}

}  // namespace

// A host's subclass that answers Calendars itself and records its requests.
@interface VantroTestStatusCenter : VantroRequestStatusCenter
@property (nonatomic) NSInteger calendarsRequests;
@property (nonatomic) BOOL lastSilent;
@property (nonatomic) NSInteger cameraRequests;
@end

@implementation VantroTestStatusCenter

- (PrivacyAuthorizationStatus)calendarsAuthorizationStatus {
    return PrivacyAuthorizationStatusDenied;
}

- (void)requestCalendarsAuthorization:(BOOL)silent {
    self.calendarsRequests += 1;
    self.lastSilent = silent;
}

- (PrivacyAuthorizationStatus)cameraAuthorizationStatus {
    return PrivacyAuthorizationStatusDenied;
}

- (void)requestCameraAuthorization:(BOOL)silent {
    (void)silent;
    self.cameraRequests += 1;
}

@end

namespace {

TEST(PublicInterface, DispatchByIdentifierRunsTheSubclassesRedefinition) {
    VantroTestStatusCenter* center = [[VantroTestStatusCenter alloc] init];
    EXPECT_EQ([center privacyAuthorizationStatusForIdentifier:VantroPrivacyCalendars], PrivacyAuthorizationStatusDenied);
    [center requestPrivacyAuthorizationForIdentifier:VantroPrivacyCalendars silent:YES];
    EXPECT_EQ(center.calendarsRequests, 1);
    EXPECT_TRUE(center.lastSilent);
    // The operations the subclass leaves alone are the framework's: an
    // identifier that shares Accessibility's operation answers as it does.
    EXPECT_EQ([center privacyAuthorizationStatusForIdentifier:VantroPrivacyAssistive],
              [center privacyAuthorizationStatusForIdentifier:VantroPrivacyAccessibility]);
}

TEST(PublicInterface, TheNewerCategoriesAreServedOnlyOnceTheHostTurnsThemOn) {
    VantroTestStatusCenter* center = [[VantroTestStatusCenter alloc] init];
    EXPECT_FALSE(VantroRequestStatusCenter.servesNewerPrivacyCategories);
    EXPECT_EQ([center privacyAuthorizationStatusForIdentifier:VantroPrivacyCamera], PrivacyAuthorizationStatusNotDetermined);
    [center requestPrivacyAuthorizationForIdentifier:VantroPrivacyCamera silent:YES];
    EXPECT_EQ(center.cameraRequests, 0);

    VantroRequestStatusCenter.servesNewerPrivacyCategories = YES;
    EXPECT_EQ([center privacyAuthorizationStatusForIdentifier:VantroPrivacyCamera], PrivacyAuthorizationStatusDenied);
    [center requestPrivacyAuthorizationForIdentifier:VantroPrivacyCamera silent:YES];
    EXPECT_EQ(center.cameraRequests, 1);
    VantroRequestStatusCenter.servesNewerPrivacyCategories = NO;
}

TEST(PublicInterface, AutomationOfAMissingApplication) {
    NSRunningApplication* target = NSRunningApplication.currentApplication;
    BOOL permitted = [Vantro checkPermissionToAutomate:@"org.vantro.no-such-application" runningApplication:&target];
    // Nothing to launch: either the system cannot tell (YES, untouched) or
    // it says the process is not there (NO, and the target is nil).
    if (permitted)
        EXPECT_EQ(target, NSRunningApplication.currentApplication);
    else
        EXPECT_EQ(target, nil);
}

}  // namespace

namespace {

// The watch list is the process's one list, whichever instance sets it, and
// its notification's names are the documented ones.
TEST(PublicInterface, TheWatchListIsOnePerProcessWithoutDuplicates) {
    VantroRequestStatusCenter* shared = VantroRequestStatusCenter.sharedRequestStatusCenter;
    VantroRequestStatusCenter* other = [[VantroRequestStatusCenter alloc] init];
    other.watchedPrivacyCategoryIdentifiers = @[ VantroPrivacyCalendars, VantroPrivacyContacts, VantroPrivacyCalendars ];
    EXPECT_TRUE([shared.watchedPrivacyCategoryIdentifiers isEqualToArray:(@[ VantroPrivacyCalendars, VantroPrivacyContacts ])]);
    shared.watchedPrivacyCategoryIdentifiers = @[];
    EXPECT_EQ(other.watchedPrivacyCategoryIdentifiers.count, 0u);
    EXPECT_EQ(text(VantroPrivacyStatusDidChangeNotification), "VantroPrivacyStatusDidChangeNotification");
    EXPECT_EQ(text(VantroPrivacyStatusIdentifierKey), "identifier");
    EXPECT_EQ(text(VantroPrivacyStatusOldStatusKey), "oldStatus");
    EXPECT_EQ(text(VantroPrivacyStatusNewStatusKey), "newStatus");
}

}  // namespace
