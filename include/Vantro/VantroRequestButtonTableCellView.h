// The permission list's table cell with a category's request button.

#import <AppKit/AppKit.h>
#import <Vantro/VantroPrivacy.h>

@class VantroViewController;

NS_ASSUME_NONNULL_BEGIN

/// Shows one row of a VantroViewController and carries the category's
/// button: "Request Permission", "Grant Permission" or "Check Permission" (by
/// how the category is obtained) while the category is not granted, and
/// "Permission Granted", disabled, once it is. The button follows every
/// refresh of the row's status. A click asks the status center for the
/// category, not silently, and has the list rebuild shortly after.
///
/// The table makes the cell from the list's layout and reuses it for other
/// rows. Use on the main thread.
NS_SWIFT_UI_ACTOR
@interface VantroRequestButtonTableCellView : NSTableCellView

/// The layout's button, whose action is requestAuthorization:.
@property (nonatomic, weak, nullable) IBOutlet NSButton *authorizationButton;
/// The list that handed out this cell; set by the list.
@property (nonatomic, weak, nullable) VantroViewController *vantroViewController;

/// The row shown, set by the table. Setting a row the list published brings
/// the button up to date with it at once; from then on the button follows
/// that row's status, and no longer the status of the row shown before. Any
/// other object is shown but not followed.
@property (nullable, strong) id objectValue;

/// Sets the button's title and enabled state from the row's status; a status
/// the framework does not produce leaves the button as it is.
- (void)updateAuthorizationButton;

/// The button's action: asks for the row's category and has the list rebuild.
/// Does nothing for a row without an identifier.
- (IBAction)requestAuthorization:(nullable id)sender;

@end

NS_ASSUME_NONNULL_END
