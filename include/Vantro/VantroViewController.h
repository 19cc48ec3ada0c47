// The permission list: a view controller that a host embeds to show the
// privacy categories it needs, each with a label, the host's reason and a
// button that asks for it.

#import <AppKit/AppKit.h>
#import <Vantro/VantroPrivacy.h>

NS_ASSUME_NONNULL_BEGIN

/// Lists the privacy categories the host needs that exist on the running
/// system (Full Disk Access never in a sandboxed host): one row per requested
/// category, in the order requested, with its localized label, the host's
/// reason and a VantroRequestButtonTableCellView whose button follows the
/// category's status and asks for it. The rows are rebuilt 0.1 seconds after
/// any application becomes active while the view is on screen, and once a
/// second while the guide's overlay is shown.
///
/// The view comes from the layout named by +viewNibName, with the controller
/// as its owner: the framework's own layout for this class, and for a
/// subclass the layout named after it in the bundle that holds the subclass.
/// Use on the main thread.
NS_SWIFT_UI_ACTOR
@interface VantroViewController : NSViewController <NSTableViewDelegate>

/// The layout a controller of the receiving class loads: the class's own
/// name, so that a subclass loads the layout named after it.
@property (class, nonatomic, readonly, copy) NSString *viewNibName;

/// A controller for the layout named by viewNibName, listing only Full Disk
/// Access until told otherwise.
- (instancetype)init;

/// The categories to list, in display order; identifiers the running system
/// does not have are left out, and one requested twice is listed twice.
/// Once the view is loaded, setting it rebuilds the rows at once.
@property (nonatomic, copy) NSArray<PrivacyCategoryIdentifier> *requestedPrivacyCategoryIdentifiers;
/// Why the host needs each category, shown under its label; a category
/// without a reason shows none. Once the view is loaded, setting it rebuilds
/// the rows at once.
@property (nonatomic, copy, nullable) NSDictionary<PrivacyCategoryIdentifier, NSString *> *reasonStrings;

/// The layout's table.
@property (nonatomic, weak, nullable) IBOutlet NSTableView *privacyCategoriesTableView;
/// The layout's array controller, whose content is bound to privacyCategories.
@property (nonatomic, weak, nullable) IBOutlet NSArrayController *privacyCategoriesArrayController;

/// The rows shown, key-value observable: one mutable dictionary per row,
/// keyed by PrivacyCategoryIdentifierKey, PrivacyCategoryLabelKey,
/// PrivacyCategoryReasonKey (only when there is a reason) and
/// PrivacyCategoryStatusKey (a PrivacyAuthorizationStatus as a number). A
/// row's status is set afresh, with a key-value notification, on every
/// refresh, even when it is unchanged. Setting this property replaces the
/// rows: dictionaries this list published stay the rows they are, any other
/// dictionary's entries are copied into a new row.
@property (nonatomic, strong) NSArray<NSMutableDictionary<NSString *, id> *> *privacyCategories;

/// The once-a-second refresh while the guide's overlay is shown; nil
/// otherwise. The run loop owns the timer.
@property (nonatomic, weak, readonly, nullable) NSTimer *vantroWatcherTimer;

/// Replaces any pending delayed rebuild by one 0.1 seconds from now.
- (void)scheduleUpdatePrivacyCategories;
/// Rebuilds the rows from the requested identifiers now, statuses included.
- (void)updatePrivacyCategories;
/// Refreshes the status of every row shown.
- (void)updatePrivacyStatuses;
/// Sets the status of each of these rows afresh from the status center.
/// Rows that this list did not publish are left alone.
- (void)updatePrivacyStatuses:(NSArray<NSMutableDictionary<NSString *, id> *> *)privacyCategories
    NS_SWIFT_NAME(updatePrivacyStatuses(of:));
/// Starts the once-a-second refresh while the guide's overlay is shown, and
/// stops it otherwise.
- (void)updateVantroWatcherTimer;

/// The table's view for a row: the view the layout registers under the
/// column's identifier, made with this controller as owner; a request button
/// cell is told that it belongs to this list. Nil for a row without a column.
- (nullable NSView *)tableView:(NSTableView *)tableView
            viewForTableColumn:(nullable NSTableColumn *)tableColumn
                           row:(NSInteger)row;

@end

NS_ASSUME_NONNULL_END
