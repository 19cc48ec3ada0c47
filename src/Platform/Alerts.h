#pragma once

#include <string>
#include <vector>

namespace vantro {

enum class AlertStyle { Warning = 0, Informational = 1, Critical = 2 };

inline constexpr long NSAlertFirstButtonReturn = 1000;
inline constexpr long NSAlertSecondButtonReturn = 1001;
inline constexpr long NSModalResponseAbort = -1001;

struct AlertSpec {
    AlertStyle style = AlertStyle::Warning;
    std::string messageText;
    std::string informativeText;
    std::vector<std::string> buttons;  // in the order added; the first returns 1000
};

// Modal alerts (NSAlert runModal). Main thread only: runModal runs the run loop
// in the modal panel mode until the user answers, so default-mode timers and
// delayed performs wait, while main-queue blocks still run.
class Alerts {
public:
    Alerts() = default;
    Alerts(const Alerts&) = delete;
    Alerts& operator=(const Alerts&) = delete;
    virtual ~Alerts() = default;

    // The button code the user chose (1000 for the first button, 1001 for the
    // second, …).
    virtual long runModal(const AlertSpec& alert) = 0;
};

}  // namespace vantro
