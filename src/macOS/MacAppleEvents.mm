// AppleEvents on the real Mac.
//
// Implements: AEDeterminePermissionToAutomateTarget looked up with dlsym in the
// process's global scope (a failed look-up is not remembered, so it is tried
// again); NSAppleEventDescriptor's descriptorWithBundleIdentifier: and aeDesc;
// the scripting bridge's SBApplication (initWithBundleIdentifier:,
// propertyWithCode:, get, sendEvent:id:parameters: with one keyword
// parameter). Every call blocks while the target answers. Each scripting
// bridge application gets an error delegate that swallows failed events:
// without one the scripting bridge may raise for an event the target refuses,
// and that exception would unwind through the core into the host (from a
// main-queue block, where it ends the process). With the delegate a failed
// get answers nil and a failed send is ignored.
// Known gaps: none.

#import <ApplicationServices/ApplicationServices.h>
#import <Foundation/Foundation.h>
#import <ScriptingBridge/ScriptingBridge.h>

#include <dlfcn.h>

#include <atomic>

#include "macOS/MacAreas.h"
#include "macOS/MacFoundation.h"

// SBApplication's delegate setter, declared here because the delegate protocol
// is informal; sent only after respondsToSelector: said yes.
@protocol VantroScriptingErrorDelegation <NSObject>
- (void)setDelegate:(nullable id)delegate;
@end

// Answers every failed Apple event of its application with nil, which the
// scripting bridge then returns from the call that sent the event. The event
// is an AppleEvent, which is an AEDesc.
@interface VantroScriptingErrorSink : NSObject
- (nullable id)eventDidFail:(const AEDesc*)event withError:(NSError*)error;
@end

@implementation VantroScriptingErrorSink

- (nullable id)eventDidFail:(const AEDesc*)event withError:(NSError*)error {
    (void)event;
    (void)error;
    return nil;
}

@end

namespace vantro::mac {

namespace {

using DeterminePermission = OSStatus (*)(const AEAddressDesc* target, AEEventClass theAEEventClass,
                                          AEEventID theAEEventID, Boolean askUserIfNeeded);

class MacAppleEventDescriptor final : public AppleEventDescriptor {
public:
    explicit MacAppleEventDescriptor(NSAppleEventDescriptor* descriptor) : descriptor_(descriptor) {}
    NSAppleEventDescriptor* descriptor() const { return descriptor_; }

private:
    NSAppleEventDescriptor* descriptor_;
};

class MacScriptingObject : public ScriptingObject {
public:
    explicit MacScriptingObject(SBObject* object) : object_(object) {}

    std::shared_ptr<ScriptingObject> propertyWithCode(FourCharCode code) override {
        SBObject* property = [object_ propertyWithCode:code];
        if (!property) return nullptr;
        return std::make_shared<MacScriptingObject>(property);
    }

    std::optional<std::string> get() override {
        id value = [object_ get];
        if (![value isKindOfClass:[NSString class]]) return std::nullopt;
        return toString(value);
    }

    SBObject* object() const { return object_; }

private:
    SBObject* object_;
};

class MacScriptingApplication final : public ScriptingApplication {
public:
    explicit MacScriptingApplication(SBApplication* application)
        : application_(application), object_(application), errors_([[VantroScriptingErrorSink alloc] init]) {
        if ([application_ respondsToSelector:@selector(setDelegate:)])
            [(id<VantroScriptingErrorDelegation>)application_ setDelegate:errors_];
    }

    std::shared_ptr<ScriptingObject> propertyWithCode(FourCharCode code) override { return object_.propertyWithCode(code); }
    std::optional<std::string> get() override { return object_.get(); }

    void sendEvent(FourCharCode eventClass, FourCharCode eventID, FourCharCode keyword,
                   const std::shared_ptr<ScriptingObject>& parameter) override {
        auto* macParameter = dynamic_cast<MacScriptingObject*>(parameter.get());
        // The reply is not looked at. A parameter without a value is left out:
        // the list of keyword and value pairs has no place for nil.
        if (macParameter && macParameter->object())
            [application_ sendEvent:eventClass id:eventID parameters:keyword, macParameter->object(), 0];
        else
            [application_ sendEvent:eventClass id:eventID parameters:0];
    }

private:
    SBApplication* application_;
    MacScriptingObject object_;
    // The application's delegate, kept here as well: whether the scripting
    // bridge retains its delegate is not documented.
    VantroScriptingErrorSink* errors_;
};

class MacAppleEvents final : public AppleEvents {
public:
    bool lookUpDeterminePermissionToAutomateTarget() override {
        if (!determinePermission_.load()) {
            auto found = reinterpret_cast<DeterminePermission>(dlsym(RTLD_DEFAULT, "AEDeterminePermissionToAutomateTarget"));
            determinePermission_.store(found);
        }
        return determinePermission_.load() != nullptr;
    }

    bool descriptorRespondsToBundleIdentifier() override {
        return [NSAppleEventDescriptor respondsToSelector:@selector(descriptorWithBundleIdentifier:)];
    }

    std::shared_ptr<AppleEventDescriptor> descriptorWithBundleIdentifier(std::string_view bundleIdentifier) override {
        NSAppleEventDescriptor* descriptor = [NSAppleEventDescriptor descriptorWithBundleIdentifier:toNSString(bundleIdentifier)];
        if (!descriptor) return nullptr;
        return std::make_shared<MacAppleEventDescriptor>(descriptor);
    }

    OSStatus determinePermissionToAutomateTarget(const AppleEventDescriptor& target, FourCharCode eventClass,
                                                 FourCharCode eventID, bool askUserIfNeeded) override {
        auto function = determinePermission_.load();
        auto* macTarget = dynamic_cast<const MacAppleEventDescriptor*>(&target);
        // errAEWrongDataType: nothing to ask about.
        if (!function || !macTarget) return -1703;
        return function(macTarget->descriptor().aeDesc, eventClass, eventID, askUserIfNeeded);
    }

    std::shared_ptr<ScriptingApplication> applicationWithBundleIdentifier(std::string_view bundleIdentifier) override {
        SBApplication* application = [[SBApplication alloc] initWithBundleIdentifier:toNSString(bundleIdentifier)];
        if (!application) return nullptr;
        return std::make_shared<MacScriptingApplication>(application);
    }

private:
    std::atomic<DeterminePermission> determinePermission_{nullptr};
};

}  // namespace

std::unique_ptr<AppleEvents> makeAppleEvents() { return std::make_unique<MacAppleEvents>(); }

}  // namespace vantro::mac
