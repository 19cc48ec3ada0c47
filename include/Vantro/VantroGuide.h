// The guide's operations that talk to the system: opening the privacy
// settings at a category, and Automation.

#import <AppKit/AppKit.h>
#import <Vantro/VantroPrivacy.h>

NS_ASSUME_NONNULL_BEGIN

/// Leads the user to a privacy category in the system's settings.
@interface Vantro : NSObject

/// Opens the Security & Privacy settings at the category's anchor ("Privacy"
/// for nil and for the folder and volume categories). A URL the system
/// refuses is reported through the current NSAssertionHandler; when that
/// returns, so does this, with NO.
+ (BOOL)openPrivacyPreferencesWithAnchor:(nullable PrivacyCategoryIdentifier)anchor
    NS_SWIFT_NAME(openPrivacyPreferences(anchor:));

/// Whether the host may send Apple events to the application, without ever
/// asking the user; YES when the system cannot tell. The application is
/// launched without activation when it is not running, and returned through
/// runningApplication when that is given.
+ (BOOL)checkPermissionToAutomate:(NSString *)bundleIdentifier
               runningApplication:(NSRunningApplication *_Nullable *_Nullable)runningApplication
    NS_SWIFT_NAME(checkPermissionToAutomate(_:runningApplication:));

/// Asks System Preferences to prompt for unlocking its Security & Privacy
/// pane, when it shows that pane and the host may automate it.
+ (void)authorizeIfPossible;

@end

NS_ASSUME_NONNULL_END
