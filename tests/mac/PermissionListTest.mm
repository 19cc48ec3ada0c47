// The permission list's Objective-C classes on a real Mac: the controller
// loads its layout from the framework's bundle with its outlets and bindings
// in place, publishes one row dictionary per listed category, keeps each
// dictionary's status in step with every refresh of the core, lets a subclass
// name its own layout, and a reused cell follows only its current row.
//
// The categories asked for are ones whose status is read without the system
// ever asking the user (no folders, no Photos), so the suite runs unattended.

#import <Vantro/Vantro.h>

#include <gtest/gtest.h>

#include <iterator>
#include <string>

#include "macOS/VantroPermissionList.h"

// Counts the key-value notifications it receives.
@interface VantroTestObserver : NSObject
@property (nonatomic) NSInteger notifications;
@end

@implementation VantroTestObserver

- (void)observeValueForKeyPath:(NSString *)keyPath
                      ofObject:(id)object
                        change:(NSDictionary<NSKeyValueChangeKey, id> *)change
                       context:(void *)context {
    (void)keyPath;
    (void)object;
    (void)change;
    (void)context;
    self.notifications += 1;
}

@end

// A host's subclass that changes nothing but its name.
@interface VantroTestPermissionList : VantroViewController
@end

@implementation VantroTestPermissionList
@end

namespace {

std::string text(NSString *string) { return string.UTF8String ? string.UTF8String : ""; }

class PermissionList : public ::testing::Test {
protected:
    void SetUp() override {
        // Layouts and views are made as inside a Cocoa application.
        [NSApplication sharedApplication];
    }

    // A loaded list of `identifiers`, with `reasons`.
    static VantroViewController *loadedList(NSArray<PrivacyCategoryIdentifier> *identifiers,
                                            NSDictionary<PrivacyCategoryIdentifier, NSString *> *reasons) {
        VantroViewController *list = [[VantroViewController alloc] init];
        list.requestedPrivacyCategoryIdentifiers = identifiers;
        list.reasonStrings = reasons;
        EXPECT_NE(list.view, nil);
        return list;
    }

    static PrivacyAuthorizationStatus statusOf(NSDictionary *row) {
        return [VantroRequestStatusCenter.sharedRequestStatusCenter
            privacyAuthorizationStatusForIdentifier:row[PrivacyCategoryIdentifierKey]];
    }
};

TEST_F(PermissionList, LoadsItsLayoutFromTheFrameworksBundleAndListsEachSupportedRequestedCategory) {
    VantroViewController *list = [[VantroViewController alloc] init];
    EXPECT_EQ(text(list.nibName), "VantroViewController");
    // The shell is compiled into this program, so the framework's bundle is
    // the bundle that holds its classes.
    EXPECT_EQ(list.nibBundle, [NSBundle bundleForClass:[VantroViewController class]]);
    EXPECT_EQ(text(list.requestedPrivacyCategoryIdentifiers.firstObject), "Privacy_AllFiles");
    EXPECT_EQ(list.requestedPrivacyCategoryIdentifiers.count, 1u);

    // Files and Folders is never listed, an unknown identifier neither; a
    // category requested twice is listed twice. The test Macs run releases
    // above AppKit 1671, unsandboxed, where the rest are all listed.
    list.requestedPrivacyCategoryIdentifiers = @[
        VantroPrivacyFullDiskAccess, VantroPrivacyCalendars, VantroPrivacyFilesAndFolders, @"Privacy_Bogus",
        VantroPrivacyContacts, VantroPrivacyCalendars
    ];
    list.reasonStrings = @{VantroPrivacyCalendars : @"To show your meetings."};
    EXPECT_EQ(list.privacyCategories.count, 0u) << "nothing is built before the view loads";

    VantroTestObserver *observer = [[VantroTestObserver alloc] init];
    [list addObserver:observer forKeyPath:@"privacyCategories" options:0 context:nullptr];

    ASSERT_NE(list.view, nil);
    ASSERT_NE(list.privacyCategoriesTableView, nil);
    ASSERT_NE(list.privacyCategoriesArrayController, nil);
    EXPECT_EQ(list.privacyCategoriesTableView.delegate, list);
    EXPECT_EQ(observer.notifications, 1);
    EXPECT_EQ(list.vantroWatcherTimer, nil) << "no refresh timer while the overlay is hidden";

    struct Expected {
        const char *identifier, *label, *reason;
    } expected[] = {
        {"Privacy_AllFiles", "Full Disk Access", nullptr},
        {"Privacy_Calendars", "Calendars", "To show your meetings."},
        {"Privacy_Contacts", "Contacts", nullptr},
        {"Privacy_Calendars", "Calendars", "To show your meetings."},
    };
    NSArray<NSMutableDictionary<NSString *, id> *> *rows = list.privacyCategories;
    ASSERT_EQ(rows.count, std::size(expected));
    for (std::size_t i = 0; i < std::size(expected); ++i) {
        NSMutableDictionary *row = rows[i];
        SCOPED_TRACE(expected[i].identifier);
        EXPECT_EQ(text(row[PrivacyCategoryIdentifierKey]), expected[i].identifier);
        // The labels come from the framework's strings: a label equal to the
        // identifier means the table was not found.
        EXPECT_EQ(text(row[PrivacyCategoryLabelKey]), expected[i].label);
        if (expected[i].reason)
            EXPECT_EQ(text(row[PrivacyCategoryReasonKey]), expected[i].reason);
        else
            EXPECT_EQ(row[PrivacyCategoryReasonKey], nil) << "no reason, no key";
        ASSERT_TRUE([row[PrivacyCategoryStatusKey] isKindOfClass:[NSNumber class]]);
        EXPECT_EQ([row[PrivacyCategoryStatusKey] integerValue], statusOf(row));
    }

    // The layout's array controller shows exactly the published rows.
    NSArray *arranged = list.privacyCategoriesArrayController.arrangedObjects;
    ASSERT_EQ(arranged.count, rows.count);
    for (NSUInteger i = 0; i < rows.count; ++i) EXPECT_EQ(arranged[i], rows[i]);

    // Once loaded, new reasons rebuild the rows at once, with one notification.
    list.reasonStrings = nil;
    EXPECT_EQ(observer.notifications, 2);
    EXPECT_EQ(list.privacyCategories.count, rows.count);
    EXPECT_EQ(list.privacyCategories[1][PrivacyCategoryReasonKey], nil);
    EXPECT_EQ(list.reasonStrings, nil);
    [list removeObserver:observer forKeyPath:@"privacyCategories"];
}

TEST_F(PermissionList, ARowsStatusIsSetAfreshOnEveryRefresh) {
    VantroViewController *list = loadedList(@[ VantroPrivacyCalendars, VantroPrivacyContacts ], nil);
    ASSERT_EQ(list.privacyCategories.count, 2u);
    NSMutableDictionary *row = list.privacyCategories[0];

    // A value the status center never answers, so that the refresh shows.
    row[PrivacyCategoryStatusKey] = @(-7);
    VantroTestObserver *observer = [[VantroTestObserver alloc] init];
    [row addObserver:observer forKeyPath:PrivacyCategoryStatusKey options:0 context:nullptr];

    [list updatePrivacyStatuses];
    EXPECT_EQ([row[PrivacyCategoryStatusKey] integerValue], statusOf(row));
    EXPECT_EQ(observer.notifications, 1);
    // Unchanged, and still announced.
    [list updatePrivacyStatuses:@[ row ]];
    EXPECT_EQ(observer.notifications, 2);
    [list updatePrivacyStatuses:@[ list.privacyCategories[1] ]];
    EXPECT_EQ(observer.notifications, 2) << "another row's refresh is not this row's";

    // Setting the rows back keeps the published dictionaries; a dictionary
    // from elsewhere becomes a row of its own, published as a new dictionary.
    NSMutableDictionary *foreign = [@{PrivacyCategoryIdentifierKey : VantroPrivacyContacts} mutableCopy];
    list.privacyCategories = @[ row, foreign ];
    ASSERT_EQ(list.privacyCategories.count, 2u);
    EXPECT_EQ(list.privacyCategories[0], row);
    NSMutableDictionary *copied = list.privacyCategories[1];
    EXPECT_NE(copied, foreign);
    EXPECT_EQ(text(copied[PrivacyCategoryIdentifierKey]), "Privacy_Contacts");
    [list updatePrivacyStatuses];
    EXPECT_EQ(observer.notifications, 3);
    EXPECT_EQ([copied[PrivacyCategoryStatusKey] integerValue], statusOf(copied));
    EXPECT_EQ(foreign[PrivacyCategoryStatusKey], nil) << "a dictionary the list did not publish is left alone";

    // After a rebuild the old dictionary is no longer one of the rows shown.
    [list updatePrivacyCategories];
    EXPECT_NE(list.privacyCategories[0], row);
    [list updatePrivacyStatuses];
    EXPECT_EQ(observer.notifications, 3);
    [row removeObserver:observer forKeyPath:PrivacyCategoryStatusKey];
}

TEST_F(PermissionList, ASubclassLoadsTheLayoutNamedAfterItself) {
    EXPECT_EQ(text(VantroViewController.viewNibName), "VantroViewController");
    EXPECT_EQ(text(VantroTestPermissionList.viewNibName), "VantroTestPermissionList");

    VantroTestPermissionList *list = [[VantroTestPermissionList alloc] init];
    EXPECT_EQ(text(list.nibName), "VantroTestPermissionList");
    EXPECT_EQ(list.nibBundle, [NSBundle bundleForClass:[VantroTestPermissionList class]]);
    // The core asks the Objective-C class.
    auto core = vantro::mac::coreViewController(list);
    ASSERT_NE(core, nullptr);
    EXPECT_EQ(core->viewNibName(), "VantroTestPermissionList");
    EXPECT_EQ(vantro::mac::coreViewController([[VantroViewController alloc] init])->viewNibName(),
              "VantroViewController");
}

TEST_F(PermissionList, ACellReusedForASecondRowNoLongerFollowsTheFirst) {
    VantroViewController *list = loadedList(@[ VantroPrivacyCalendars, VantroPrivacyContacts ], nil);
    NSArray<NSMutableDictionary<NSString *, id> *> *rows = list.privacyCategories;
    ASSERT_EQ(rows.count, 2u);
    NSTableView *table = list.privacyCategoriesTableView;
    ASSERT_NE(table, nil);
    NSTableColumn *column = table.tableColumns.firstObject;
    ASSERT_NE(column, nil);

    NSView *made = [list tableView:table viewForTableColumn:column row:0];
    ASSERT_TRUE([made isKindOfClass:[VantroRequestButtonTableCellView class]]);
    VantroRequestButtonTableCellView *cell = (VantroRequestButtonTableCellView *)made;
    EXPECT_EQ(cell.vantroViewController, list);
    NSButton *button = cell.authorizationButton;
    ASSERT_NE(button, nil);
    EXPECT_EQ([list tableView:table viewForTableColumn:nil row:0], nil);

    // What the table's binding does when it shows the cell for a row.
    cell.objectValue = rows[0];
    button.title = @"untouched";
    [list updatePrivacyStatuses:@[ rows[0] ]];
    EXPECT_NE(text(button.title), "untouched") << "the cell follows its row";
    EXPECT_EQ(static_cast<bool>([button isEnabled]),
              [rows[0][PrivacyCategoryStatusKey] integerValue] != PrivacyAuthorizationStatusAuthorized);

    cell.objectValue = rows[1];
    EXPECT_NE(text(button.title), "untouched") << "a new row brings the button up to date at once";
    button.title = @"untouched";
    [list updatePrivacyStatuses:@[ rows[0] ]];
    EXPECT_EQ(text(button.title), "untouched") << "the first row is no longer followed";
    [list updatePrivacyStatuses:@[ rows[1] ]];
    EXPECT_NE(text(button.title), "untouched");

    // A dictionary no list published is shown but not followed.
    cell.objectValue = [@{PrivacyCategoryIdentifierKey : VantroPrivacyCalendars} mutableCopy];
    button.title = @"untouched";
    [list updatePrivacyStatuses];
    EXPECT_EQ(text(button.title), "untouched");
}

}  // namespace
