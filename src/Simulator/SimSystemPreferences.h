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
class SimSystemPreferences {
public:
    explicit SimSystemPreferences(SimulatedMac& mac);

    static constexpr const char* securityPane = "com.apple.preference.security";

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
    void userMovesWindow(Point topLeft);
    // Drags the window by its title bar to `topLeft` over `seconds`: a
    // mouse-down now, the window following the pointer with a dragged event
    // every 0.05 s, and a mouse-up when it arrives.
    void userDragsWindow(Point topLeft, double seconds);
    void userUnlocks();
    void userQuits();

    // The authorize event: prompts for unlocking the Security & Privacy pane;
    // the scripted user types the password `unlockAnswerDelay` seconds later,
    // or never when it is negative.
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

    // The pane bundle's name of the Security & Privacy pane per language.
    static std::string securityPaneName(const std::string& language, int majorVersion);

    // The privacy list's frame in screen coordinates (origin bottom left).
    Rect listFrameOnScreen() const;

private:
    bool openURL(const std::string& url);
    void showPane(const std::string& pane, const std::string& anchor);
    void writeSecurityPaneBundle();
    void userEventInWindow(const std::string& what);

    SimulatedMac& mac_;
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
};

}  // namespace vantro::sim
