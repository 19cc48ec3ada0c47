#pragma once

#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/SharedOwnership.h"
#include "Platform/Observation.h"
#include "Platform/Value.h"
#include "Platform/Windows.h"
#include "Platform/Workspace.h"
#include "Vocabulary/VantroPrivacy.h"

namespace vantro {

class VantroWindowController;

// The guide's delegate. Both messages are optional: a delegate answers
// whether it responds to each, and only then is it sent.
class VantroDelegate {
public:
    virtual ~VantroDelegate() = default;
    virtual bool respondsToVantroWillOpenPanel() const { return false; }
    // Sent once per session start, before the pane is opened.
    virtual void vantroWillOpenPanel(std::string_view panelIdentifier) { (void)panelIdentifier; }
    virtual bool respondsToVantroDidOpenPanel() const { return false; }
    // Sent each time the settings window is found while the overlay is hidden,
    // just before the overlay is laid over it.
    virtual void vantroDidOpenPanel(std::string_view panelIdentifier) { (void)panelIdentifier; }
};

// The permission guide: leads the user to a privacy category in System
// Preferences and lays the overlay over the settings window while System
// Preferences is in front. One shared instance per process (sharedKit);
// others may be made with makeShared<Vantro>() and behave the same (delayed
// work holds the guide, so it needs shared ownership). Observable for
// "isOverlayShown". Main thread.
class Vantro : public Observable, public Observer, public std::enable_shared_from_this<Vantro> {
public:
    // Made with makeShared<Vantro>() (or of a subclass): delayed work holds
    // the guide.
    explicit Vantro(const SharedOwnership&);
    ~Vantro() override;

    static std::shared_ptr<Vantro> sharedKit();

    // Opens System Preferences' Security & Privacy pane at the category's
    // anchor ("Privacy" for nullopt and for the folder and volume categories;
    // "Privacy_Assistive" becomes "Privacy_Accessibility" from 10.10 on).
    // A refused URL is reported through the assertion handler ("Failed to open
    // URL %@", file Vantro, line 476); if the handler returns, so does this,
    // with false.
    static bool openPrivacyPreferencesWithAnchor(std::optional<std::string_view> anchor);
    // Whether the host may send Apple events to the application, without ever
    // asking the user; true when the system cannot tell. The target (launched
    // without activation when not running) is stored in `runningApplication`
    // when given.
    static bool checkPermissionToAutomate(std::string_view bundleIdentifier, RunningApplicationPtr* runningApplication);
    // Asks System Preferences to prompt for unlocking its Security & Privacy
    // pane, when it shows that pane and the host may automate it.
    static void authorizeIfPossible();
    // "windowController.window.visible".
    static std::vector<std::string> keyPathsForValuesAffectingIsOverlayShown();

    // Starts a session with the category's prompt.
    void askAccessForPanelIdentifier(std::optional<std::string_view> identifier);
    // Starts a session with the given message.
    void askAccessForPanelIdentifier(std::optional<std::string_view> identifier, std::optional<std::string> message);
    void activatePanel();
    void callURL();
    // Ends the session: no monitor, no activation handling, overlay hidden.
    void stop();
    void cancelOverlay() { stop(); }

    // Whether the overlay window exists and is visible.
    bool isOverlayShown() const;
    // Whether a session runs: from a start until the stop that follows it.
    // Observable as "isSessionRunning", announced at every start and at the
    // stop that ends a session (a stop with no session is not announced).
    bool isSessionRunning() const { return sessionRunning_; }

    // System Settings' "Quit & Reopen" sheet: after the running host is
    // switched on for Full Disk Access (from 11) or Screen Recording, the
    // settings offer "Later" and "Quit & Reopen". While the sheet shows over
    // the settings window, the overlay explains it. Screen Recording is seen
    // by the process only once it relaunches: a session for it that met the
    // sheet leaves the category needing a relaunch for the rest of this
    // process; Full Disk Access applies at once and never does.
    bool isReopenSheetShown() const { return reopenSheetShown_; }
    bool needsRelaunchForPanelIdentifier(std::string_view identifier) const;
    // Quits the host and opens it again, as the sheet's "Quit & Reopen" does.
    // Offer it where needsRelaunchForPanelIdentifier says so.
    void relaunchHost();
    // Whether a permission granted for the category reaches the running
    // process only after it relaunches.
    static bool takesEffectOnlyAfterRelaunch(std::string_view identifier);

    // The activation rules, for an activated application or, when nullptr,
    // the front application.
    void applicationChanged(RunningApplicationPtr activated);
    void observeValueForKeyPath(std::string_view keyPath, Observable& object, ObservationContext context) override;
    void addMonitor();
    void removeMonitor();

    // The System Preferences window's description while System Preferences
    // is in front, or nullopt; with `sheetShown`, also whether an alert sheet
    // of the settings application lies over it (see isReopenSheetShown).
    std::optional<Value> preferencesWindow(bool* sheetShown = nullptr);
    void updateOverlay();
    void placeWindowForItem(const Value& windowDescription);
    void checkWindowName();

    bool stopOnQuitOfSystemPreferences() const { return stopOnQuitOfSystemPreferences_; }
    void setStopOnQuitOfSystemPreferences(bool v) { stopOnQuitOfSystemPreferences_ = v; }
    bool stopOnDeactivateOfSystemPreferences() const { return stopOnDeactivateOfSystemPreferences_; }
    void setStopOnDeactivateOfSystemPreferences(bool v) { stopOnDeactivateOfSystemPreferences_ = v; }
    bool stopOnActivateOfHostApplication() const { return stopOnActivateOfHostApplication_; }
    void setStopOnActivateOfHostApplication(bool v) { stopOnActivateOfHostApplication_ = v; }
    bool didSeeOtherApplication() const { return didSeeOtherApplication_; }
    void setDidSeeOtherApplication(bool v) { didSeeOtherApplication_ = v; }
    bool didSeeSystemPreferences() const { return didSeeSystemPreferences_; }
    void setDidSeeSystemPreferences(bool v) { didSeeSystemPreferences_ = v; }
    bool didSeePrivacyPanel() const { return didSeePrivacyPanel_; }
    void setDidSeePrivacyPanel(bool v) { didSeePrivacyPanel_ = v; }
    std::shared_ptr<VantroDelegate> delegate() const { return delegate_.lock(); }
    void setDelegate(const std::shared_ptr<VantroDelegate>& delegate) { delegate_ = delegate; }
    // The application whose "hidden" the guide observes: the current
    // application, from construction on. The setter is plain: the observation
    // stays on the application registered at construction, and teardown
    // removes it from whatever hostApplication is then, as the Mac guide's
    // dealloc does. A host that replaces the application must put the first
    // one back before the guide goes; otherwise the removal is refused (the
    // platform objects) and the first application keeps a registration for a
    // guide that no longer exists.
    RunningApplicationPtr hostApplication() const { return hostApplication_; }
    void setHostApplication(RunningApplicationPtr application) { hostApplication_ = std::move(application); }
    // The global mouse monitor's token while the monitor is installed. The
    // setter installs nothing; a token it replaces is removed from the
    // system, once, so that no monitor outlives its place here. Setting the
    // token already set changes nothing. removeMonitor removes whichever
    // token is set.
    const std::shared_ptr<EventMonitor>& monitor() const { return monitor_; }
    void setMonitor(std::shared_ptr<EventMonitor> monitor);
    // The overlay's controller, made on the first placement and kept. The
    // setter loads, shows and hides nothing; as "isOverlayShown" depends on
    // "windowController.window.visible", it follows the new controller's
    // window from then on and is announced.
    const std::shared_ptr<VantroWindowController>& windowController() const { return windowController_; }
    void setWindowController(std::shared_ptr<VantroWindowController> windowController);
    const std::optional<std::string>& panelIdentifier() const { return panelIdentifier_; }
    void setPanelIdentifier(std::optional<std::string> v) { panelIdentifier_ = std::move(v); }
    const std::optional<std::string>& privacyPanelName() const { return privacyPanelName_; }
    void setPrivacyPanelName(std::optional<std::string> v) { privacyPanelName_ = std::move(v); }
    const std::optional<std::string>& message() const { return message_; }
    void setMessage(std::optional<std::string> v) { message_ = std::move(v); }

    std::string observableName() const override { return "Vantro"; }

private:
    void orderOutOverlay();
    std::optional<std::string> securityPaneTitle();
    std::string resolvePrompt(std::optional<std::string_view> identifier);
    // The "Prompts" table, read once it exists; nullptr while it cannot be read.
    static const Value* promptTable();
    // The text of a prompt name in the user's language, with the host's name
    // in place of each "%@"; empty for a name the table lacks.
    static std::string promptText(const std::string& promptName);

    bool stopOnQuitOfSystemPreferences_ = true;
    bool stopOnDeactivateOfSystemPreferences_ = false;
    bool stopOnActivateOfHostApplication_ = true;
    bool didSeeOtherApplication_ = false;
    bool didSeeSystemPreferences_ = false;
    bool didSeePrivacyPanel_ = false;
    bool sessionRunning_ = false;
    std::weak_ptr<VantroDelegate> delegate_;
    RunningApplicationPtr hostApplication_;
    std::shared_ptr<EventMonitor> monitor_;
    std::shared_ptr<VantroWindowController> windowController_;
    std::optional<std::string> panelIdentifier_;
    std::optional<std::string> privacyPanelName_;
    std::optional<std::string> message_;
    bool reopenSheetShown_ = false;
    std::set<std::string, std::less<>> needsRelaunch_;
};

}  // namespace vantro
