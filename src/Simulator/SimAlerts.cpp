#include "Simulator/SimAlerts.h"

#include "Simulator/SimulatedMac.h"

namespace vantro::sim {

namespace {
constexpr double givenUpAfter = 600.0;
}

void SimAlerts::answerNext(std::optional<int> buttonIndex, double delay) { answers_.push_back({buttonIndex, delay}); }

long SimAlerts::runModal(const AlertSpec& alert) {
    auto& loop = mac_.runLoop();
    Shown record{alert, loop.now(), 0, loop.isMainThread(), loop.currentMode()};
    std::string buttons;
    for (const auto& b : alert.buttons) buttons += (buttons.empty() ? "" : " | ") + b;
    mac_.record("system", "alert \"" + alert.messageText + "\" — " + alert.informativeText + " [" + buttons + "]");
    if (!record.onMainThread) mac_.record("system", "fault: an alert was shown off the main thread");

    // -1 stands for "no answer".
    int button = static_cast<int>(alert.buttons.size()) - 1;
    double delay = 1.0;
    if (!answers_.empty()) {
        button = answers_.front().button.value_or(-1);
        delay = answers_.front().delay;
        answers_.pop_front();
    }
    // The answer may come after the alert was given up: it lands in shared state.
    auto response = std::make_shared<std::optional<long>>();
    if (button >= 0) {
        int index = button;
        std::string title = index < static_cast<int>(alert.buttons.size()) ? alert.buttons[index] : "?";
        loop.scheduleUserEvent(delay, [this, index, title, response] {
            if (response->has_value()) return;
            mac_.record("user", "presses \"" + title + "\"");
            *response = NSAlertFirstButtonReturn + index;
        });
    }
    ++showing_;
    loop.runModeUntil(NSModalPanelRunLoopMode, [&] { return response->has_value(); }, givenUpAfter);
    --showing_;
    record.response = response->value_or(NSModalResponseAbort);
    if (!response->has_value()) *response = NSModalResponseAbort;
    if (record.response == NSModalResponseAbort) mac_.record("system", "alert given up without an answer");
    shown_.push_back(record);
    return record.response;
}

}  // namespace vantro::sim
