#import "AppDelegate.h"

#import <Vantro/Vantro.h>

@interface AppDelegate () <VantroDelegate>
@property (nonatomic, strong) NSWindow *window;
@property (nonatomic, strong) VantroViewController *permissionList;
@end

@implementation AppDelegate

- (void)applicationDidFinishLaunching:(NSNotification *)notification {
    (void)notification;
    [self buildMenu];

    VantroViewController *list = [[VantroViewController alloc] init];
    list.requestedPrivacyCategoryIdentifiers = @[
        VantroPrivacyFullDiskAccess, VantroPrivacyAccessibility, VantroPrivacyCalendars, VantroPrivacyPhotos,
        VantroPrivacyDesktopFolder
    ];
    list.reasonStrings = @{
        VantroPrivacyFullDiskAccess : @"To find your mail and messages archives.",
        VantroPrivacyAccessibility : @"To arrange the windows of other applications.",
        VantroPrivacyCalendars : @"To show your meetings beside your notes.",
        VantroPrivacyPhotos : @"To attach photos to your notes.",
        VantroPrivacyDesktopFolder : @"To tidy the files on your desktop.",
    };
    self.permissionList = list;

    NSWindow *window = [[NSWindow alloc] initWithContentRect:NSMakeRect(0, 0, 560, 320)
                                                   styleMask:NSWindowStyleMaskTitled | NSWindowStyleMaskClosable |
                                                             NSWindowStyleMaskMiniaturizable | NSWindowStyleMaskResizable
                                                     backing:NSBackingStoreBuffered
                                                       defer:NO];
    window.title = @"Vantro Demo";
    window.contentViewController = list;
    [window center];
    [window makeKeyAndOrderFront:nil];
    self.window = window;

    Vantro.sharedKit.delegate = self;
}

- (BOOL)applicationShouldTerminateAfterLastWindowClosed:(NSApplication *)application {
    (void)application;
    return YES;
}

- (IBAction)guideToFullDiskAccess:(id)sender {
    (void)sender;
    [Vantro.sharedKit askAccessForPanelIdentifier:VantroPrivacyFullDiskAccess];
}

- (void)vantroWillOpenPanel:(PrivacyCategoryIdentifier)panelIdentifier {
    NSLog(@"Vantro Demo: opening the settings at %@", panelIdentifier);
}

- (void)vantroDidOpenPanel:(PrivacyCategoryIdentifier)panelIdentifier {
    NSLog(@"Vantro Demo: the overlay lies over the settings at %@", panelIdentifier);
}

- (void)buildMenu {
    NSMenu *menuBar = [[NSMenu alloc] init];

    NSMenuItem *applicationItem = [[NSMenuItem alloc] init];
    NSMenu *applicationMenu = [[NSMenu alloc] initWithTitle:@"Vantro Demo"];
    [applicationMenu addItemWithTitle:@"Quit Vantro Demo" action:@selector(terminate:) keyEquivalent:@"q"];
    applicationItem.submenu = applicationMenu;
    [menuBar addItem:applicationItem];

    NSMenuItem *privacyItem = [[NSMenuItem alloc] init];
    NSMenu *privacyMenu = [[NSMenu alloc] initWithTitle:@"Privacy"];
    NSMenuItem *guide = [[NSMenuItem alloc] initWithTitle:@"Guide Me to Full Disk Access…"
                                                   action:@selector(guideToFullDiskAccess:)
                                            keyEquivalent:@"g"];
    guide.target = self;
    [privacyMenu addItem:guide];
    privacyItem.submenu = privacyMenu;
    [menuBar addItem:privacyItem];

    NSApp.mainMenu = menuBar;
}

@end
