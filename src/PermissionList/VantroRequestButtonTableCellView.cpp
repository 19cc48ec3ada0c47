#include "PermissionList/VantroRequestButtonTableCellView.h"

#include <optional>
#include <string>

#include "Guide/Vantro.h"
#include "PermissionList/VantroViewController.h"
#include "Platform/HostProcess.h"
#include "StatusCenter/VantroRequestStatusCenter.h"

namespace vantro {

VantroRequestButtonTableCellView::~VantroRequestButtonTableCellView() {
    if (objectValue_) objectValue_->removeObserver(*this, PrivacyCategoryStatusKey, StatusContext);
}

void VantroRequestButtonTableCellView::setObjectValue(PrivacyCategoryRecordPtr row) {
    if (objectValue_) objectValue_->removeObserver(*this, PrivacyCategoryStatusKey, StatusContext);
    objectValue_ = std::move(row);
    if (objectValue_) objectValue_->addObserver(*this, PrivacyCategoryStatusKey, ObservingOptionInitial, StatusContext);
}

void VantroRequestButtonTableCellView::observeValueForKeyPath(std::string_view keyPath, Observable& object,
                                                              ObservationContext context) {
    (void)keyPath;
    (void)object;
    if (context == StatusContext) updateAuthorizationButton();
}

void VantroRequestButtonTableCellView::updateAuthorizationButton() {
    std::optional<std::string> identifier;
    PrivacyAuthorizationStatus status = PrivacyAuthorizationStatusNotDetermined;
    if (objectValue_) {
        if (const Value* value = objectValue_->valueForKey(PrivacyCategoryStatusKey)) status = value->integerValue();
        if (const Value* value = objectValue_->valueForKey(PrivacyCategoryIdentifierKey)) identifier = value->string();
    }

    std::string_view titleKey;
    bool enabled = true;
    if (status != PrivacyAuthorizationStatusAuthorized && identifier &&
        Vantro::sharedKit()->needsRelaunchForPanelIdentifier(*identifier)) {
        // Switched on in System Settings, but the running process cannot use
        // it yet: the button offers the relaunch that applies it.
        titleKey = "Reopen to Apply";
    } else if (status == PrivacyAuthorizationStatusNotDetermined || status == PrivacyAuthorizationStatusDenied) {
        auto type = VantroRequestStatusCenter::sharedRequestStatusCenter()->authorizationRequestTypeForIdentifier(identifier);
        if (type == PrivacyAuthorizationRequestTypeGrant)
            titleKey = "Grant Permission";
        else if (type == PrivacyAuthorizationRequestTypeCheck)
            titleKey = "Check Permission";
        else
            titleKey = "Request Permission";
    } else if (status == PrivacyAuthorizationStatusAuthorized) {
        titleKey = "Permission Granted";
        enabled = false;
    } else {
        // No status the framework produces: keep whatever the button shows.
        return;
    }

    auto button = authorizationButton_.lock();
    if (!button) return;
    auto bundle = HostProcess::current().platform().bundles().frameworkBundle();
    button->setTitle(bundle->localizedString(titleKey, "", std::nullopt));
    button->setEnabled(enabled);
}

void VantroRequestButtonTableCellView::requestAuthorization(Button* sender) {
    (void)sender;
    if (!objectValue_) return;
    const Value* value = objectValue_->valueForKey(PrivacyCategoryIdentifierKey);
    if (!value || value->isNull()) return;
    // An identifier that is not a string goes to the status center as the
    // text it prints as, which answers it as any identifier it does not
    // serve. A copy: a request may run a modal alert, during which the row
    // may be replaced and this cell reused or released.
    std::string identifier = value->isString() ? *value->stringPointer() : value->description();
    std::weak_ptr<VantroViewController> list = vantroViewController_;
    if (Vantro::sharedKit()->needsRelaunchForPanelIdentifier(identifier)) {
        Vantro::sharedKit()->relaunchHost();
        return;
    }
    VantroRequestStatusCenter::sharedRequestStatusCenter()->requestPrivacyAuthorizationForIdentifier(identifier, false);
    if (auto controller = list.lock()) controller->scheduleUpdatePrivacyCategories();
}

}  // namespace vantro
