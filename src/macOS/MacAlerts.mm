// Alerts on the real Mac.
//
// Implements: NSAlert with the given style, message, informative text and
// buttons in order, run with runModal on the main thread; the answer is the
// button code (NSAlertFirstButtonReturn, 1000, for the first).
// Known gaps: none.

#import <AppKit/AppKit.h>

#include "macOS/MacAreas.h"
#include "macOS/MacFoundation.h"

namespace vantro::mac {

namespace {

NSAlertStyle toAlertStyle(AlertStyle style) {
    switch (style) {
    case AlertStyle::Warning: return NSAlertStyleWarning;
    case AlertStyle::Informational: return NSAlertStyleInformational;
    case AlertStyle::Critical: return NSAlertStyleCritical;
    }
    return NSAlertStyleWarning;
}

class MacAlerts final : public Alerts {
public:
    long runModal(const AlertSpec& asked) override {
        NSAlert* alert = [[NSAlert alloc] init];
        alert.alertStyle = toAlertStyle(asked.style);
        alert.messageText = toNSString(asked.messageText);
        alert.informativeText = toNSString(asked.informativeText);
        for (const auto& title : asked.buttons) [alert addButtonWithTitle:toNSString(title)];
        return [alert runModal];
    }
};

}  // namespace

std::unique_ptr<Alerts> makeAlerts() { return std::make_unique<MacAlerts>(); }

}  // namespace vantro::mac
