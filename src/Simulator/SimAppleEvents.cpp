#include "Simulator/SimAppleEvents.h"

#include "Platform/Workspace.h"
#include "Simulator/SimulatedMac.h"

namespace vantro::sim {

namespace {

class SimDescriptor : public AppleEventDescriptor {
public:
    explicit SimDescriptor(std::string target) : bundleIdentifier(std::move(target)) {}
    std::string bundleIdentifier;
};

// System Preferences' objects as the scripting bridge shows them.
class PaneIdentifier : public ScriptingObject {
public:
    explicit PaneIdentifier(SimSystemPreferences& preferences) : preferences_(preferences) {}
    std::shared_ptr<ScriptingObject> propertyWithCode(FourCharCode) override { return nullptr; }
    std::optional<std::string> get() override {
        if (!preferences_.isRunning()) return std::nullopt;
        return preferences_.currentPane();
    }

private:
    SimSystemPreferences& preferences_;
};

class CurrentPane : public ScriptingObject {
public:
    explicit CurrentPane(SimSystemPreferences& preferences) : preferences_(preferences) {}
    std::shared_ptr<ScriptingObject> propertyWithCode(FourCharCode code) override {
        if (code == fourCharCode("ID  ")) return std::make_shared<PaneIdentifier>(preferences_);
        return nullptr;
    }
    std::optional<std::string> get() override { return std::nullopt; }

private:
    SimSystemPreferences& preferences_;
};

class PreferencesApplication : public ScriptingApplication {
public:
    PreferencesApplication(SimulatedMac& mac) : mac_(mac) {}
    std::shared_ptr<ScriptingObject> propertyWithCode(FourCharCode code) override {
        if (code == fourCharCode("xpcp")) return std::make_shared<CurrentPane>(mac_.systemPreferences());
        return nullptr;
    }
    std::optional<std::string> get() override { return std::nullopt; }
    void sendEvent(FourCharCode eventClass, FourCharCode eventID, FourCharCode, const std::shared_ptr<ScriptingObject>&) override {
        if (eventClass == fourCharCode("misc") && eventID == fourCharCode("maut")) {
            mac_.record("framework", "sends the authorize event to System Preferences");
            mac_.systemPreferences().authorize();
        }
    }

private:
    SimulatedMac& mac_;
};

}  // namespace

bool SimAppleEvents::lookUpDeterminePermissionToAutomateTarget() {
    ++lookUps_;
    auto v = mac_.release().systemVersion;
    return v.majorVersion > 10 || v.minorVersion >= 14;
}

std::shared_ptr<AppleEventDescriptor> SimAppleEvents::descriptorWithBundleIdentifier(std::string_view bundleIdentifier) {
    return std::make_shared<SimDescriptor>(std::string(bundleIdentifier));
}

OSStatus SimAppleEvents::determinePermissionToAutomateTarget(const AppleEventDescriptor& target, FourCharCode, FourCharCode,
                                                             bool askUserIfNeeded) {
    ++queries_;
    const auto& bundleIdentifier = static_cast<const SimDescriptor&>(target).bundleIdentifier;
    return mac_.privacy().determinePermissionToAutomate(bundleIdentifier, askUserIfNeeded);
}

std::shared_ptr<ScriptingApplication> SimAppleEvents::applicationWithBundleIdentifier(std::string_view bundleIdentifier) {
    if (bundleIdentifier != SystemPreferencesBundleIdentifier) return nullptr;
    return std::make_shared<PreferencesApplication>(mac_);
}

}  // namespace vantro::sim
