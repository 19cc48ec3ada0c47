// Stand-in used only by the Mac shell type-check. It takes the place of
// GNUstep's <AppKit/NSRunningApplication.h> (this folder is searched before
// GNUstep's), because GNUstep declares +currentApplication as returning `id`
// and +runningApplicationsWithBundleIdentifier: as returning an untyped
// NSArray. Against those, ordinary Mac code such as
// `NSRunningApplication.currentApplication.processIdentifier` does not
// compile ("property not found on object of type 'id'"), and
// `[[NSRunningApplication currentApplication] processIdentifier]` warns about
// several methods named processIdentifier. A category cannot fix that: clang
// keeps the primary interface's declaration. Only GNUstep's AppKit.h imports
// the original, and nothing else in GNUstep uses what it declares.
//
// Declares the members the shell uses, with Apple's types. Checked against
// developer.apple.com/documentation/appkit/nsrunningapplication and its
// bundleurl, localizedname, processidentifier and
// runningapplications(withbundleidentifier:) pages; docs.rs objc2-app-kit NSRunningApplication.rs
// (NSApplicationActivationOptions is NSUInteger, AllWindows 1 << 0,
// IgnoringOtherApps 1 << 1); learn.microsoft.com NSRunningApplication
// (CurrentApplication, Hidden, Terminated properties). bundleIdentifier's
// nullability and currentApplication's non-null class property are
// unconfirmed against an Apple page.
#ifndef VANTRO_MACSHELL_NSRUNNINGAPPLICATION_H
#define VANTRO_MACSHELL_NSRUNNINGAPPLICATION_H

#import <Foundation/Foundation.h>
#import <AppKit/NSWorkspace.h>

NS_ASSUME_NONNULL_BEGIN

// NSApplicationActivationPolicy: checked against developer.apple.com/documentation/appkit/nsapplication/activationpolicy-swift.enum
// and learn.microsoft.com's AppKit.NSApplicationActivationPolicy (Regular 0, Accessory 1, Prohibited 2; NSInteger).
typedef NS_ENUM(NSInteger, NSApplicationActivationPolicy) {
    NSApplicationActivationPolicyRegular = 0,
    NSApplicationActivationPolicyAccessory = 1,
    NSApplicationActivationPolicyProhibited = 2
};

typedef NS_OPTIONS(NSUInteger, NSApplicationActivationOptions) {
    NSApplicationActivateAllWindows = 1 << 0,
    NSApplicationActivateIgnoringOtherApps = 1 << 1
};

@interface NSRunningApplication : NSObject

@property (readonly, getter=isTerminated) BOOL terminated;
@property (readonly, getter=isHidden) BOOL hidden;
@property (nullable, readonly, copy) NSString *localizedName;
@property (nullable, readonly, copy) NSString *bundleIdentifier;
@property (nullable, readonly, copy) NSURL *bundleURL;
@property (readonly) pid_t processIdentifier;

- (BOOL)activateWithOptions:(NSApplicationActivationOptions)options;

+ (NSArray<NSRunningApplication *> *)runningApplicationsWithBundleIdentifier:(NSString *)bundleIdentifier;
@property (class, readonly, strong) NSRunningApplication *currentApplication;

@end

// Checked against developer.apple.com/documentation/appkit/nsworkspace/frontmostapplication
// (`var frontmostApplication: NSRunningApplication?`).
@interface NSWorkspace (NSWorkspaceRunningApplications)

@property (nullable, readonly, strong) NSRunningApplication *frontmostApplication;

@end

NS_ASSUME_NONNULL_END

#endif
