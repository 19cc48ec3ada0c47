// The overlay's AppKit classes on a real Mac: the window's fixed style, the
// layout found in the framework's bundle with its outlets and binding, the
// core controller driving what the layout made, inDrag passed from the icon
// view to the controller, and what a drag of the icon hands to AppKit.

#import <Vantro/Vantro.h>

#include <gtest/gtest.h>

#include <iterator>
#include <memory>
#include <string>
#include <string_view>

#include "Overlay/VantroWindowController.h"
#include "macOS/MacBundles.h"
#include "macOS/MacOverlay.h"
#include "macOS/MacPlatform.h"

// Records every key-value change it is told of.
@interface VantroTestChangeRecorder : NSObject
@property (nonatomic, readonly) NSMutableArray<NSDictionary*>* changes;
@end

@implementation VantroTestChangeRecorder

- (instancetype)init {
    if ((self = [super init])) _changes = [NSMutableArray array];
    return self;
}

- (void)observeValueForKeyPath:(NSString*)keyPath
                      ofObject:(id)object
                        change:(NSDictionary<NSKeyValueChangeKey, id>*)change
                       context:(void*)context {
    (void)keyPath;
    (void)object;
    (void)context;
    [_changes addObject:change];
}

@end

// An icon view that records what it would hand AppKit to start a drag, and
// starts none, answering no session: a test must not leave a drag running in
// the event loop.
@interface VantroRecordingIconView : ZVMainBundleIconImageView
@property (nonatomic, readonly) NSArray<NSDraggingItem*>* draggedItems;
@property (nonatomic, readonly) NSEvent* draggingEvent;
@property (nonatomic, readonly, weak) id<NSDraggingSource> draggingSource;
@end

@implementation VantroRecordingIconView

- (NSDraggingSession*)beginDraggingSessionWithItems:(NSArray<NSDraggingItem*>*)items
                                              event:(NSEvent*)event
                                             source:(id<NSDraggingSource>)source {
    _draggedItems = items;
    _draggingEvent = event;
    _draggingSource = source;
    NSDraggingSession* notStarted = nil;
    return notStarted;
}

@end

// Records the mouse-downs passed on to it.
@interface VantroTestResponder : NSResponder
@property (nonatomic, readonly) NSMutableArray<NSEvent*>* mouseDowns;
@end

@implementation VantroTestResponder

- (instancetype)init {
    if ((self = [super init])) _mouseDowns = [NSMutableArray array];
    return self;
}

- (void)mouseDown:(NSEvent*)event {
    [_mouseDowns addObject:event];
}

@end

namespace {

NSEvent* mouseEvent(NSEventType type, NSInteger clickCount) {
    return [NSEvent mouseEventWithType:type
                              location:NSMakePoint(5, 5)
                         modifierFlags:0
                             timestamp:0
                          windowNumber:0
                               context:nil
                           eventNumber:0
                            clickCount:clickCount
                              pressure:1];
}

// Counts the announcements of one key of a core object.
class AnnouncementCounter final : public vantro::Observer {
public:
    void observeValueForKeyPath(std::string_view, vantro::Observable&, vantro::ObservationContext) override { ++count; }
    int count = 0;
};

constexpr char CounterContext[] = "OverlayTest.counter";

bool hasSubviewOfClass(NSView* view, Class cls) {
    for (NSView* subview in view.subviews)
        if ([subview isKindOfClass:cls] || hasSubviewOfClass(subview, cls)) return true;
    return false;
}

class Overlay : public ::testing::Test {
protected:
    void SetUp() override {
        [NSApplication sharedApplication];
        vantro::mac::installHostProcess();
    }
};

TEST_F(Overlay, TheWindowIsBorderlessAndNeverOpaqueWhateverItIsMadeWith) {
    const NSWindowStyleMask asked[] = {
        NSWindowStyleMaskBorderless,
        NSWindowStyleMaskTitled | NSWindowStyleMaskClosable,
        NSWindowStyleMaskTitled | NSWindowStyleMaskResizable | NSWindowStyleMaskMiniaturizable,
    };
    for (NSWindowStyleMask mask : asked) {
        VantroWindow* window = [[VantroWindow alloc] initWithContentRect:NSMakeRect(0, 0, 200, 100)
                                                               styleMask:mask
                                                                 backing:NSBackingStoreBuffered
                                                                   defer:YES];
        EXPECT_EQ(window.styleMask, NSWindowStyleMaskBorderless) << "asked for " << mask;
        window.backgroundColor = NSColor.whiteColor;
        window.opaque = YES;
        EXPECT_FALSE(window.isOpaque) << "asked for " << mask;
    }
}

// A view 40 wide and 100 high lays its arrow from (20, 1) to (20, 99): the
// outline along x, then the same outline turned upright and moved there, as a
// new path of a move, seven lines and a close.
TEST_F(Overlay, TheArrowsGeometryReachesHostsInAppKitsTypes) {
    VantroArrowView* view = [[VantroArrowView alloc] initWithFrame:NSMakeRect(0, 0, 40, 100)];
    NSPoint outline[7];
    [view arrowPoints:outline forLength:98 tailWidth:8 headWidth:20 headLength:20];
    const NSPoint along[7] = {{0, 4}, {78, 4}, {78, 10}, {98, 0}, {78, -10}, {78, -4}, {0, -4}};
    const NSPoint upright[7] = {{16, 1}, {16, 79}, {10, 79}, {20, 99}, {30, 79}, {24, 79}, {24, 1}};
    for (int i = 0; i < 7; ++i) EXPECT_TRUE(NSEqualPoints(outline[i], along[i])) << "point " << i;

    NSBezierPath* path = [view arrowFromPoint:NSMakePoint(20, 1) toPoint:NSMakePoint(20, 99) tailWidth:8 headWidth:20 headLength:20];
    NSBezierPath* again = [view arrowFromPoint:NSMakePoint(20, 1) toPoint:NSMakePoint(20, 99) tailWidth:8 headWidth:20 headLength:20];
    EXPECT_NE(path, again) << "each call makes a new path";
    ASSERT_EQ(path.elementCount, 9);
    NSPoint point;
    EXPECT_EQ([path elementAtIndex:0 associatedPoints:&point], NSBezierPathElementMoveTo);
    EXPECT_EQ([path elementAtIndex:8 associatedPoints:&point], NSBezierPathElementClosePath);
    for (int i = 0; i < 7; ++i) {
        EXPECT_EQ([path elementAtIndex:i + 1 associatedPoints:&point], NSBezierPathElementLineTo);
        EXPECT_NEAR(point.x, upright[i].x, 1e-4) << "line " << i;
        EXPECT_NEAR(point.y, upright[i].y, 1e-4) << "line " << i;
    }
}

TEST_F(Overlay, TheLayoutLoadsFromTheFrameworksBundleWithEveryOutletConnected) {
    VantroWindowController* controller = [[VantroWindowController alloc] initWithWindowNibName:@"VantroWindowController"];
    NSString* inFramework = [vantro::mac::frameworkNSBundle() pathForResource:@"VantroWindowController" ofType:@"nib"];
    ASSERT_NE(inFramework, nil) << "the compiled layout is not in the framework's bundle";
    EXPECT_TRUE([controller.windowNibPath isEqualToString:inFramework]);

    NSWindow* window = controller.window;
    ASSERT_TRUE([window isKindOfClass:[VantroWindow class]]);
    EXPECT_EQ(window.styleMask, NSWindowStyleMaskBorderless);
    EXPECT_FALSE(window.isVisible);
    NSView* content = window.contentView;
    EXPECT_TRUE([content isKindOfClass:[VantroContentView class]]);
    EXPECT_TRUE(hasSubviewOfClass(content, [VantroView class]));
    EXPECT_TRUE(hasSubviewOfClass(content, [VantroArrowView class]));

    ZVMainBundleIconImageView* icon = controller.iconView;
    ASSERT_TRUE([icon isKindOfClass:[ZVMainBundleIconImageView class]]);
    EXPECT_TRUE([icon isDescendantOf:content]);
    EXPECT_EQ(icon.imageScaling, NSImageScaleProportionallyDown);
    EXPECT_NE(icon.image, nil);
    EXPECT_FALSE(icon.inDrag);

    NSTextField* field = controller.unlockMessageField;
    ASSERT_NE(field, nil);
    EXPECT_TRUE([field isDescendantOf:content]);
    // The field shows the message through its binding to the owner.
    controller.message = @"Drag the icon into the list above.";
    EXPECT_TRUE([field.stringValue isEqualToString:@"Drag the icon into the list above."]);
}

TEST_F(Overlay, TheCoreControllerDrivesTheLayoutItLoaded) {
    auto core = vantro::VantroWindowController::initWithWindowNibName("VantroWindowController");
    ASSERT_NE(core->window(), nullptr);
    VantroWindowController* controller = vantro::mac::windowControllerFor(core);
    ASSERT_NE(controller, nil);
    EXPECT_EQ(vantro::mac::coreWindowController(controller), core);
    EXPECT_EQ(core->iconView(), vantro::mac::coreIconView(controller.iconView));
    ASSERT_NE(core->unlockMessageField(), nullptr);
    EXPECT_EQ(vantro::mac::nsViewOf(core->unlockMessageField()), controller.unlockMessageField);

    // The core's message reaches the Objective-C controller, and so the field.
    core->setMessage(std::string("Drag Vantro into the list."));
    EXPECT_TRUE([controller.message isEqualToString:@"Drag Vantro into the list."]);
    EXPECT_TRUE([controller.unlockMessageField.stringValue isEqualToString:@"Drag Vantro into the list."]);
    core->setMessage(std::nullopt);
    EXPECT_EQ(controller.message, nil);

    vantro::OverlayWindow& window = *core->window();
    NSWindow* nsWindow = controller.window;
    window.setBackgroundColor(vantro::Color::clearColor());
    EXPECT_EQ(nsWindow.backgroundColor.alphaComponent, 0.0);
    window.setLevel(vantro::NSPopUpMenuWindowLevel);
    EXPECT_EQ(nsWindow.level, vantro::NSPopUpMenuWindowLevel);
    const vantro::Rect frame{{100, 160}, {668, 690}};
    window.setFrame(frame, true, false);
    EXPECT_EQ(window.frame(), frame);
    EXPECT_TRUE(NSEqualRects(nsWindow.frame, NSMakeRect(100, 160, 668, 690)));

    AnnouncementCounter visible;
    window.addObserver(visible, "visible", vantro::ObservingOptionNone, CounterContext);
    window.orderFront();
    EXPECT_EQ(visible.count, 1);
    EXPECT_TRUE(window.isVisible());
    window.orderOut();
    EXPECT_EQ(visible.count, 2);
    EXPECT_FALSE(window.isVisible());
    window.removeObserver(visible, "visible", CounterContext);
}

TEST_F(Overlay, AControllerTheHostMadeGetsACoreTwinThatDrivesItsWindow) {
    VantroWindowController* controller = [[VantroWindowController alloc] initWithWindowNibName:@"VantroWindowController"];
    auto core = vantro::mac::coreWindowController(controller);
    ASSERT_NE(core, nullptr);
    ASSERT_NE(core->window(), nullptr);
    EXPECT_EQ(vantro::mac::coreWindowController(controller), core);
    EXPECT_EQ(vantro::mac::windowControllerFor(core), controller);
    core->window()->setLevel(5);
    EXPECT_EQ(controller.window.level, 5);
    EXPECT_EQ(core->iconView(), vantro::mac::coreIconView(controller.iconView));
}

TEST_F(Overlay, TheControllersInDragFollowsTheIconView) {
    VantroWindowController* controller = [[VantroWindowController alloc] initWithWindowNibName:@"VantroWindowController"];
    ASSERT_NE(controller.window, nil);
    ZVMainBundleIconImageView* icon = controller.iconView;
    ASSERT_NE(icon, nil);

    VantroTestChangeRecorder* onController = [[VantroTestChangeRecorder alloc] init];
    VantroTestChangeRecorder* onIcon = [[VantroTestChangeRecorder alloc] init];
    const NSKeyValueObservingOptions both = NSKeyValueObservingOptionOld | NSKeyValueObservingOptionNew;
    [controller addObserver:onController forKeyPath:@"inDrag" options:NSKeyValueObservingOptionNew context:nullptr];
    [icon addObserver:onIcon forKeyPath:@"inDrag" options:both context:nullptr];

    icon.inDrag = YES;
    EXPECT_TRUE(controller.inDrag);
    // The drag ends, by drop or by cancel, through the dragging source.
    NSDraggingSession* ended = nil;
    [icon draggingSession:ended endedAtPoint:NSMakePoint(0, 0) operation:NSDragOperationNone];
    EXPECT_FALSE(controller.inDrag);
    EXPECT_FALSE(icon.inDrag);

    ASSERT_EQ(onController.changes.count, 2u);
    EXPECT_TRUE([onController.changes[0][NSKeyValueChangeNewKey] boolValue]);
    EXPECT_FALSE([onController.changes[1][NSKeyValueChangeNewKey] boolValue]);
    // The icon's own notifications carry the value before and after, once each.
    ASSERT_EQ(onIcon.changes.count, 2u);
    EXPECT_FALSE([onIcon.changes[0][NSKeyValueChangeOldKey] boolValue]);
    EXPECT_TRUE([onIcon.changes[0][NSKeyValueChangeNewKey] boolValue]);
    EXPECT_TRUE([onIcon.changes[1][NSKeyValueChangeOldKey] boolValue]);
    EXPECT_FALSE([onIcon.changes[1][NSKeyValueChangeNewKey] boolValue]);

    [icon removeObserver:onIcon forKeyPath:@"inDrag" context:nullptr];
    [controller removeObserver:onController forKeyPath:@"inDrag" context:nullptr];
}

TEST_F(Overlay, AnIconOf64By48DragsTheMainBundleInA48By48FrameAtItsOrigin) {
    VantroRecordingIconView* icon = [[VantroRecordingIconView alloc] initWithFrame:NSMakeRect(10, 20, 64, 48)];
    NSEvent* down = mouseEvent(NSEventTypeLeftMouseDown, 1);
    [icon beginDraggingSessionWithEvent:down];

    ASSERT_EQ(icon.draggedItems.count, 1u);
    NSDraggingItem* item = icon.draggedItems[0];
    EXPECT_TRUE(NSEqualRects(item.draggingFrame, NSMakeRect(0, 0, 48, 48)));
    EXPECT_TRUE([item.item isEqual:NSBundle.mainBundle.bundleURL]);
    EXPECT_EQ(icon.draggingEvent, down);
    EXPECT_EQ(icon.draggingSource, icon);
    EXPECT_FALSE(icon.inDrag) << "AppKit answered no session: no drag began, so none will end";
}

TEST_F(Overlay, MouseDownsOtherThanOneLeftClickGoToTheNextResponderUnchanged) {
    VantroRecordingIconView* icon = [[VantroRecordingIconView alloc] initWithFrame:NSMakeRect(0, 0, 64, 64)];
    VantroTestResponder* next = [[VantroTestResponder alloc] init];
    icon.nextResponder = next;
    NSEvent* passedOn[] = {
        mouseEvent(NSEventTypeLeftMouseDown, 2),
        mouseEvent(NSEventTypeLeftMouseDown, 3),
        mouseEvent(NSEventTypeRightMouseDown, 1),
    };
    for (NSEvent* event : passedOn) {
        [icon mouseDown:event];
        EXPECT_EQ(next.mouseDowns.lastObject, event);
    }
    EXPECT_EQ(next.mouseDowns.count, std::size(passedOn));
    EXPECT_EQ(icon.draggedItems, nil);
    EXPECT_FALSE(icon.inDrag);
}

}  // namespace
