// The overlay's window controller in Objective-C.
//
// Implements: the layout looked up in the framework's own bundle (the Swift
// package's resource bundle or the framework) before AppKit's default
// places, the owner's class's bundle and the main bundle, which in the Swift
// package are the host's; message as plain storage, which the layout's
// field is bound to; the two outlets, held weakly; inDrag derived from
// "iconView.inDrag"; a weak reference to the core controller it is the twin
// of, when there is one.
// Known gaps: a layout given by path (initWithWindowNibPath:owner:) is used
// as it is. A message set here, rather than on the core controller, shows in
// the overlay but the core controller does not see it: the core's message
// reaches this one, not the other way round.

#import <Vantro/VantroWindowController.h>

#include "macOS/MacBundles.h"
#include "macOS/MacOverlay.h"

@interface VantroWindowController ()
- (std::shared_ptr<vantro::VantroWindowController>)vantroCore;
- (void)vantroSetCore:(const std::shared_ptr<vantro::VantroWindowController>&)core;
@end

@implementation VantroWindowController {
    std::weak_ptr<vantro::VantroWindowController> _vantroCore;
}

+ (NSSet<NSString*>*)keyPathsForValuesAffectingInDrag {
    return [NSSet setWithObject:@"iconView.inDrag"];
}

- (instancetype)initWithWindow:(NSWindow*)window {
    return [super initWithWindow:window];
}

- (instancetype)initWithWindowNibName:(NSNibName)windowNibName {
    return [self initWithWindowNibName:windowNibName owner:self];
}

- (instancetype)initWithWindowNibName:(NSNibName)windowNibName owner:(id)owner {
    NSString* path = [vantro::mac::frameworkNSBundle() pathForResource:windowNibName ofType:@"nib"];
    if (path) return [self initWithWindowNibPath:path owner:owner];
    return [super initWithWindowNibName:windowNibName owner:owner];
}

- (void)windowDidLoad {
    [super windowDidLoad];
}

- (BOOL)inDrag {
    return self.iconView.inDrag;
}

- (std::shared_ptr<vantro::VantroWindowController>)vantroCore {
    return _vantroCore.lock();
}

- (void)vantroSetCore:(const std::shared_ptr<vantro::VantroWindowController>&)core {
    _vantroCore = core;
}

@end

namespace vantro::mac {

std::shared_ptr<vantro::VantroWindowController> rememberedCoreController(VantroWindowControllerTwin* controller) {
    return [controller vantroCore];
}

void rememberCoreController(VantroWindowControllerTwin* controller, const std::shared_ptr<vantro::VantroWindowController>& core) {
    [controller vantroSetCore:core];
}

}  // namespace vantro::mac
