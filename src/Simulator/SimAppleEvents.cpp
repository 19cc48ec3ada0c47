#include "Simulator/SimAppleEvents.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "Platform/Workspace.h"
#include "Simulator/SimulatedMac.h"

namespace vantro::sim {

namespace {

// Events the system lets any application send without the user's consent
// (the required suite and the fetch of the scripting dictionary). Apple
// documents that such events exist; which ones they are is unconfirmed.
bool sentWithoutConsent(FourCharCode eventClass, FourCharCode eventID) {
    const std::pair<FourCharCode, FourCharCode> free[] = {
        {fourCharCode("aevt"), fourCharCode("oapp")}, {fourCharCode("aevt"), fourCharCode("rapp")},
        {fourCharCode("aevt"), fourCharCode("odoc")}, {fourCharCode("aevt"), fourCharCode("quit")},
        {fourCharCode("ascr"), fourCharCode("gdte")},
    };
    return std::find(std::begin(free), std::end(free), std::pair{eventClass, eventID}) != std::end(free);
}

std::string codeText(FourCharCode code) {
    std::string text(4, ' ');
    for (int i = 0; i < 4; ++i) text[static_cast<std::size_t>(i)] = static_cast<char>((code >> (24 - 8 * i)) & 0xFF);
    return "'" + text + "'";
}

// Whether the host may send System Preferences an event that needs consent;
// like a real send, it asks the user when nothing was decided yet.
bool mayAutomatePreferences(SimulatedMac& mac) {
    auto status = mac.privacy().determinePermissionToAutomate(SystemPreferencesBundleIdentifier, true);
    if (status == noErr) return true;
    mac.record("system", "refuses the host's Apple event to System Preferences (" + std::to_string(status) + ")");
    return false;
}

class SimDescriptor : public AppleEventDescriptor {
public:
    explicit SimDescriptor(std::string target) : bundleIdentifier(std::move(target)) {}
    std::string bundleIdentifier;
};

// System Preferences' objects as the scripting bridge shows them.
// Property references are made without talking to System Preferences; only
// get sends an event ('core'/'getd'), which needs the user's consent.
class PaneIdentifier : public ScriptingObject {
public:
    explicit PaneIdentifier(SimulatedMac& mac) : mac_(mac) {}
    std::shared_ptr<ScriptingObject> propertyWithCode(FourCharCode) override { return nullptr; }
    std::optional<std::string> get() override {
        if (!mac_.systemPreferences().isRunning() || !mayAutomatePreferences(mac_)) return std::nullopt;
        return mac_.systemPreferences().currentPane();
    }

private:
    SimulatedMac& mac_;
};

class CurrentPane : public ScriptingObject {
public:
    CurrentPane(SimulatedMac& mac, const void* application) : mac_(mac), application_(application) {}
    std::shared_ptr<ScriptingObject> propertyWithCode(FourCharCode code) override {
        if (code == fourCharCode("ID  ")) return std::make_shared<PaneIdentifier>(mac_);
        return nullptr;
    }
    std::optional<std::string> get() override { return std::nullopt; }
    // The application object this reference was made from.
    const void* application() const { return application_; }

private:
    SimulatedMac& mac_;
    const void* application_;
};

class PreferencesApplication : public ScriptingApplication {
public:
    PreferencesApplication(SimulatedMac& mac) : mac_(mac) {}
    std::shared_ptr<ScriptingObject> propertyWithCode(FourCharCode code) override {
        if (code == fourCharCode("xpcp")) return std::make_shared<CurrentPane>(mac_, this);
        return nullptr;
    }
    std::optional<std::string> get() override { return std::nullopt; }
    // System Preferences acts on the authorize event only as its scripting
    // dictionary defines it: class 'misc', identifier 'maut', the direct
    // parameter ('----') a reference to its current pane. Any other event is
    // handled as an unknown one: nothing happens, no unlock prompt.
    void sendEvent(FourCharCode eventClass, FourCharCode eventID, FourCharCode keyword,
                   const std::shared_ptr<ScriptingObject>& parameter) override {
        if (!mayAutomatePreferences(mac_)) return;
        const auto* pane = dynamic_cast<const CurrentPane*>(parameter.get());
        const bool authorize = eventClass == fourCharCode("misc") && eventID == fourCharCode("maut") &&
                               keyword == keyDirectObject && pane && pane->application() == this;
        if (!authorize) {
            mac_.record("System Preferences", "ignores the event " + codeText(eventClass) + "/" + codeText(eventID) +
                                                  " with " + codeText(keyword) + (pane ? " bound to its current pane" : ""));
            return;
        }
        mac_.record("framework", "sends the authorize event to System Preferences");
        mac_.systemPreferences().authorize();
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

OSStatus SimAppleEvents::determinePermissionToAutomateTarget(const AppleEventDescriptor& target, FourCharCode eventClass,
                                                             FourCharCode eventID, bool askUserIfNeeded) {
    ++queries_;
    const auto& bundleIdentifier = static_cast<const SimDescriptor&>(target).bundleIdentifier;
    // typeWildCard for both asks whether every event may be sent; a single
    // event that needs no consent may be sent to any running application.
    if (sentWithoutConsent(eventClass, eventID) && mac_.workspace().application(bundleIdentifier)) return noErr;
    return mac_.privacy().determinePermissionToAutomate(bundleIdentifier, askUserIfNeeded);
}

std::shared_ptr<ScriptingApplication> SimAppleEvents::applicationWithBundleIdentifier(std::string_view bundleIdentifier) {
    if (bundleIdentifier != SystemPreferencesBundleIdentifier) return nullptr;
    return std::make_shared<PreferencesApplication>(mac_);
}

}  // namespace vantro::sim
