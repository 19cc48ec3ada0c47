#pragma once

#include <map>
#include <string>

#include "Platform/AppleEvents.h"

namespace vantro::sim {

class SimulatedMac;

// Apple events of the simulated Mac: the Automation query exists from 10.14
// on and answers from the privacy database's Automation consents — for every
// event when asked with typeWildCard, and at once for the few single events
// that need no consent — prompting only when asked to; System Preferences
// answers its current pane and takes the authorize event, each only with the
// user's consent (a send without a decision asks the user, as a real one does).
class SimAppleEvents : public AppleEvents {
public:
    explicit SimAppleEvents(SimulatedMac& mac) : mac_(mac) {}

    bool lookUpDeterminePermissionToAutomateTarget() override;
    bool descriptorRespondsToBundleIdentifier() override { return descriptorAvailable_; }
    std::shared_ptr<AppleEventDescriptor> descriptorWithBundleIdentifier(std::string_view bundleIdentifier) override;
    OSStatus determinePermissionToAutomateTarget(const AppleEventDescriptor& target, FourCharCode eventClass,
                                                 FourCharCode eventID, bool askUserIfNeeded) override;
    std::shared_ptr<ScriptingApplication> applicationWithBundleIdentifier(std::string_view bundleIdentifier) override;

    void setDescriptorAvailable(bool available) { descriptorAvailable_ = available; }
    int lookUps() const { return lookUps_; }
    int queries() const { return queries_; }

private:
    SimulatedMac& mac_;
    bool descriptorAvailable_ = true;
    int lookUps_ = 0;
    int queries_ = 0;
};

}  // namespace vantro::sim
