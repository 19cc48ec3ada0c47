#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Geometry.h"
#include "Platform/Value.h"

namespace vantro::sim {

class SimulatedMac;

// System Preferences (System Settings from macOS 13) as the guide meets it:
// it opens "x-apple.systempreferences:" URLs, launching first when needed; it
// shows one pane in a window whose frame it owns and whose title is the pane's
// name in the user's language; up to macOS 12 its Security & Privacy pane is
// locked until the user unlocks it; and its privacy list takes the host's
// icon dropped on it, granting the category of the current anchor.
//
// System Settings (13 and later) is another window: a sidebar of all settings
// on the left and the page on the right, 715 points wide whatever the user
// does, its own height. Both URL forms, System Preferences'
// "com.apple.preference.security?<anchor>" and System Settings'
// "com.apple.settings.PrivacySecurity.extension?<anchor>", open the
// "Privacy & Security" page at the anchor's sub-pane, and an anchor without a
// sub-pane opens the page itself. The window is titled with the sub-pane's
// name ("Full Disk Access"), or the page's, in the user's language. There is
// no lock. A sub-pane whose list takes applications has a switch for each
// listed application and a "+" button under the list: the host dropped on
// the list or chosen after "+" is listed switched off, and turning its switch
// on asks for the administrator password; once the user has typed it, the
// switch is on and the category granted.
class SimSystemPreferences {
public:
    explicit SimSystemPreferences(SimulatedMac& mac);

    static constexpr const char* securityPane = "com.apple.preference.security";
    // The width of System Settings' sidebar: its page, and the privacy list
    // on it, start to the right of it.
    static constexpr double settingsSidebarWidth = 215;

    // From macOS 13: System Settings.
    bool isSystemSettings() const;
    // "System Settings" from macOS 13, "System Preferences" before.
    const std::string& applicationName() const { return name_; }

    bool isRunning() const;
    int processIdentifier() const;
    // The window's frame in window-list coordinates (origin top left, y down).
    Rect windowFrame() const { return frame_; }
    void setWindowFrame(const Rect& frame);
    const std::string& currentPane() const { return pane_; }
    const std::string& anchor() const { return anchor_; }
    // The title of the window: the shown pane's name in the user's language.
    std::string windowTitle() const;
    bool isLocked() const { return locked_; }
    bool hasLock() const;
    // Extra windows of System Preferences (a sheet, a second window), front
    // to back after the main one; each is {frame, title}, and off screen
    // when minimised into the Dock.
    struct ExtraWindow {
        Rect frame;
        std::optional<std::string> title;
        bool minimized = false;
    };
    void addExtraWindow(ExtraWindow window) { extraWindows_.push_back(std::move(window)); }
    const std::vector<ExtraWindow>& extraWindows() const { return extraWindows_; }

    // What the user does in System Preferences (each also makes a mouse event
    // that global monitors of other applications see).
    void userShowsPane(const std::string& pane);
    // The user opens a privacy category's list from the Security & Privacy
    // pane or the "Privacy & Security" page: the pane at that anchor.
    void userOpensPrivacyList(const std::string& anchor);
    void userMovesWindow(Point topLeft);
    // Drags the window by its title bar to `topLeft` over `seconds`: a
    // mouse-down now, the window following the pointer with a dragged event
    // every 0.05 s, and a mouse-up when it arrives.
    void userDragsWindow(Point topLeft, double seconds);
    void userUnlocks();
    void userQuits();

    // System Settings: whether the page shows the anchor's sub-pane, rather
    // than the "Privacy & Security" page itself.
    bool showsSubPane() const;
    // Whether the host is listed at `anchor`, and whether its switch is on.
    bool listsHost(const std::string& anchor) const;
    bool hostSwitchedOn(const std::string& anchor) const;
    // The user clicks "+" under the list and chooses the host in the open
    // panel: the host is listed, switched off. System Settings only, on a
    // sub-pane whose list takes applications; false when nothing was added.
    bool userAddsHostWithPlusButton();
    // The user turns on the host's switch in the list shown: System Settings
    // asks for the administrator password, which the scripted user types
    // `unlockAnswerDelay` seconds later (never when negative); then the switch
    // is on and the category granted. False when the host is not listed there
    // or already on.
    bool userSwitchesOnHost();
    // Whether System Settings waits for the password to turn a switch on, or
    // System Preferences for it to unlock the pane after the authorize event.
    bool asksForPassword() const { return passwordAsked_; }

    // The "Quit & Reopen" sheet: once the running host is switched on for
    // Full Disk Access (from 11; by a drop on 11 and 12) or Screen Recording
    // (System Settings), the window shows an alert sheet with the system's
    // text and the buttons "Later" and "Quit & Reopen". The window list shows
    // it as a small untitled window of the application over the main one.
    bool showsReopenSheet() const { return reopenSheet_.has_value(); }
    std::optional<Rect> reopenSheetFrame() const;
    // The sheet's text in the screen's `language`: "“Vantro Demo” will not
    // have full disk access until it is quit." (reported), or Screen
    // Recording's (modelled alike, unconfirmed).
    std::string reopenSheetText(std::string_view language = "en") const;
    // The user answers the sheet: "Quit & Reopen" relaunches the host,
    // "Later" only closes the sheet. False when no sheet shows.
    bool userAnswersReopenSheet(bool quitAndReopen);
    // The "+" button under the list, in screen coordinates (origin bottom left).
    Rect plusButtonOnScreen() const;
    // The sub-pane's title in a language ("en", "de", "fr", "ja"), or
    // nullopt for an anchor without a sub-pane; before 13, the name System
    // Preferences' Privacy tab gives the category.
    static std::optional<std::string> settingsSubPaneTitle(const std::string& language, const std::string& anchor,
                                                           int majorVersion);

    // The authorize event: prompts for unlocking the Security & Privacy pane;
    // the scripted user types the password `unlockAnswerDelay` seconds later,
    // or never when it is negative. System Settings has no lock and ignores it.
    void authorize();
    void setUnlockAnswerDelay(double seconds) { unlockAnswerDelay_ = seconds; }
    int authorizeEvents() const { return authorizeEvents_; }

    // How long a launch takes before the window shows and the app comes forward.
    void setLaunchDelay(double seconds) { launchDelay_ = seconds; }

    // Whether a drop at `screenPoint` (bottom-left origin) lands on the privacy
    // list: on the window, above its bottom strip, with the Security &
    // Privacy pane shown at a category that takes applications and unlocked
    // where a lock exists. A landed drop of the host grants the category.
    bool acceptsDrop(const std::string& url, Point screenPoint);
    // A point on the privacy list, in screen coordinates: where the user drops.
    Point listPoint() const;
    // Who grants a category to the host when its icon lands in the list.
    void setGrantHandler(std::function<void(const std::string& anchor)> handler) { grant_ = std::move(handler); }
    // The categories granted by drops, in order.
    const std::vector<std::string>& grantedByDrop() const { return granted_; }

    // Whether the privacy list at `anchor` takes applications (dropped on
    // it, or added with "+" under it).
    static bool listTakesApplications(const std::string& anchor);

    // The pane bundle's name of the Security & Privacy pane per language.
    static std::string securityPaneName(const std::string& language, int majorVersion);

    // The privacy list's frame in screen coordinates (origin bottom left).
    Rect listFrameOnScreen() const;

private:
    struct ListedApplication {
        std::string anchor;
        bool on = false;
    };
    bool openURL(const std::string& url);
    bool listShownTakesApplications() const;
    void listHost(const std::string& how);
    void showPane(const std::string& pane, const std::string& anchor);
    void writeSecurityPaneBundle();
    void userEventInWindow(const std::string& what);

    SimulatedMac& mac_;
    std::string name_;
    Rect frame_{{386, 120}, {668, 580}};
    std::string pane_ = "com.apple.preference.general";
    std::string anchor_;
    bool locked_ = true;
    double unlockAnswerDelay_ = 1.5;
    double launchDelay_ = 0.8;
    int authorizeEvents_ = 0;
    std::vector<ExtraWindow> extraWindows_;
    std::function<void(const std::string&)> grant_;
    std::vector<std::string> granted_;
    std::vector<ListedApplication> listed_;
    bool passwordAsked_ = false;
    void showReopenSheet(const std::string& anchor);
    std::optional<std::string> reopenSheet_;  // the anchor it was shown for
};

}  // namespace vantro::sim
