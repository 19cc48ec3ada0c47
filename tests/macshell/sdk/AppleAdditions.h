// Stand-in used only by the Mac shell type-check, force-included (-include)
// before every file it checks. It imports GNUstep's Foundation and AppKit and
// then declares the members of Apple's Foundation and AppKit that the shell
// uses and GNUstep lacks, so Mac source type-checks here unchanged.
//
// Each addition was looked up in GNUstep first (/usr/include/GNUstep) and is
// declared only where GNUstep has no declaration. Where GNUstep declares a
// member with a different type, the comment beside it says so and what
// follows; <AppKit/NSRunningApplication.h> in this folder replaces GNUstep's
// header of that name, because the difference there breaks ordinary Mac code.
#ifndef VANTRO_MACSHELL_APPLEADDITIONS_H
#define VANTRO_MACSHELL_APPLEADDITIONS_H

#import <Foundation/Foundation.h>
#import <AppKit/AppKit.h>

// On the Mac, Foundation's umbrella brings in CoreFoundation and libdispatch,
// its geometry types are Core Graphics', and NSAppleEventDescriptor's header
// brings in the Apple Event data types; Mac code may rely on all of them with
// only <Foundation/Foundation.h> imported.
#include <CoreFoundation/CoreFoundation.h>
#include <dispatch/dispatch.h>
#import <CoreGraphics/CGGeometry.h>
#include <CoreServices/AEDataModel.h>

// GNUstep builds on GCC's <objc/objc.h>, which defines nil as `(id)0` and YES
// as `(BOOL)1`. With those, the everyday `error:nil` (an `id` passed for an
// NSError **) and `@YES` (a boxed cast) do not compile. Apple's <objc/objc.h>
// defines nil as nullptr in C++ and a null pointer in C, and YES/NO as the
// __objc_yes/__objc_no literals; the definitions below follow it for the code
// being checked. GNUstep's own headers, all parsed above, are unaffected.
// Checked against opensource.apple.com objc4-532 runtime/objc.h.
#undef nil
#undef Nil
#undef YES
#undef NO
#ifdef __cplusplus
#define nil nullptr
#define Nil nullptr
#else
#define nil ((void *)0)
#define Nil ((void *)0)
#endif
#define YES __objc_yes
#define NO __objc_no

// Foundation's Swift-naming macros, which GNUstep lacks. They expand to the
// clang attributes Apple's expand to, so clang checks a swift_name's form
// here as it does on the Mac. Unconfirmed against Apple's NSObjCRuntime.h
// text; the attributes are clang's swift_name and swift_wrapper (alias
// swift_newtype, see clang's attribute reference, SwiftNewTypeDocs).
#ifndef NS_SWIFT_NAME
#define NS_SWIFT_NAME(_name) __attribute__((swift_name(#_name)))
#endif
#ifndef NS_TYPED_EXTENSIBLE_ENUM
#define NS_TYPED_EXTENSIBLE_ENUM __attribute__((swift_wrapper(struct)))
#endif

// Foundation's closed enumeration and main-actor macros (Apple's SDK from
// macOS 12), which GNUstep lacks, with the attributes Apple's expand to:
// enum_extensibility(closed), so that clang checks a closed enumeration as
// Swift imports it (a frozen enum, no unknown cases), and
// swift_attr("@UIActor"), which Swift imports as @MainActor. Checked against
// clang's attribute reference (enum_extensibility, swift_attr) and
// developer.apple.com/documentation/swift/grouping-related-objective-c-constants
// (NS_CLOSED_ENUM); the expansions are unconfirmed against Apple's
// NSObjCRuntime.h text.
#ifndef NS_CLOSED_ENUM
#define NS_CLOSED_ENUM(_type, _name) \
    enum __attribute__((enum_extensibility(closed))) _name : _type _name; \
    enum __attribute__((enum_extensibility(closed))) _name : _type
#endif
#ifndef NS_SWIFT_UI_ACTOR
#define NS_SWIFT_UI_ACTOR __attribute__((swift_attr("@UIActor")))
#endif

NS_ASSUME_NONNULL_BEGIN

#pragma mark - Foundation

// Checked against developer.apple.com/documentation/foundation/operatingsystemversion
// (three NSInteger-sized fields: majorVersion, minorVersion, patchVersion) and
// .../processinfo/isoperatingsystematleast(_:) (selector
// isOperatingSystemAtLeastVersion:, returns Bool).
typedef struct {
    NSInteger majorVersion;
    NSInteger minorVersion;
    NSInteger patchVersion;
} NSOperatingSystemVersion;

@interface NSProcessInfo (VantroAppleAdditions)
- (BOOL)isOperatingSystemAtLeastVersion:(NSOperatingSystemVersion)version;
@end

// GNUstep declares only the -isValid method; Apple declares the property
// `valid` with that getter, so `timer.valid` needs the property.
// Checked against developer.apple.com/documentation/foundation/timer/isvalid
// (precise identifier c:objc(cs)NSTimer(py)valid).
@interface NSTimer (VantroAppleAdditions)
@property (readonly, getter=isValid) BOOL valid;
@end

// GNUstep's NSAppleEventDescriptor is an empty class.
// Checked against developer.apple.com/documentation/foundation/nsappleeventdescriptor/aedesc
// (`var aeDesc: UnsafePointer<AEDesc>?`: a nullable, read-only `const AEDesc *`)
// and learn.microsoft.com NSAppleEventDescriptor.FromBundleIdentifier
// (descriptorWithBundleIdentifier:, string in, non-null descriptor out).
@interface NSAppleEventDescriptor (VantroAppleAdditions)
+ (NSAppleEventDescriptor *)descriptorWithBundleIdentifier:(NSString *)bundleIdentifier;
@property (nullable, readonly) const AEDesc *aeDesc __attribute__((objc_returns_inner_pointer));
@end

// GNUstep has -removeObserver:forKeyPath: but not the context form (macOS
// 10.7), and declares the change-dictionary keys as plain NSString * without
// the NSKeyValueChangeKey type. Checked against
// developer.apple.com/documentation/objectivec/nsobject-swift.class/removeobserver(_:forkeypath:context:)
// (`(NSObject, String, UnsafeMutableRawPointer?)`) and
// .../observevalue(forkeypath:of:change:context:) (change is
// `[NSKeyValueChangeKey : Any]?`).
typedef NSString *NSKeyValueChangeKey;

@interface NSObject (VantroAppleAdditionsKeyValueObserving)
- (void)removeObserver:(NSObject *)observer forKeyPath:(NSString *)keyPath context:(nullable void *)context;
@end

// Apple defines these in Foundation's NSObject.h as inline casts.
// Checked against developer.apple.com/documentation/foundation/cfbridgingretain(_:)
// (`(Any?) -> CFTypeRef?`) and .../cfbridgingrelease (`id CFBridgingRelease(CFTypeRef X)`).
#if __has_feature(objc_arc)
static inline __attribute__((always_inline)) CF_RETURNS_RETAINED CFTypeRef _Nullable
CFBridgingRetain(id _Nullable X)
{
    return (__bridge_retained CFTypeRef)X;
}

static inline __attribute__((always_inline)) id _Nullable CFBridgingRelease(CFTypeRef CF_CONSUMED _Nullable X)
{
    return (__bridge_transfer id)X;
}
#endif

// Present in GNUstep with Apple's types, so not redeclared: NSRunLoop
// (currentRunLoop, mainRunLoop, currentMode, runMode:beforeDate:,
// NSDefaultRunLoopMode, NSRunLoopCommonModes), NSThread isMainThread,
// NSObject's delayed performs and cancelPreviousPerformRequestsWithTarget:…,
// +[NSTimer scheduledTimerWithTimeInterval:repeats:block:] and -invalidate,
// NSUserDefaults, NSBundle, NSPropertyListSerialization, NSFileManager,
// NSString path methods, NSError and its keys and domains, NSLog,
// NSClassFromString, NSSelectorFromString, NSURL.
//
// Where GNUstep's declarations differ from Apple's:
// - GNUstep marks -[NSAssertionHandler handleFailureInMethod:…] noreturn; Apple
//   does not. A function that ends in that call without returning a value
//   compiles here but draws -Wreturn-type on the Mac.
// - GNUstep's collection results (NSBundle localizations,
//   preferredLocalizationsFromArray:forPreferences:, NSUserDefaults
//   persistentDomainForName:, NSFileManager contentsOfDirectoryAtPath:error:)
//   are plain NSArray/NSDictionary, not Apple's lightweight generics, so an
//   element comes back as `id`: `array.firstObject.length` fails here (property
//   on `id`) although it compiles on the Mac. Give the element a typed local.
//   A category cannot retype them (clang keeps the class's own declaration).
// - GNUstep's headers carry no nullability, so passing nil where Apple's
//   header says nonnull is not diagnosed here.

#pragma mark - AppKit

// GNUstep declares NSAppKitVersionNumber as `const double`, the same type.
// Checked against docs.rs objc2-app-kit NSAppKitVersionNumber (type
// NSAppKitVersion) and pub.dev cocoa bindings (NSAppKitVersionNumber: double).
typedef double NSAppKitVersion;

// GNUstep has only the old names (NSWarningAlertStyle …) and declares
// NSAlertStyle as a plain NSUInteger typedef, where Apple's is an NSUInteger
// enum type; assigning a bare integer to alertStyle therefore compiles here but
// not in Objective-C++ on the Mac. The values are the same.
// Checked against docs.rs objc2-app-kit NSAlertStyle (NSUInteger) and
// learn.microsoft.com NSAlertStyle (Warning 0, Informational 1, Critical 2).
// GNUstep's -runModal returns NSInteger, the type Apple's NSModalResponse
// names, and NSAlertFirstButtonReturn is 1000 in both.
enum : NSUInteger {
    NSAlertStyleWarning = 0,
    NSAlertStyleInformational = 1,
    NSAlertStyleCritical = 2
};

// GNUstep declares sharedWorkspace, openURL:, notificationCenter and the
// launch options (NSWorkspaceLaunchWithoutActivation 0x200,
// NSWorkspaceLaunchAsync 0x10000, NSWorkspaceLaunchOptions NSUInteger) with
// Apple's types and values.
// Checked against developer.apple.com/documentation/appkit/nsworkspace/urlforapplication(withbundleidentifier:)
// (`(String) -> URL?`), .../launchapplication(at:options:configuration:)
// (throws, returns NSRunningApplication: a nullable result with an NSError **
// out-parameter), .../launchconfigurationkey and docs.rs objc2-app-kit
// (NSWorkspaceLaunchConfigurationKey = NSString),
// .../didactivateapplicationnotification (an NSNotificationName) and
// .../applicationuserinfokey (NSWorkspaceApplicationKey, a String).
typedef NSString *NSWorkspaceLaunchConfigurationKey;

@interface NSWorkspace (VantroAppleAdditions)
- (nullable NSURL *)URLForApplicationWithBundleIdentifier:(NSString *)bundleIdentifier;
- (nullable NSRunningApplication *)launchApplicationAtURL:(NSURL *)url
                                                  options:(NSWorkspaceLaunchOptions)options
                                            configuration:(NSDictionary<NSWorkspaceLaunchConfigurationKey, id> *)configuration
                                                    error:(NSError **)error;
@end

// NSTask's URL-based launch, which replaced launchPath and launch in 10.13.
// Checked against developer.apple.com/documentation/foundation/process/executableurl
// (`URL?`, macOS 10.13+) and .../process/run() (`throws`, macOS 10.13+).
@interface NSTask (VantroAppleAdditions)
@property (nullable, copy) NSURL *executableURL;
- (BOOL)launchAndReturnError:(NSError **)error;
@end

APPKIT_EXTERN NSNotificationName const NSWorkspaceDidActivateApplicationNotification;
APPKIT_EXTERN NSString *const NSWorkspaceApplicationKey;

// GNUstep's NSEventMask is `unsigned long long`, as Apple's is, but it has
// only the old mask names (NSLeftMouseDownMask …) and no event monitors.
// Checked against developer.apple.com/documentation/appkit/nsevent/addglobalmonitorforevents(matching:handler:)
// (`(NSEvent.EventTypeMask, (NSEvent) -> Void) -> Any?`), .../removemonitor(_:)
// (`(Any)`), docs.rs objc2-app-kit NSEventMask (c_ulonglong) and docs.rs
// rust-macios NSEventMask (LeftMouseDown 2, LeftMouseUp 4, LeftMouseDragged 64).
enum : NSEventMask {
    NSEventMaskLeftMouseDown = 1ULL << 1,
    NSEventMaskLeftMouseUp = 1ULL << 2,
    NSEventMaskLeftMouseDragged = 1ULL << 6
};

@interface NSEvent (VantroAppleAdditions)
+ (nullable id)addGlobalMonitorForEventsMatchingMask:(NSEventMask)mask handler:(void (^)(NSEvent *event))block;
+ (void)removeMonitor:(id)eventMonitor;
@end

// NSApplication's activation policy (10.6) and NSWindow's content view
// controller (10.10), which GNUstep lacks. Checked against
// developer.apple.com/documentation/appkit/nsapplication/setactivationpolicy(_:)
// (`(NSApplication.ActivationPolicy) -> Bool`), .../nsapplication/activationpolicy()
// and .../nswindow/contentviewcontroller (`var contentViewController: NSViewController?`).
@interface NSApplication (VantroAppleAdditionsActivationPolicy)
- (NSApplicationActivationPolicy)activationPolicy;
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)activationPolicy;
@end

@interface NSWindow (VantroAppleAdditionsContentViewController)
@property (nullable, strong) NSViewController *contentViewController;
@end

// NSViewController's life cycle (10.10), which GNUstep lacks: its
// NSViewController has only -view, -loadView, -nibName and -nibBundle.
// Checked against developer.apple.com/documentation/appkit/nsviewcontroller/viewdidload(),
// .../viewdidappear(), .../viewdiddisappear() (each `func …()`, macOS 10.10)
// and .../isviewloaded (`var isViewLoaded: Bool { get }`, precise identifier
// c:objc(cs)NSViewController(py)viewLoaded).
@interface NSViewController (VantroAppleAdditionsLifeCycle)
@property (readonly, getter=isViewLoaded) BOOL viewLoaded;
- (void)viewDidLoad;
- (void)viewDidAppear;
- (void)viewDidDisappear;
@end

// View-based tables (10.7), which GNUstep lacks: NSTableCellView and
// -[NSTableView makeViewWithIdentifier:owner:]. Checked against
// developer.apple.com/documentation/appkit/nstablecellview (a subclass of
// NSView), .../nstablecellview/objectvalue (`var objectValue: Any?`, read and
// written) and .../nstableview/makeview(withidentifier:owner:)
// (`(NSUserInterfaceItemIdentifier, owner: Any?) -> NSView?`; the identifier
// must not be nil). The __kindof on the result is unconfirmed against an Apple
// page; the shell assigns the result to NSView * and casts, which compiles
// with or without it.
@interface NSTableCellView : NSView
@property (nullable, strong) id objectValue;
@end

@interface NSTableView (VantroAppleAdditionsViewBased)
- (nullable __kindof NSView *)makeViewWithIdentifier:(NSUserInterfaceItemIdentifier)identifier owner:(nullable id)owner;
@end

// Drag and drop with dragging sessions (10.7), which GNUstep lacks: it has
// the NSDraggingSource protocol and NSDraggingContext with Apple's types, but
// only a forward declaration of NSDraggingSession and no NSDraggingItem,
// NSDraggingFormation or -[NSView beginDraggingSessionWithItems:event:source:].
// GNUstep's NSDragOperationEvery is UINT_MAX where Apple's is NSUIntegerMax;
// the shell passes the core's value through and never names it.
// Checked against developer.apple.com/documentation/appkit/nsdraggingformation
// (default, none, pile, list, stack) with learn.microsoft.com
// NSDraggingFormation (0 to 4) and docs.rs objc2-app-kit (NSInteger);
// .../nsdraggingitem/init(pasteboardwriter:) (designated, `any
// NSPasteboardWriting`), .../nsdraggingitem/item (`var item: Any { get }`),
// .../nsdraggingitem/setdraggingframe(_:contents:) (`(NSRect, contents: Any?)`)
// and docs.rs objc2-app-kit NSDraggingItem (draggingFrame read and written);
// .../nsdraggingsession/animatestostartingpositionsoncancelorfail (Bool) and
// .../nsdraggingsession/draggingformation (NSDraggingFormation), both read and
// written; .../nsview/begindraggingsession(with:event:source:) (`([NSDraggingItem],
// event: NSEvent, source: any NSDraggingSource) -> NSDraggingSession`; its
// text says nil when the session cannot start, the signature says non-null);
// .../nspasteboardwriting and docs.rs objc2-app-kit (NSURL adopts
// NSPasteboardWriting, in AppKit's NSURL (NSPasteboardSupport) category).
typedef NS_ENUM(NSInteger, NSDraggingFormation) {
    NSDraggingFormationDefault = 0,
    NSDraggingFormationNone,
    NSDraggingFormationPile,
    NSDraggingFormationList,
    NSDraggingFormationStack
};

@interface NSDraggingItem : NSObject
- (instancetype)initWithPasteboardWriter:(id<NSPasteboardWriting>)pasteboardWriter NS_DESIGNATED_INITIALIZER;
@property (readonly, strong) id item;
@property NSRect draggingFrame;
- (void)setDraggingFrame:(NSRect)frame contents:(nullable id)contents;
@end

@interface NSDraggingSession : NSObject
@property NSDraggingFormation draggingFormation;
@property BOOL animatesToStartingPositionsOnCancelOrFail;
@end

@interface NSView (VantroAppleAdditionsDraggingSession)
- (NSDraggingSession *)beginDraggingSessionWithItems:(NSArray<NSDraggingItem *> *)items
                                               event:(NSEvent *)event
                                              source:(id<NSDraggingSource>)source;
@end

@interface NSURL (VantroAppleAdditionsPasteboardSupport) <NSPasteboardWriting>
@end

// The event type names of 10.12, which GNUstep lacks (it has only the old
// NSLeftMouseDown … names, deprecated on the Mac). GNUstep's NSEventType is
// NSUInteger, as Apple's is. Checked against
// developer.apple.com/documentation/appkit/nsevent/eventtype/leftmousedragged
// and docs.rs rust-macios NSEventType (LeftMouseDown 1, LeftMouseUp 2,
// RightMouseDown 3, LeftMouseDragged 6; u64).
enum : NSEventType {
    NSEventTypeLeftMouseDown = 1,
    NSEventTypeLeftMouseUp = 2,
    NSEventTypeRightMouseDown = 3,
    NSEventTypeLeftMouseDragged = 6
};

// The path element names of current SDKs, which GNUstep lacks (it has only
// NSMoveToBezierPathElement …, deprecated on the Mac); the same values.
// Checked against developer.apple.com/documentation/appkit/nsbezierpath/elementtype
// (moveTo, lineTo, curveTo, closePath) and .../nsmovetobezierpathelement
// (the old name, macOS 10.0 to 11.0).
static const NSBezierPathElement NSBezierPathElementMoveTo = NSMoveToBezierPathElement;
static const NSBezierPathElement NSBezierPathElementLineTo = NSLineToBezierPathElement;
static const NSBezierPathElement NSBezierPathElementCurveTo = NSCurveToBezierPathElement;
static const NSBezierPathElement NSBezierPathElementClosePath = NSClosePathBezierPathElement;

// Present in GNUstep with Apple's types: NSAlert's messageText,
// informativeText, addButtonWithTitle:, runModal and alertStyle (as methods,
// which dot syntax reaches the same way), NSModalResponse,
// NSAlertFirstButtonReturn, NSModalPanelRunLoopMode, NSScreen mainScreen and
// frame (NSRect, the same type as CGRect here), NSApplication
// sharedApplication. NSRunningApplication: see <AppKit/NSRunningApplication.h>
// in this folder.

NS_ASSUME_NONNULL_END

#endif
