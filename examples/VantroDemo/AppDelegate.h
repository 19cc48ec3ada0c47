// The demo's application delegate: one window with Vantro's permission list,
// and a menu item that guides the user to Full Disk Access.

#import <Cocoa/Cocoa.h>

NS_ASSUME_NONNULL_BEGIN

@interface AppDelegate : NSObject <NSApplicationDelegate>
/// Starts the guide for Full Disk Access.
- (IBAction)guideToFullDiskAccess:(nullable id)sender;
@end

NS_ASSUME_NONNULL_END
