// The permission list's Objective-C twin.
//
// Implements: VantroViewController, an NSViewController that owns a core list
// (PermissionList/VantroViewController.h) and forwards to it. init loads the
// layout named by +viewNibName (a Swift class's module prefix left out),
// with the controller as its owner, from the framework's bundle (for a host's
// subclass, from the bundle that holds the subclass), once the core has found
// it compiled there, and otherwise gives the list an empty view; viewDidLoad, viewDidAppear and viewDidDisappear go to the core;
// the outlets reach the core as control wrappers (MacControls.mm); the core's
// rows are published as one NSMutableDictionary per row, the array replaced
// with a key-value notification of "privacyCategories" each time the core
// announces new rows, and each dictionary given its row's "status" each time
// the core row announces one, so that bindings and cells see every refresh.
// The core's viewNibName() asks the Objective-C class, so the core sees a
// subclass's answer. Main thread.
// Known gaps: after publication only "status" flows from a core row to its
// dictionary, and nothing flows back; a dictionary the list did not publish
// is neither refreshed by updatePrivacyStatuses: nor followed by a cell; the
// core's timer, activation observation and cells call the core's rebuild
// and refresh, not an Objective-C subclass's redefinition of them;
// tableView:viewForTableColumn:row: asks the table itself (the core's
// tableView(...) is not used on the Mac).

#import <Vantro/VantroRequestButtonTableCellView.h>
#import <Vantro/VantroViewController.h>
#import <objc/runtime.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "PermissionList/VantroViewController.h"
#include "Platform/HostProcess.h"
#include "Vocabulary/Layouts.h"
#include "Vocabulary/VantroPrivacy.h"
#include "macOS/MacBundles.h"
#include "macOS/MacControls.h"
#include "macOS/MacFoundation.h"
#include "macOS/MacPlatform.h"
#include "macOS/MacRunLoop.h"
#include "macOS/VantroPermissionList.h"

using CoreViewController = vantro::VantroViewController;

@interface VantroViewController ()
// Replaces the published rows by the core's rows as they are now.
- (void)vantroPublishPrivacyCategories;
- (std::shared_ptr<CoreViewController>)vantroCore;
@end

namespace {

// The key of the published-row link, known by its address alone.
char PublishedRowKey;

constexpr std::string_view PrivacyCategoriesKey = "privacyCategories";

// Gives a published dictionary its core row's "status" each time the row
// announces one, equal value or not, with the dictionary's own key-value
// notification.
class StatusMirror final : public vantro::Observer {
public:
    static constexpr char Context[] = "status";

    void attach(const vantro::PrivacyCategoryRecord* row, NSMutableDictionary* dictionary) {
        row_ = row;
        dictionary_ = dictionary;
    }

    void observeValueForKeyPath(std::string_view keyPath, vantro::Observable& object,
                                vantro::ObservationContext context) override {
        (void)keyPath;
        (void)object;
        (void)context;
        NSMutableDictionary* dictionary = dictionary_;
        if (!dictionary || !row_) return;
        const vantro::Value* status = row_->valueForKey(vantro::PrivacyCategoryStatusKey);
        // setValue:forKey: removes the key for nil, as a row without status
        // has none.
        [dictionary setValue:status ? vantro::mac::toFoundation(*status) : nil forKey:(::PrivacyCategoryStatusKey)];
    }

private:
    const vantro::PrivacyCategoryRecord* row_ = nullptr;
    __weak NSMutableDictionary* dictionary_ = nil;
};

}  // namespace

// Ties a published dictionary to its core row: associated with the
// dictionary, it keeps the row and mirrors the row's status into the
// dictionary for as long as the dictionary exists.
@interface VantroPublishedRow : NSObject
- (instancetype)initWithRow:(vantro::PrivacyCategoryRecordPtr)row dictionary:(NSMutableDictionary*)dictionary;
- (vantro::PrivacyCategoryRecordPtr)row;
@end

@implementation VantroPublishedRow {
    vantro::PrivacyCategoryRecordPtr _row;
    StatusMirror _mirror;
}

- (instancetype)initWithRow:(vantro::PrivacyCategoryRecordPtr)row dictionary:(NSMutableDictionary*)dictionary {
    if ((self = [super init])) {
        _row = std::move(row);
        _mirror.attach(_row.get(), dictionary);
        _row->addObserver(_mirror, vantro::PrivacyCategoryStatusKey, vantro::ObservingOptionNone, StatusMirror::Context);
    }
    return self;
}

- (void)dealloc {
    _row->removeObserver(_mirror, vantro::PrivacyCategoryStatusKey, StatusMirror::Context);
}

- (vantro::PrivacyCategoryRecordPtr)row {
    return _row;
}

@end

namespace {

// The bundle that holds a list class. For the framework's own class that is
// the framework's bundle, which in the Swift package is the package's
// resource bundle rather than the bundle of the binary the class is in.
NSBundle* bundleHolding(Class cls) {
    return cls == [VantroViewController class] ? vantro::mac::frameworkNSBundle() : [NSBundle bundleForClass:cls];
}

// Sends the core's questions about the class to the Objective-C twin while
// it exists, and tells the twin when the core has new rows.
class BridgedViewController final : public CoreViewController {
public:
    using CoreViewController::CoreViewController;
    static constexpr char PublishContext[] = "privacyCategories";

    void attach(VantroViewControllerTwin* twin) {
        twin_ = twin;
        addObserver(*this, PrivacyCategoriesKey, vantro::ObservingOptionNone, PublishContext);
    }

    std::string viewNibName() const override {
        VantroViewControllerTwin* twin = twin_;
        return twin ? vantro::mac::toString([[twin class] viewNibName]) : CoreViewController::viewNibName();
    }

    // The bundle the twin was told to load from, else the one that holds
    // its class.
    std::shared_ptr<vantro::Bundle> nibBundle() const override {
        VantroViewControllerTwin* twin = twin_;
        if (!twin) return CoreViewController::nibBundle();
        NSBundle* bundle = twin.nibBundle ? twin.nibBundle : bundleHolding([twin class]);
        return vantro::HostProcess::current().platform().bundles().bundleWithPath(vantro::mac::toString(bundle.bundlePath));
    }

    void observeValueForKeyPath(std::string_view keyPath, vantro::Observable& object,
                                vantro::ObservationContext context) override {
        if (context != PublishContext) {
            CoreViewController::observeValueForKeyPath(keyPath, object, context);
            return;
        }
        VantroViewControllerTwin* twin = twin_;
        [twin vantroPublishPrivacyCategories];
    }

private:
    __weak VantroViewControllerTwin* twin_ = nil;
};

BridgedViewController& coreList(std::shared_ptr<BridgedViewController>& slot, VantroViewControllerTwin* twin) {
    if (!slot) {
        vantro::mac::installHostProcess();
        slot = vantro::makeShared<BridgedViewController>();
        slot->attach(twin);
    }
    return *slot;
}

// A core row as a new published dictionary, tied to the row.
NSMutableDictionary* publish(const vantro::PrivacyCategoryRecordPtr& row) {
    NSMutableDictionary* dictionary = [NSMutableDictionary dictionary];
    if (!row) return dictionary;
    for (const auto& [key, value] : row->contents())
        [dictionary setValue:vantro::mac::toFoundation(value) forKey:vantro::mac::toNSString(key)];
    VantroPublishedRow* link = [[VantroPublishedRow alloc] initWithRow:row dictionary:dictionary];
    objc_setAssociatedObject(dictionary, &PublishedRowKey, link, OBJC_ASSOCIATION_RETAIN_NONATOMIC);
    return dictionary;
}

// The dictionary among `candidates` already published for `row`.
NSMutableDictionary* _Nullable publishedFor(const vantro::PrivacyCategoryRecordPtr& row, NSArray* _Nullable candidates) {
    if (!row) return nil;
    for (id candidate in candidates)
        if (vantro::mac::coreRowForRow(candidate) == row) return candidate;
    return nil;
}

}  // namespace

namespace vantro::mac {

std::shared_ptr<vantro::VantroViewController> coreViewController(VantroViewControllerTwin* _Nullable controller) {
    return controller ? [controller vantroCore] : nullptr;
}

PrivacyCategoryRecordPtr coreRowForRow(id _Nullable row) {
    if (!row) return nullptr;
    VantroPublishedRow* link = objc_getAssociatedObject(row, &PublishedRowKey);
    return link ? [link row] : nullptr;
}

}  // namespace vantro::mac

@implementation VantroViewController {
    // Made on first use, so that every way of making the controller (init,
    // initWithNibName:bundle:, a layout) has one.
    std::shared_ptr<BridgedViewController> _core;
    NSArray<NSMutableDictionary<NSString*, id>*>* _privacyCategories;
    // Rows handed to setPrivacyCategories:, looked through while the core
    // publishes them.
    NSArray* _offeredRows;
    __weak NSTableView* _privacyCategoriesTableView;
    __weak NSArrayController* _privacyCategoriesArrayController;
    // The outlets' wrappers, which the core holds weakly.
    std::shared_ptr<vantro::TableView> _privacyCategoriesTableViewControl;
    std::shared_ptr<vantro::ArrayController> _privacyCategoriesArrayControllerControl;
}

+ (NSString*)viewNibName {
    return NSStringFromClass(self);
}

+ (BOOL)automaticallyNotifiesObserversForKey:(NSString*)key {
    // The rows are announced when the core publishes them, not by a setter.
    if ([key isEqualToString:vantro::mac::toNSString(PrivacyCategoriesKey)]) return NO;
    return [super automaticallyNotifiesObserversForKey:key];
}

- (instancetype)init {
    Class cls = [self class];
    // A Swift class's name carries its module; its layout's does not.
    NSString* nibName = vantro::mac::toNSString(vantro::nibNameForClassName(vantro::mac::toString([cls viewNibName])));
    return [self initWithNibName:nibName bundle:bundleHolding(cls)];
}

- (void)loadView {
    // AppKit raises for a layout that is not there (a package built without
    // compiling its layouts has none): the list shows nothing instead.
    if (!coreList(_core, self).nibNameToLoad()) {
        self.view = [[NSView alloc] initWithFrame:NSZeroRect];
        return;
    }
    [super loadView];
}

- (void)dealloc {
    // The core's teardown (the timer, the activation and overlay
    // observations, a pending rebuild) comes before NSViewController's own.
    _core.reset();
}

- (std::shared_ptr<CoreViewController>)vantroCore {
    coreList(_core, self);
    return _core;
}

- (void)viewDidLoad {
    [super viewDidLoad];
    coreList(_core, self).didLoadView();
}

- (void)viewDidAppear {
    [super viewDidAppear];
    coreList(_core, self).viewDidAppear();
}

- (void)viewDidDisappear {
    coreList(_core, self).viewDidDisappear();
    [super viewDidDisappear];
}

- (NSArray<PrivacyCategoryIdentifier>*)requestedPrivacyCategoryIdentifiers {
    return vantro::mac::toNSArray(coreList(_core, self).requestedPrivacyCategoryIdentifiers());
}

- (void)setRequestedPrivacyCategoryIdentifiers:(NSArray<PrivacyCategoryIdentifier>*)identifiers {
    coreList(_core, self).setRequestedPrivacyCategoryIdentifiers(vantro::mac::toStrings(identifiers));
}

- (NSDictionary<PrivacyCategoryIdentifier, NSString*>*)reasonStrings {
    const auto& reasons = coreList(_core, self).reasonStrings();
    if (!reasons) return nil;
    NSMutableDictionary<PrivacyCategoryIdentifier, NSString*>* result = [NSMutableDictionary dictionary];
    for (const auto& [identifier, reason] : *reasons)
        result[vantro::mac::toNSString(identifier)] = vantro::mac::toNSString(reason);
    return result;
}

- (void)setReasonStrings:(NSDictionary<PrivacyCategoryIdentifier, NSString*>*)reasonStrings {
    std::optional<CoreViewController::ReasonStrings> reasons;
    if (reasonStrings) {
        reasons.emplace();
        for (id identifier in reasonStrings) {
            id reason = reasonStrings[identifier];
            // Only strings cross to the core.
            if ([identifier isKindOfClass:[NSString class]] && [reason isKindOfClass:[NSString class]])
                reasons->emplace(vantro::mac::toString(identifier), vantro::mac::toString(reason));
        }
    }
    coreList(_core, self).setReasonStrings(std::move(reasons));
}

- (NSTableView*)privacyCategoriesTableView {
    return _privacyCategoriesTableView;
}

- (void)setPrivacyCategoriesTableView:(NSTableView*)table {
    _privacyCategoriesTableView = table;
    _privacyCategoriesTableViewControl = table ? vantro::mac::makeTableView(table, self) : nullptr;
    coreList(_core, self).setPrivacyCategoriesTableView(_privacyCategoriesTableViewControl);
}

- (NSArrayController*)privacyCategoriesArrayController {
    return _privacyCategoriesArrayController;
}

- (void)setPrivacyCategoriesArrayController:(NSArrayController*)arrayController {
    _privacyCategoriesArrayController = arrayController;
    _privacyCategoriesArrayControllerControl =
        arrayController ? vantro::mac::makeArrayController(arrayController) : nullptr;
    coreList(_core, self).setPrivacyCategoriesArrayController(_privacyCategoriesArrayControllerControl);
}

- (NSArray<NSMutableDictionary<NSString*, id>*>*)privacyCategories {
    return _privacyCategories ? _privacyCategories : @[];
}

- (void)setPrivacyCategories:(NSArray<NSMutableDictionary<NSString*, id>*>*)rows {
    std::vector<vantro::PrivacyCategoryRecordPtr> coreRows;
    for (id row in rows) {
        auto coreRow = vantro::mac::coreRowForRow(row);
        if (!coreRow) {
            vantro::Value contents = vantro::mac::toValue(row);
            auto* entries = contents.dictionary();
            coreRow = std::make_shared<vantro::PrivacyCategoryRecord>(entries ? std::move(*entries)
                                                                               : vantro::Value::Dictionary{});
        }
        coreRows.push_back(std::move(coreRow));
    }
    _offeredRows = rows;
    coreList(_core, self).setPrivacyCategories(std::move(coreRows));
    _offeredRows = nil;
}

- (void)vantroPublishPrivacyCategories {
    NSMutableArray<NSMutableDictionary<NSString*, id>*>* published = [NSMutableArray array];
    for (const auto& row : coreList(_core, self).privacyCategories()) {
        // A row published before stays the same dictionary.
        NSMutableDictionary* dictionary = publishedFor(row, _offeredRows);
        if (!dictionary) dictionary = publishedFor(row, _privacyCategories);
        if (!dictionary) dictionary = publish(row);
        [published addObject:dictionary];
    }
    NSString* key = vantro::mac::toNSString(PrivacyCategoriesKey);
    [self willChangeValueForKey:key];
    _privacyCategories = [published copy];
    [self didChangeValueForKey:key];
}

- (NSTimer*)vantroWatcherTimer {
    return vantro::mac::nsTimer(coreList(_core, self).vantroWatcherTimer());
}

- (void)scheduleUpdatePrivacyCategories {
    coreList(_core, self).scheduleUpdatePrivacyCategories();
}

- (void)updatePrivacyCategories {
    coreList(_core, self).updatePrivacyCategories();
}

- (void)updatePrivacyStatuses {
    coreList(_core, self).updatePrivacyStatuses();
}

- (void)updatePrivacyStatuses:(NSArray<NSMutableDictionary<NSString*, id>*>*)privacyCategories {
    // A dictionary the list did not publish has no core row; the core skips
    // it.
    std::vector<vantro::PrivacyCategoryRecordPtr> rows;
    for (id row in privacyCategories) rows.push_back(vantro::mac::coreRowForRow(row));
    coreList(_core, self).updatePrivacyStatuses(rows);
}

- (void)updateVantroWatcherTimer {
    coreList(_core, self).updateVantroWatcherTimer();
}

- (NSView*)tableView:(NSTableView*)tableView viewForTableColumn:(NSTableColumn*)tableColumn row:(NSInteger)row {
    (void)row;
    NSString* identifier = tableColumn.identifier;
    // A full-width row has no column, so no identifier to ask the table for.
    if (!identifier) return nil;
    NSView* view = [tableView makeViewWithIdentifier:identifier owner:self];
    if ([view isKindOfClass:[VantroRequestButtonTableCellView class]])
        ((VantroRequestButtonTableCellView*)view).vantroViewController = self;
    return view;
}

@end
