#include "PermissionList/VantroViewController.h"

#include "Guide/Vantro.h"
#include "PermissionList/VantroRequestButtonTableCellView.h"
#include "Platform/HostProcess.h"
#include "StatusCenter/PrivacyCategoryCatalog.h"
#include "StatusCenter/VantroRequestStatusCenter.h"
#include "Vocabulary/Layouts.h"

namespace vantro {

namespace {

constexpr std::string_view IsOverlayShownKeyPath = "isOverlayShown";
constexpr std::string_view PrivacyCategoriesKey = "privacyCategories";
constexpr double CoalescingDelay = 0.1;
constexpr double WatcherInterval = 1.0;

std::optional<std::string> stringForKey(const PrivacyCategoryRecord& row, std::string_view key) {
    if (const Value* value = row.valueForKey(key)) return value->string();
    return std::nullopt;
}

}  // namespace

std::shared_ptr<VantroViewController> VantroViewController::create() { return makeShared<VantroViewController>(); }

VantroViewController::VantroViewController(const SharedOwnership&) : requestedIdentifiers_{std::string(VantroPrivacyFullDiskAccess)} {}

VantroViewController::~VantroViewController() {
    // A controller that outlives its process has nothing left to unregister
    // from.
    auto* process = HostProcess::currentOrNull();
    if (!process) return;
    auto& platform = process->platform();
    if (auto timer = vantroWatcherTimer_.lock()) timer->invalidate();
    platform.workspace().removeActivationObserver(this);
    // Removed whether or not it was ever added: a controller released before
    // its view loaded makes the platform object, as it would on the Mac.
    Vantro::sharedKit()->removeObserver(*this, IsOverlayShownKeyPath, IsOverlayShownContext);
    platform.runLoop().cancelPreviousPerformRequests(this, UpdatePrivacyCategoriesSelector);
}

void VantroViewController::setRequestedPrivacyCategoryIdentifiers(std::vector<std::string> identifiers) {
    requestedIdentifiers_ = std::move(identifiers);
    if (isViewLoaded()) updatePrivacyCategories();
}

void VantroViewController::setReasonStrings(std::optional<ReasonStrings> reasons) {
    reasonStrings_ = std::move(reasons);
    if (isViewLoaded()) updatePrivacyCategories();
}

void VantroViewController::setPrivacyCategories(std::vector<PrivacyCategoryRecordPtr> rows) {
    privacyCategories_ = std::move(rows);
    didChangeValueForKey(PrivacyCategoriesKey);
}

std::shared_ptr<Bundle> VantroViewController::nibBundle() const {
    return HostProcess::current().platform().bundles().frameworkBundle();
}

std::optional<std::string> VantroViewController::nibNameToLoad() const {
    std::string name = nibNameForClassName(viewNibName());
    auto bundle = nibBundle();
    if (!bundleHoldsCompiledNib(bundle.get(), name)) return std::nullopt;
    return name;
}

void VantroViewController::viewDidLoad() {
    ViewController::viewDidLoad();
    updatePrivacyCategories();
    // The initial option runs the handler at once, so the timer matches the
    // overlay from the start.
    Vantro::sharedKit()->addObserver(*this, IsOverlayShownKeyPath, ObservingOptionInitial, IsOverlayShownContext);
}

void VantroViewController::viewDidAppear() {
    ViewController::viewDidAppear();
    std::weak_ptr<VantroViewController> weakSelf = weak_from_this();
    HostProcess::current().platform().workspace().addActivationObserver(this, [weakSelf](RunningApplicationPtr) {
        if (auto self = weakSelf.lock()) self->scheduleUpdatePrivacyCategories();
    });
}

void VantroViewController::viewDidDisappear() {
    HostProcess::current().platform().workspace().removeActivationObserver(this);
    ViewController::viewDidDisappear();
}

void VantroViewController::observeValueForKeyPath(std::string_view keyPath, Observable& object,
                                                  ObservationContext context) {
    (void)keyPath;
    (void)object;
    // Only this very context is ours; another with the same text is not.
    if (context == IsOverlayShownContext) updateVantroWatcherTimer();
}

void VantroViewController::scheduleUpdatePrivacyCategories() {
    auto& runLoop = HostProcess::current().platform().runLoop();
    runLoop.cancelPreviousPerformRequests(this, UpdatePrivacyCategoriesSelector);
    std::weak_ptr<VantroViewController> weakSelf = weak_from_this();
    runLoop.performAfterDelay(this, UpdatePrivacyCategoriesSelector, CoalescingDelay, [weakSelf] {
        if (auto self = weakSelf.lock()) self->updatePrivacyCategories();
    });
}

void VantroViewController::updatePrivacyCategories() {
    // The running system's set is fixed by the first rebuild of any list,
    // whatever that rebuild lists.
    supportedPrivacyCategories();
    std::vector<PrivacyCategoryRecordPtr> rows;
    // Duplicates are kept: an identifier requested twice is listed twice.
    for (const auto& identifier : requestedIdentifiers_) {
        if (!isListablePrivacyCategory(identifier)) continue;
        Value::Dictionary contents;
        contents.emplace(PrivacyCategoryIdentifierKey, identifier);
        contents.emplace(PrivacyCategoryLabelKey, privacyCategoryLabel(identifier));
        if (reasonStrings_) {
            if (auto reason = reasonStrings_->find(identifier); reason != reasonStrings_->end())
                contents.emplace(PrivacyCategoryReasonKey, reason->second);
        }
        rows.push_back(std::make_shared<PrivacyCategoryRecord>(std::move(contents)));
    }
    // Statuses first: whoever follows privacyCategories never sees a row
    // without one.
    updatePrivacyStatuses(rows);
    setPrivacyCategories(std::move(rows));
}

void VantroViewController::updatePrivacyStatuses() {
    // A copy: an observer of a row may replace the rows while being told.
    auto rows = privacyCategories_;
    updatePrivacyStatuses(rows);
}

void VantroViewController::updatePrivacyStatuses(const std::vector<PrivacyCategoryRecordPtr>& rows) {
    auto center = VantroRequestStatusCenter::sharedRequestStatusCenter();
    for (const auto& row : rows) {
        if (!row) continue;
        auto identifier = stringForKey(*row, PrivacyCategoryIdentifierKey);
        auto status = center->privacyAuthorizationStatusForIdentifier(identifier);
        row->setValueForKey(PrivacyCategoryStatusKey, Value(status));
    }
}

void VantroViewController::updateVantroWatcherTimer() {
    if (auto timer = vantroWatcherTimer_.lock()) timer->invalidate();
    vantroWatcherTimer_.reset();
    if (!Vantro::sharedKit()->isOverlayShown()) return;
    // Each tick leads to a full rebuild 0.1 seconds later, not merely a status
    // refresh. The block must not keep the controller alive.
    std::weak_ptr<VantroViewController> weakSelf = weak_from_this();
    vantroWatcherTimer_ = HostProcess::current().platform().runLoop().scheduledTimer(WatcherInterval, true, [weakSelf](Timer&) {
        if (auto self = weakSelf.lock()) self->scheduleUpdatePrivacyCategories();
    });
}

std::shared_ptr<View> VantroViewController::tableView(TableView& tableView, const TableColumn& tableColumn, long row) {
    (void)row;
    auto view = tableView.makeViewWithIdentifier(tableColumn.identifier(), this);
    if (auto cell = std::dynamic_pointer_cast<VantroRequestButtonTableCellView>(view))
        cell->setVantroViewController(weak_from_this());
    return view;
}

}  // namespace vantro
