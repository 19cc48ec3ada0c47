// The guide: leads the user to a privacy category in the system's settings
// and lays the overlay over the settings window while they are in front.

#import <AppKit/AppKit.h>
#import <Vantro/VantroPrivacy.h>

NS_ASSUME_NONNULL_BEGIN

@class Vantro;
@class VantroWindowController;

/// Told when the guide opens the settings and when it lays its overlay.
/// Both messages are optional.
NS_SWIFT_NAME(VantroDelegate)
@protocol VantroDelegate <NSObject>
@optional
/// Once per session start, before the settings are opened.
- (void)vantroWillOpenPanel:(PrivacyCategoryIdentifier)panelIdentifier NS_SWIFT_NAME(vantroWillOpenPanel(_:));
/// Each time the settings window is found while the overlay is hidden, just
/// before the overlay is laid over it.
- (void)vantroDidOpenPanel:(PrivacyCategoryIdentifier)panelIdentifier NS_SWIFT_NAME(vantroDidOpenPanel(_:));
@end

/// Leads the user to a privacy category in the system's settings. Use the
/// shared instance on the main thread; observe isOverlayShown to follow it.
/// Swift knows the class as VantroGuide, since the module is Vantro.
NS_SWIFT_NAME(VantroGuide) NS_SWIFT_UI_ACTOR
@interface Vantro : NSObject

/// The shared guide, made on first use and kept for the life of the process.
@property (class, readonly, strong) Vantro *sharedKit NS_SWIFT_NAME(shared);

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

/// "windowController.window.visible".
+ (NSSet<NSString *> *)keyPathsForValuesAffectingIsOverlayShown;

- (instancetype)init NS_DESIGNATED_INITIALIZER;

/// End the session when another application becomes active after System
/// Preferences was seen and System Preferences no longer runs. Default YES.
@property (nonatomic) BOOL stopOnQuitOfSystemPreferences;
/// End the session as soon as another application becomes active after
/// System Preferences was seen. Default NO.
@property (nonatomic) BOOL stopOnDeactivateOfSystemPreferences;
/// End the session when the host becomes active again after System
/// Preferences was seen. Default YES.
@property (nonatomic) BOOL stopOnActivateOfHostApplication;
/// Whether an application other than the host became active this session.
@property (nonatomic) BOOL didSeeOtherApplication;
/// Whether System Preferences became active this session.
@property (nonatomic) BOOL didSeeSystemPreferences;
/// Whether the settings window was seen showing the Security & Privacy pane.
@property (nonatomic) BOOL didSeePrivacyPanel;
/// Told of the session's steps; held weakly.
@property (nonatomic, weak, nullable) id<VantroDelegate> delegate;
/// The application whose hiding hides the overlay: the host. Its accessors
/// are atomic: another thread may read it while the main thread sets it.
@property (atomic, strong, nullable) NSRunningApplication *hostApplication;
/// The token of the global mouse monitor while it is installed; atomic like
/// `hostApplication`.
@property (atomic, strong, nullable) id monitor;
/// The overlay's controller, made on the first placement and kept.
@property (nonatomic, strong, nullable) VantroWindowController *windowController;
/// The category of the current session; also its anchor.
@property (nonatomic, copy, nullable) PrivacyCategoryIdentifier panelIdentifier;
/// The Security & Privacy pane's title in the user's language.
@property (nonatomic, copy, nullable) NSString *privacyPanelName;
/// The text the overlay shows.
@property (nonatomic, copy, nullable) NSString *message;
/// Whether the overlay window exists and is on screen.
@property (nonatomic, readonly) BOOL isOverlayShown;

/// Whether System Settings shows its "Quit & Reopen" sheet over the settings
/// window (after the host is switched on for Full Disk Access or Screen
/// Recording); the overlay then says what to choose.
@property (nonatomic, readonly) BOOL isReopenSheetShown;
/// Whether the category was switched on in a way this process can use only
/// after it relaunches (Screen Recording); offer relaunchHost then.
- (BOOL)needsRelaunchForPanelIdentifier:(PrivacyCategoryIdentifier)panelIdentifier
    NS_SWIFT_NAME(needsRelaunch(forPanelIdentifier:));
/// Quits the host and opens it again, as the sheet's "Quit & Reopen" does.
- (void)relaunchHost;

/// Starts a session with the category's prompt, the host's name in it.
- (void)askAccessForPanelIdentifier:(nullable PrivacyCategoryIdentifier)panelIdentifier
    NS_SWIFT_NAME(askAccess(forPanelIdentifier:));
/// Starts a session with the given message.
- (void)askAccessForPanelIdentifier:(nullable PrivacyCategoryIdentifier)panelIdentifier
                        withMessage:(nullable NSString *)message NS_SWIFT_NAME(askAccess(forPanelIdentifier:message:));
/// Opens the settings and looks at the front application at once.
- (void)activatePanel;
/// Opens the settings at panelIdentifier; a refused URL ends the session.
- (void)callURL;
/// Ends the session: no monitor, no activation handling, overlay hidden.
- (void)stop;
/// Abandons the guidance: stop.
- (void)cancelOverlay;

/// The activation rules, for the application the notification names, or the
/// front application when there is none.
- (void)applicationChanged:(nullable NSNotification *)notification;
- (void)addMonitor;
- (void)removeMonitor;
/// The window-list description of System Preferences' window while System
/// Preferences is in front, or nil.
- (nullable NSDictionary<NSString *, id> *)preferencesWindow;
- (void)updateOverlay;
- (void)placeWindowForItem:(NSDictionary<NSString *, id> *)item NS_SWIFT_NAME(placeWindow(for:));
- (void)checkWindowName;

@end

NS_ASSUME_NONNULL_END
