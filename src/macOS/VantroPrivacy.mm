// The exported vocabulary. The literals repeat the core's constants because
// exported NSString constants must be compile-time literals; the Mac test
// suite compares each with its core twin.

#import <Vantro/VantroPrivacy.h>

PrivacyCategoryIdentifier const VantroPrivacyFullDiskAccess = @"Privacy_AllFiles";
PrivacyCategoryIdentifier const VantroPrivacyAutomation = @"Privacy_Automation";
PrivacyCategoryIdentifier const VantroPrivacyAssistive = @"Privacy_Assistive";
PrivacyCategoryIdentifier const VantroPrivacyLocationServices = @"Privacy_LocationServices";
PrivacyCategoryIdentifier const VantroPrivacyContacts = @"Privacy_Contacts";
PrivacyCategoryIdentifier const VantroPrivacyDiagnostics = @"Privacy_Diagnostics";
PrivacyCategoryIdentifier const VantroPrivacyCalendars = @"Privacy_Calendars";
PrivacyCategoryIdentifier const VantroPrivacyReminders = @"Privacy_Reminders";
PrivacyCategoryIdentifier const VantroPrivacyPhotos = @"Privacy_Photos";
PrivacyCategoryIdentifier const VantroPrivacyAccessibility = @"Privacy_Accessibility";
PrivacyCategoryIdentifier const VantroPrivacyFilesAndFolders = @"Privacy_FilesAndFolders";
PrivacyCategoryIdentifier const VantroPrivacyDesktopFolder = @"Privacy_DesktopFolder";
PrivacyCategoryIdentifier const VantroPrivacyDocumentsFolder = @"Privacy_DocumentsFolder";
PrivacyCategoryIdentifier const VantroPrivacyDownloadsFolder = @"Privacy_DownloadsFolder";
PrivacyCategoryIdentifier const VantroPrivacyNetworkVolume = @"Privacy_NetworkVolume";
PrivacyCategoryIdentifier const VantroPrivacyRemovableVolume = @"Privacy_RemovableVolume";

PrivacyCategoryIdentifier const VantroPrivacyScreenRecording = @"Privacy_ScreenCapture";
PrivacyCategoryIdentifier const VantroPrivacyInputMonitoring = @"Privacy_ListenEvent";
PrivacyCategoryIdentifier const VantroPrivacyCamera = @"Privacy_Camera";
PrivacyCategoryIdentifier const VantroPrivacyMicrophone = @"Privacy_Microphone";
PrivacyCategoryIdentifier const VantroPrivacyBluetooth = @"Privacy_Bluetooth";

NSString* const PrivacyCategoryIdentifierKey = @"identifier";
NSString* const PrivacyCategoryLabelKey = @"label";
NSString* const PrivacyCategoryReasonKey = @"reason";
NSString* const PrivacyCategoryStatusKey = @"status";

NSString* const kContactsAccessRequested = @"VantroContactsAccessRequested";
NSString* const kDesktopFolderAccessRequested = @"VantroDesktopFolderAccessRequested";
NSString* const kDocumentsFolderAccessRequested = @"VantroDocumentsFolderAccessRequested";
NSString* const kDownloadsFolderAccessRequested = @"VantroDownloadsFolderAccessRequested";
NSString* const kScreenRecordingAccessRequested = @"VantroScreenRecordingAccessRequested";

NSString* const IsOverlayShownContext = @"isOverlayShown";
