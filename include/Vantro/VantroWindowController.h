// The overlay's window controller.

#import <AppKit/AppKit.h>
#import <Vantro/ZVMainBundleIconImageView.h>

NS_ASSUME_NONNULL_BEGIN

/// The controller of the overlay's window, made from the layout
/// "VantroWindowController". A layout named with initWithWindowNibName: is
/// looked up in the framework's own bundle first, then where AppKit looks by
/// default. The layout binds its message field to `message`. Use on the main
/// thread.
NS_SWIFT_UI_ACTOR
@interface VantroWindowController : NSWindowController

/// The text the overlay shows. Setting it touches nothing else: the field
/// shows it through the layout's binding.
@property (nonatomic, strong, nullable) NSString *message;
/// The layout's message field; not owned.
@property (nonatomic, weak, nullable) IBOutlet NSTextField *unlockMessageField;
/// The layout's draggable icon; not owned.
@property (nonatomic, weak, nullable) IBOutlet ZVMainBundleIconImageView *iconView;
/// The icon view's inDrag; NO without an icon view. Observers are told
/// whenever the icon view's inDrag changes.
@property (nonatomic, readonly) BOOL inDrag;

/// "iconView.inDrag".
+ (NSSet<NSString *> *)keyPathsForValuesAffectingInDrag;

@end

NS_ASSUME_NONNULL_END
