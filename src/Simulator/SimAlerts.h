#pragma once

#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Alerts.h"

namespace vantro::sim {

class SimulatedMac;

// Modal alerts, answered by the scripted user. While an alert is up the run
// loop runs in the modal panel mode, so default-mode timers and delayed
// performs wait and main-queue blocks still run.
class SimAlerts : public Alerts {
public:
    explicit SimAlerts(SimulatedMac& mac) : mac_(mac) {}

    long runModal(const AlertSpec& alert) override;

    // The user's next answers, in order: the 0-based button to press after
    // `delay` seconds, or nullopt to never answer (the alert is then given up
    // after ten virtual minutes with NSModalResponseAbort). Without a scripted
    // answer the user presses the last button (Cancel) after one second.
    void answerNext(std::optional<int> buttonIndex, double delay = 1.0);

    struct Shown {
        AlertSpec alert;
        double shownAt = 0;
        long response = 0;
        bool onMainThread = true;
        std::string mode;  // the run loop's mode when the alert came up
    };
    const std::vector<Shown>& shown() const { return shown_; }
    bool isShowing() const { return showing_ > 0; }

private:
    struct Answer {
        std::optional<int> button;
        double delay;
    };
    SimulatedMac& mac_;
    std::deque<Answer> answers_;
    std::vector<Shown> shown_;
    int showing_ = 0;
};

}  // namespace vantro::sim
