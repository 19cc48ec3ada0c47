#include "StatusCenter/VantroRequestStatusCenter.h"

// The per-service operations answer "not determined" and ask nothing until the
// services behind them are bound to the platform.
namespace vantro {

PrivacyAuthorizationStatus VantroRequestStatusCenter::fullDiskAccessAuthorizationStatus() { return 0; }
void VantroRequestStatusCenter::requestFullDiskAccessAuthorization(bool) {}
PrivacyAuthorizationStatus VantroRequestStatusCenter::photosAuthorizationStatus() { return 0; }
void VantroRequestStatusCenter::requestPhotosAuthorization(bool) {}
PrivacyAuthorizationStatus VantroRequestStatusCenter::calendarsAuthorizationStatus() { return 0; }
void VantroRequestStatusCenter::requestCalendarsAuthorization(bool) {}
PrivacyAuthorizationStatus VantroRequestStatusCenter::remindersAuthorizationStatus() { return 0; }
void VantroRequestStatusCenter::requestRemindersAuthorization(bool) {}
PrivacyAuthorizationStatus VantroRequestStatusCenter::contactsAuthorizationStatus() { return 0; }
void VantroRequestStatusCenter::requestContactsAuthorization(bool) {}
PrivacyAuthorizationStatus VantroRequestStatusCenter::desktopFolderAuthorizationStatus() { return 0; }
PrivacyAuthorizationStatus VantroRequestStatusCenter::documentsFolderAuthorizationStatus() { return 0; }
PrivacyAuthorizationStatus VantroRequestStatusCenter::downloadsFolderAuthorizationStatus() { return 0; }
PrivacyAuthorizationStatus VantroRequestStatusCenter::foldersAndVolumesAuthorizationStatus() { return 0; }
void VantroRequestStatusCenter::requestDesktopFolderAuthorization(bool) {}
void VantroRequestStatusCenter::requestDocumentsFolderAuthorization(bool) {}
void VantroRequestStatusCenter::requestDownloadsFolderAuthorization(bool) {}
void VantroRequestStatusCenter::requestAndFoldersAuthorization(bool) {}
PrivacyAuthorizationStatus VantroRequestStatusCenter::accessibilityAuthorizationStatus() { return 0; }
void VantroRequestStatusCenter::requestAccessibilityAuthorizationStatus(bool) {}

}  // namespace vantro
