#pragma once

#include <atomic>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "StatusCenter/VantroPrivacy.h"

namespace vantro {

// The framework's answer to three questions about a privacy category: its
// status, how it is obtained, and "ask for it now". One shared instance per
// process; the per-service operations are virtual so that a subclass's
// redefinition is the one that dispatch by identifier runs. Main thread.
class VantroRequestStatusCenter : public std::enable_shared_from_this<VantroRequestStatusCenter> {
public:
    using StatusOperation = PrivacyAuthorizationStatus (VantroRequestStatusCenter::*)();
    using RequestOperation = void (VantroRequestStatusCenter::*)(bool silent);

    VantroRequestStatusCenter();
    VantroRequestStatusCenter(const VantroRequestStatusCenter&) = delete;
    VantroRequestStatusCenter& operator=(const VantroRequestStatusCenter&) = delete;
    virtual ~VantroRequestStatusCenter() = default;

    // The shared instance of the current process, made on first use.
    static std::shared_ptr<VantroRequestStatusCenter> sharedRequestStatusCenter();

    // The status of a category. An identifier no status operation serves
    // (nullopt included) writes "Privacy category identifier not supported: %@"
    // to the system log and answers 0.
    PrivacyAuthorizationStatus privacyAuthorizationStatusForIdentifier(std::optional<std::string_view> identifier);
    // How a category is obtained, from the framework's "RequestTypes" resource:
    // 1 or 2 as listed, 0 for anything else.
    PrivacyAuthorizationRequestType authorizationRequestTypeForIdentifier(std::optional<std::string_view> identifier);
    // Asks for a category. There is no completion: ask for the status again.
    // An unsupported identifier writes the same log line and does nothing else.
    void requestPrivacyAuthorizationForIdentifier(std::optional<std::string_view> identifier, bool silent);

    virtual PrivacyAuthorizationStatus fullDiskAccessAuthorizationStatus();
    virtual void requestFullDiskAccessAuthorization(bool silent);
    virtual PrivacyAuthorizationStatus photosAuthorizationStatus();
    virtual void requestPhotosAuthorization(bool silent);
    virtual PrivacyAuthorizationStatus calendarsAuthorizationStatus();
    virtual void requestCalendarsAuthorization(bool silent);
    virtual PrivacyAuthorizationStatus remindersAuthorizationStatus();
    virtual void requestRemindersAuthorization(bool silent);
    virtual PrivacyAuthorizationStatus contactsAuthorizationStatus();
    virtual void requestContactsAuthorization(bool silent);
    virtual PrivacyAuthorizationStatus desktopFolderAuthorizationStatus();
    virtual PrivacyAuthorizationStatus documentsFolderAuthorizationStatus();
    virtual PrivacyAuthorizationStatus downloadsFolderAuthorizationStatus();
    virtual PrivacyAuthorizationStatus foldersAndVolumesAuthorizationStatus();
    virtual void requestDesktopFolderAuthorization(bool silent);
    virtual void requestDocumentsFolderAuthorization(bool silent);
    virtual void requestDownloadsFolderAuthorization(bool silent);
    virtual void requestAndFoldersAuthorization(bool silent);
    virtual PrivacyAuthorizationStatus accessibilityAuthorizationStatus();
    virtual void requestAccessibilityAuthorizationStatus(bool silent);

    // The refusal alert: "Permission Refused" with a button that opens the
    // privacy settings at `identifier`'s anchor. Modal; blocks until answered.
    virtual void alertOpenPrivacyPreferences(std::string_view identifier);

    bool allowPotentiallyVerboseRechecks() const { return allowPotentiallyVerboseRechecks_.load(); }
    void setAllowPotentiallyVerboseRechecks(bool allow) { allowPotentiallyVerboseRechecks_.store(allow); }
    bool canRelyOnPLPrivacyValue() const { return canRelyOnPLPrivacyValue_; }
    void setCanRelyOnPLPrivacyValue(bool canRely) { canRelyOnPLPrivacyValue_ = canRely; }

private:
    std::atomic<bool> allowPotentiallyVerboseRechecks_{true};
    bool canRelyOnPLPrivacyValue_ = true;
};

}  // namespace vantro
