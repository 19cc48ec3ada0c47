// Workspace on the real Mac.
//
// Implements: running applications (NSRunningApplication: bundle identifier,
// process identifier, localized name, hidden, terminated,
// activateWithOptions:), one core object per running process for as long as
// it is referred to, each announcing "hidden" from key-value observation of
// its NSRunningApplication; the current and front applications;
// runningApplicationsWithBundleIdentifier:; openURL: with a URL made by
// URLWithString:; URLForApplicationWithBundleIdentifier:;
// launchApplicationAtURL:options:configuration:error: with an empty
// configuration; NSWorkspaceDidActivateApplicationNotification on the shared
// workspace's notification center, one registration per call (a second
// delivers twice) and removal of all of an observer's registrations at once;
// relaunching the current application (a shell that opens its bundle once
// the process has ended, then terminate:).
// Main thread.
// Known gaps: none.

#include "macOS/MacWorkspace.h"

#include <map>
#include <memory>
#include <vector>

#include "macOS/MacAreas.h"
#include "macOS/MacFoundation.h"

namespace vantro::mac {
class MacRunningApplication;
}

// Forwards key-value notifications of an NSRunningApplication's "hidden" to
// its core twin.
@interface VantroHiddenObserver : NSObject
- (instancetype)initWithApplication:(vantro::mac::MacRunningApplication*)application;
- (void)detach;
@end

namespace vantro::mac {

class MacRunningApplication final : public RunningApplication {
public:
    explicit MacRunningApplication(NSRunningApplication* application)
        : application_(application), observer_([[VantroHiddenObserver alloc] initWithApplication:this]) {
        [application_ addObserver:observer_ forKeyPath:@"hidden" options:0 context:nullptr];
    }
    ~MacRunningApplication() override {
        [application_ removeObserver:observer_ forKeyPath:@"hidden" context:nullptr];
        [observer_ detach];
    }

    std::optional<std::string> bundleIdentifier() const override { return toOptionalString(application_.bundleIdentifier); }
    int processIdentifier() const override { return application_.processIdentifier; }
    std::string localizedName() const override { return toString(application_.localizedName); }
    bool isHidden() const override { return application_.hidden; }
    bool isTerminated() const override { return application_.terminated; }
    bool activateWithOptions(unsigned options) override {
        return [application_ activateWithOptions:static_cast<NSApplicationActivationOptions>(options)];
    }

    NSRunningApplication* application() const { return application_; }
    void hiddenChanged() { didChangeValueForKey("hidden"); }

private:
    NSRunningApplication* application_;
    VantroHiddenObserver* observer_;
};

}  // namespace vantro::mac

@implementation VantroHiddenObserver {
    vantro::mac::MacRunningApplication* _application;
}

- (instancetype)initWithApplication:(vantro::mac::MacRunningApplication*)application {
    if ((self = [super init])) _application = application;
    return self;
}

- (void)detach {
    _application = nullptr;
}

- (void)observeValueForKeyPath:(NSString*)keyPath
                      ofObject:(id)object
                        change:(NSDictionary<NSKeyValueChangeKey, id>*)change
                       context:(void*)context {
    (void)keyPath;
    (void)object;
    (void)change;
    (void)context;
    if (_application) _application->hiddenChanged();
}

@end

namespace vantro::mac {

namespace {

// One core object per running process, as long as someone holds it; the
// entries of objects gone are dropped at the next look-up.
std::map<pid_t, std::weak_ptr<MacRunningApplication>>& runningApplications() {
    static std::map<pid_t, std::weak_ptr<MacRunningApplication>> applications;
    std::erase_if(applications, [](const auto& entry) { return entry.second.expired(); });
    return applications;
}

}  // namespace

RunningApplicationPtr runningApplicationFor(NSRunningApplication* _Nullable application) {
    if (!application) return nullptr;
    auto& known = runningApplications();
    auto& slot = known[application.processIdentifier];
    auto existing = slot.lock();
    if (existing && [existing->application() isEqual:application]) return existing;
    auto made = std::make_shared<MacRunningApplication>(application);
    slot = made;
    return made;
}

NSRunningApplication* _Nullable nsRunningApplication(const RunningApplicationPtr& application) {
    auto* mac = dynamic_cast<MacRunningApplication*>(application.get());
    return mac ? mac->application() : nil;
}

namespace {

// The launch API and ignoring other applications are what the framework
// asks for on every release, deprecated or not.
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wdeprecated-declarations"

class MacWorkspace final : public Workspace {
public:
    ~MacWorkspace() override {
        NSNotificationCenter* center = NSWorkspace.sharedWorkspace.notificationCenter;
        for (auto& [observer, tokens] : registrations_)
            for (id token in tokens) [center removeObserver:token];
    }

    bool openURL(std::string_view urlText) override {
        NSURL* url = [NSURL URLWithString:toNSString(urlText)];
        return url && [NSWorkspace.sharedWorkspace openURL:url];
    }

    RunningApplicationPtr currentApplication() override {
        return runningApplicationFor(NSRunningApplication.currentApplication);
    }

    RunningApplicationPtr frontmostApplication() override {
        return runningApplicationFor(NSWorkspace.sharedWorkspace.frontmostApplication);
    }

    std::vector<RunningApplicationPtr> runningApplicationsWithBundleIdentifier(std::string_view bundleIdentifier) override {
        std::vector<RunningApplicationPtr> result;
        for (NSRunningApplication* application in
             [NSRunningApplication runningApplicationsWithBundleIdentifier:toNSString(bundleIdentifier)])
            result.push_back(runningApplicationFor(application));
        return result;
    }

    std::optional<std::string> URLForApplicationWithBundleIdentifier(std::string_view bundleIdentifier) override {
        NSURL* url = [NSWorkspace.sharedWorkspace URLForApplicationWithBundleIdentifier:toNSString(bundleIdentifier)];
        return url ? std::optional(toString(url.absoluteString)) : std::nullopt;
    }

    RunningApplicationPtr launchApplicationAtURL(std::string_view url, unsigned options) override {
        NSURL* location = [NSURL URLWithString:toNSString(url)];
        if (!location) return nullptr;
        NSRunningApplication* launched =
            [NSWorkspace.sharedWorkspace launchApplicationAtURL:location
                                                        options:static_cast<NSWorkspaceLaunchOptions>(options)
                                                  configuration:@{}
                                                          error:nullptr];
        return runningApplicationFor(launched);
    }

    void relaunchCurrentApplication() override {
        // A shell waits for this process to end, then opens its bundle again;
        // the application is then asked to terminate.
        NSString* pid = [NSString stringWithFormat:@"%d", NSProcessInfo.processInfo.processIdentifier];
        NSTask* task = [[NSTask alloc] init];
        task.executableURL = [NSURL fileURLWithPath:@"/bin/sh"];
        task.arguments = @[ @"-c", @"while kill -0 \"$1\" 2>/dev/null; do sleep 0.2; done; /usr/bin/open \"$2\"", @"sh", pid,
                            NSBundle.mainBundle.bundlePath ];
        // Without the helper nothing would open the host again: it stays.
        if (![task launchAndReturnError:nullptr]) return;
        [NSApp terminate:nil];
    }

    void addActivationObserver(const void* observer, std::function<void(RunningApplicationPtr)> handler) override {
        id token = [NSWorkspace.sharedWorkspace.notificationCenter
            addObserverForName:NSWorkspaceDidActivateApplicationNotification
                        object:nil
                         queue:nil
                    usingBlock:^(NSNotification* notification) {
                      id application = notification.userInfo[NSWorkspaceApplicationKey];
                      handler([application isKindOfClass:[NSRunningApplication class]] ? runningApplicationFor(application)
                                                                                        : nullptr);
                    }];
        auto& tokens = registrations_[observer];
        if (!tokens) tokens = [NSMutableArray array];
        [tokens addObject:token];
    }

    void removeActivationObserver(const void* observer) override { removeObserver(observer); }

    void removeObserver(const void* observer) override {
        auto found = registrations_.find(observer);
        if (found == registrations_.end()) return;
        NSNotificationCenter* center = NSWorkspace.sharedWorkspace.notificationCenter;
        for (id token in found->second) [center removeObserver:token];
        registrations_.erase(found);
    }

private:
    // The tokens of each observer's registrations; the workspace only ever
    // registers activations, so removing all is removing those.
    std::map<const void*, NSMutableArray*> registrations_;
};

#pragma clang diagnostic pop

}  // namespace

std::unique_ptr<Workspace> makeWorkspace() { return std::make_unique<MacWorkspace>(); }

}  // namespace vantro::mac
