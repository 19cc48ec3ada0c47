// The guide's Objective-C twin. Each instance owns a core guide (the shared
// instance wraps the core's shared guide) and forwards every operation and
// property. The delegate is reached through a bridge that the twin owns and
// the core holds weakly, as it holds the delegate; the core's
// "isOverlayShown" announcements are re-announced as key-value notifications
// of the twin.

#import <Vantro/VantroGuide.h>

#include <dispatch/dispatch.h>

#include <memory>
#include <string>

#include "Guide/Vantro.h"
#include "macOS/MacFoundation.h"
#include "macOS/MacPlatform.h"
#include "macOS/MacTwins.h"
#include "macOS/MacWorkspace.h"

using CoreGuide = vantro::Vantro;

// The Objective-C class under a name of its own: inside namespace vantro,
// "Vantro" names the core class.
typedef Vantro VantroGuideTwin;

namespace {

// Sends the core's delegate messages to the host's Objective-C delegate,
// asking it first whether it responds to each.
class DelegateBridge final : public vantro::VantroDelegate {
public:
    explicit DelegateBridge(id<VantroDelegate> delegate) : delegate_(delegate) {}
    id<VantroDelegate> delegate() const { return delegate_; }

    bool respondsToVantroWillOpenPanel() const override {
        return [delegate_ respondsToSelector:@selector(vantroWillOpenPanel:)];
    }
    void vantroWillOpenPanel(std::string_view panelIdentifier) override {
        [delegate_ vantroWillOpenPanel:vantro::mac::toNSString(panelIdentifier)];
    }
    bool respondsToVantroDidOpenPanel() const override { return [delegate_ respondsToSelector:@selector(vantroDidOpenPanel:)]; }
    void vantroDidOpenPanel(std::string_view panelIdentifier) override {
        [delegate_ vantroDidOpenPanel:vantro::mac::toNSString(panelIdentifier)];
    }

private:
    __weak id<VantroDelegate> delegate_;
};

// Re-announces the core's "isOverlayShown" on the twin.
class OverlayShownRelay final : public vantro::Observer {
public:
    explicit OverlayShownRelay(VantroGuideTwin* twin) : twin_(twin) {}
    void observeValueForKeyPath(std::string_view keyPath, vantro::Observable&, vantro::ObservationContext context) override {
        if (context != relayContext || keyPath != "isOverlayShown") return;
        VantroGuideTwin* twin = twin_;
        [twin willChangeValueForKey:@"isOverlayShown"];
        [twin didChangeValueForKey:@"isOverlayShown"];
    }
    static constexpr char relayContext[] = "VantroGuideTwin.isOverlayShown";

private:
    __weak VantroGuideTwin* twin_;
};

NSString* _Nullable toNSStringOrNil(const std::optional<std::string>& text) {
    return text ? vantro::mac::toNSString(*text) : nil;
}

std::optional<std::string> toOptional(NSString* _Nullable text) { return vantro::mac::toOptionalString(text); }

}  // namespace

@interface Vantro ()
- (instancetype)initWithCore:(std::shared_ptr<CoreGuide>)core NS_DESIGNATED_INITIALIZER;
@end

@implementation Vantro {
    std::shared_ptr<CoreGuide> _core;
    std::shared_ptr<DelegateBridge> _delegateBridge;
    std::unique_ptr<OverlayShownRelay> _relay;
}

+ (Vantro*)sharedKit {
    static Vantro* shared;
    static dispatch_once_t once;
    dispatch_once(&once, ^{
      vantro::mac::installHostProcess();
      shared = [[Vantro alloc] initWithCore:CoreGuide::sharedKit()];
    });
    return shared;
}

- (instancetype)init {
    vantro::mac::installHostProcess();
    if ((self = [super init])) [self attachCore:vantro::makeShared<CoreGuide>()];
    return self;
}

- (instancetype)initWithCore:(std::shared_ptr<CoreGuide>)core {
    if ((self = [super init])) [self attachCore:std::move(core)];
    return self;
}

- (void)attachCore:(std::shared_ptr<CoreGuide>)core {
    _core = std::move(core);
    _relay = std::make_unique<OverlayShownRelay>(self);
    _core->addObserver(*_relay, "isOverlayShown", vantro::ObservingOptionNone, OverlayShownRelay::relayContext);
}

- (void)dealloc {
    if (_core && _relay) _core->removeObserver(*_relay, "isOverlayShown", OverlayShownRelay::relayContext);
}

+ (BOOL)openPrivacyPreferencesWithAnchor:(PrivacyCategoryIdentifier)anchor {
    vantro::mac::installHostProcess();
    std::string storage;
    return CoreGuide::openPrivacyPreferencesWithAnchor(vantro::mac::toOptionalView(anchor, storage));
}

+ (BOOL)checkPermissionToAutomate:(NSString*)bundleIdentifier
               runningApplication:(NSRunningApplication* _Nullable __autoreleasing* _Nullable)runningApplication {
    vantro::mac::installHostProcess();
    // The core leaves the out-pointer as it found it where the system cannot
    // tell: start from the caller's value so that "untouched" survives.
    vantro::RunningApplicationPtr target = runningApplication ? vantro::mac::runningApplicationFor(*runningApplication) : nullptr;
    BOOL permitted = CoreGuide::checkPermissionToAutomate(vantro::mac::toString(bundleIdentifier),
                                                          runningApplication ? &target : nullptr);
    if (runningApplication) *runningApplication = vantro::mac::nsRunningApplication(target);
    return permitted;
}

+ (void)authorizeIfPossible {
    vantro::mac::installHostProcess();
    CoreGuide::authorizeIfPossible();
}

+ (NSSet<NSString*>*)keyPathsForValuesAffectingIsOverlayShown {
    NSMutableSet<NSString*>* keyPaths = [NSMutableSet set];
    for (const auto& keyPath : CoreGuide::keyPathsForValuesAffectingIsOverlayShown())
        [keyPaths addObject:vantro::mac::toNSString(keyPath)];
    return keyPaths;
}

- (BOOL)stopOnQuitOfSystemPreferences {
    return _core->stopOnQuitOfSystemPreferences();
}
- (void)setStopOnQuitOfSystemPreferences:(BOOL)value {
    _core->setStopOnQuitOfSystemPreferences(value);
}
- (BOOL)stopOnDeactivateOfSystemPreferences {
    return _core->stopOnDeactivateOfSystemPreferences();
}
- (void)setStopOnDeactivateOfSystemPreferences:(BOOL)value {
    _core->setStopOnDeactivateOfSystemPreferences(value);
}
- (BOOL)stopOnActivateOfHostApplication {
    return _core->stopOnActivateOfHostApplication();
}
- (void)setStopOnActivateOfHostApplication:(BOOL)value {
    _core->setStopOnActivateOfHostApplication(value);
}
- (BOOL)didSeeOtherApplication {
    return _core->didSeeOtherApplication();
}
- (void)setDidSeeOtherApplication:(BOOL)value {
    _core->setDidSeeOtherApplication(value);
}
- (BOOL)didSeeSystemPreferences {
    return _core->didSeeSystemPreferences();
}
- (void)setDidSeeSystemPreferences:(BOOL)value {
    _core->setDidSeeSystemPreferences(value);
}
- (BOOL)didSeePrivacyPanel {
    return _core->didSeePrivacyPanel();
}
- (void)setDidSeePrivacyPanel:(BOOL)value {
    _core->setDidSeePrivacyPanel(value);
}

- (id<VantroDelegate>)delegate {
    return _delegateBridge ? _delegateBridge->delegate() : nil;
}

- (void)setDelegate:(id<VantroDelegate>)delegate {
    _delegateBridge = delegate ? std::make_shared<DelegateBridge>(delegate) : nullptr;
    _core->setDelegate(_delegateBridge);
}

// hostApplication and monitor are declared atomic: their accessors take
// the object's lock, so a reader on another thread gets a whole value from
// another accessor's write.
- (NSRunningApplication*)hostApplication {
    @synchronized(self) {
        return vantro::mac::nsRunningApplication(_core->hostApplication());
    }
}

- (void)setHostApplication:(NSRunningApplication*)application {
    @synchronized(self) {
        _core->setHostApplication(vantro::mac::runningApplicationFor(application));
    }
}

- (id)monitor {
    @synchronized(self) {
        return vantro::mac::monitorToken(_core->monitor());
    }
}

- (void)setMonitor:(id)monitor {
    @synchronized(self) {
        _core->setMonitor(vantro::mac::eventMonitorFor(monitor));
    }
}

- (VantroWindowController*)windowController {
    return vantro::mac::windowControllerFor(_core->windowController());
}

- (void)setWindowController:(VantroWindowController*)windowController {
    _core->setWindowController(vantro::mac::coreWindowController(windowController));
}

- (PrivacyCategoryIdentifier)panelIdentifier {
    return toNSStringOrNil(_core->panelIdentifier());
}
- (void)setPanelIdentifier:(PrivacyCategoryIdentifier)panelIdentifier {
    _core->setPanelIdentifier(toOptional(panelIdentifier));
}
- (NSString*)privacyPanelName {
    return toNSStringOrNil(_core->privacyPanelName());
}
- (void)setPrivacyPanelName:(NSString*)name {
    _core->setPrivacyPanelName(toOptional(name));
}
- (NSString*)message {
    return toNSStringOrNil(_core->message());
}
- (void)setMessage:(NSString*)message {
    _core->setMessage(toOptional(message));
}

- (BOOL)isOverlayShown {
    return _core->isOverlayShown();
}

- (void)askAccessForPanelIdentifier:(PrivacyCategoryIdentifier)panelIdentifier {
    std::string storage;
    _core->askAccessForPanelIdentifier(vantro::mac::toOptionalView(panelIdentifier, storage));
}

- (void)askAccessForPanelIdentifier:(PrivacyCategoryIdentifier)panelIdentifier withMessage:(NSString*)message {
    std::string storage;
    _core->askAccessForPanelIdentifier(vantro::mac::toOptionalView(panelIdentifier, storage), toOptional(message));
}

- (void)activatePanel {
    _core->activatePanel();
}
- (void)callURL {
    _core->callURL();
}
- (void)stop {
    _core->stop();
}
- (BOOL)isReopenSheetShown {
    return _core->isReopenSheetShown();
}

- (BOOL)needsRelaunchForPanelIdentifier:(PrivacyCategoryIdentifier)panelIdentifier {
    return _core->needsRelaunchForPanelIdentifier(vantro::mac::toString(panelIdentifier));
}

- (void)relaunchHost {
    _core->relaunchHost();
}

- (void)cancelOverlay {
    _core->cancelOverlay();
}

- (void)applicationChanged:(NSNotification*)notification {
    id application = notification.userInfo[NSWorkspaceApplicationKey];
    _core->applicationChanged([application isKindOfClass:[NSRunningApplication class]]
                                  ? vantro::mac::runningApplicationFor(application)
                                  : nullptr);
}

- (void)addMonitor {
    _core->addMonitor();
}
- (void)removeMonitor {
    _core->removeMonitor();
}

- (NSDictionary<NSString*, id>*)preferencesWindow {
    auto window = _core->preferencesWindow();
    if (!window) return nil;
    id description = vantro::mac::toFoundation(*window);
    return [description isKindOfClass:[NSDictionary class]] ? description : nil;
}

- (void)updateOverlay {
    _core->updateOverlay();
}

- (void)placeWindowForItem:(NSDictionary<NSString*, id>*)item {
    _core->placeWindowForItem(vantro::mac::toValue(item));
}

- (void)checkWindowName {
    _core->checkWindowName();
}

@end
