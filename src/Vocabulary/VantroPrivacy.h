#pragma once

#include <array>
#include <string_view>

namespace vantro {

// A privacy category's identifier: the anchor name of its section in the
// Security & Privacy preferences, also the key of its prompt, label and
// request type. Compared by content.
using PrivacyCategoryIdentifier = std::string_view;

inline constexpr PrivacyCategoryIdentifier VantroPrivacyFullDiskAccess = "Privacy_AllFiles";
inline constexpr PrivacyCategoryIdentifier VantroPrivacyAutomation = "Privacy_Automation";
inline constexpr PrivacyCategoryIdentifier VantroPrivacyAssistive = "Privacy_Assistive";
inline constexpr PrivacyCategoryIdentifier VantroPrivacyLocationServices = "Privacy_LocationServices";
inline constexpr PrivacyCategoryIdentifier VantroPrivacyContacts = "Privacy_Contacts";
inline constexpr PrivacyCategoryIdentifier VantroPrivacyDiagnostics = "Privacy_Diagnostics";
inline constexpr PrivacyCategoryIdentifier VantroPrivacyCalendars = "Privacy_Calendars";
inline constexpr PrivacyCategoryIdentifier VantroPrivacyReminders = "Privacy_Reminders";
inline constexpr PrivacyCategoryIdentifier VantroPrivacyPhotos = "Privacy_Photos";
inline constexpr PrivacyCategoryIdentifier VantroPrivacyAccessibility = "Privacy_Accessibility";
inline constexpr PrivacyCategoryIdentifier VantroPrivacyFilesAndFolders = "Privacy_FilesAndFolders";
inline constexpr PrivacyCategoryIdentifier VantroPrivacyDesktopFolder = "Privacy_DesktopFolder";
inline constexpr PrivacyCategoryIdentifier VantroPrivacyDocumentsFolder = "Privacy_DocumentsFolder";
inline constexpr PrivacyCategoryIdentifier VantroPrivacyDownloadsFolder = "Privacy_DownloadsFolder";
inline constexpr PrivacyCategoryIdentifier VantroPrivacyNetworkVolume = "Privacy_NetworkVolume";
inline constexpr PrivacyCategoryIdentifier VantroPrivacyRemovableVolume = "Privacy_RemovableVolume";

// The sixteen exported identifiers, in the order the framework declares them.
inline constexpr std::array<PrivacyCategoryIdentifier, 16> VantroPrivacyAllIdentifiers = {
    VantroPrivacyFullDiskAccess,   VantroPrivacyAutomation,      VantroPrivacyAssistive,
    VantroPrivacyLocationServices, VantroPrivacyContacts,        VantroPrivacyDiagnostics,
    VantroPrivacyCalendars,        VantroPrivacyReminders,       VantroPrivacyPhotos,
    VantroPrivacyAccessibility,    VantroPrivacyFilesAndFolders, VantroPrivacyDesktopFolder,
    VantroPrivacyDocumentsFolder,  VantroPrivacyDownloadsFolder, VantroPrivacyNetworkVolume,
    VantroPrivacyRemovableVolume,
};

// Whether a category is granted. Only these three values are produced; every
// consumer treats anything but 2 as not granted.
using PrivacyAuthorizationStatus = long;
inline constexpr PrivacyAuthorizationStatus PrivacyAuthorizationStatusNotDetermined = 0;
inline constexpr PrivacyAuthorizationStatus PrivacyAuthorizationStatusDenied = 1;
inline constexpr PrivacyAuthorizationStatus PrivacyAuthorizationStatusAuthorized = 2;

// How a category is obtained; chooses the permission list's button title.
using PrivacyAuthorizationRequestType = long;
inline constexpr PrivacyAuthorizationRequestType PrivacyAuthorizationRequestTypeRequest = 0;
inline constexpr PrivacyAuthorizationRequestType PrivacyAuthorizationRequestTypeGrant = 1;
inline constexpr PrivacyAuthorizationRequestType PrivacyAuthorizationRequestTypeCheck = 2;

// Keys of the permission list's category record.
inline constexpr std::string_view PrivacyCategoryIdentifierKey = "identifier";
inline constexpr std::string_view PrivacyCategoryLabelKey = "label";
inline constexpr std::string_view PrivacyCategoryReasonKey = "reason";
inline constexpr std::string_view PrivacyCategoryStatusKey = "status";

// Keys of the host's user defaults under which the status center remembers
// that it has asked once. Written true, never cleared.
inline constexpr std::string_view kContactsAccessRequested = "VantroContactsAccessRequested";
inline constexpr std::string_view kDesktopFolderAccessRequested = "VantroDesktopFolderAccessRequested";
inline constexpr std::string_view kDocumentsFolderAccessRequested = "VantroDocumentsFolderAccessRequested";
inline constexpr std::string_view kDownloadsFolderAccessRequested = "VantroDownloadsFolderAccessRequested";

// The context of the permission list's observation of the guide's
// isOverlayShown. Recognised by its address: this one array, not its text.
inline constexpr char IsOverlayShownContext[] = "isOverlayShown";

// The whole part of the AppKit version number, against which every version
// gate is tested (strictly greater than 1265, 1561 or 1671).
double flooredAppKitVersion();

// The whole AppKit version numbers of the first releases on which the
// framework does something other than on earlier ones: macOS 13, whose
// settings application is System Settings, and macOS 14, whose EventKit asks
// for full access. Gates on them test "at least".
inline constexpr double NSAppKitVersionNumber13_0 = 2299;
inline constexpr double NSAppKitVersionNumber14_0 = 2487;
// macOS 26 (every 26.x reports 2685 and a fraction) and 27, whose betas report
// 2757 and whose release is reported at about 2775: 27 is taken from the
// betas' number on (no header constant is published for either).
inline constexpr double NSAppKitVersionNumber26_0 = 2685;
inline constexpr double NSAppKitVersionNumber27_0 = 2757;

}  // namespace vantro
