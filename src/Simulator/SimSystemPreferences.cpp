#include "Simulator/SimSystemPreferences.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "Platform/Event.h"
#include "Platform/Workspace.h"
#include "Simulator/SimulatedMac.h"

namespace vantro::sim {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view urlScheme = "x-apple.systempreferences";
constexpr double activationDelay = 0.2;
// The localizations of the simulated Security pane bundle.
const std::vector<std::string> securityPaneLanguages = {"de", "en", "fr", "ja", "zh-Hans"};

// The panes whose privacy list takes applications dropped on it.
bool listTakesApplications(const std::string& anchor) {
    return anchor == "Privacy_AllFiles" || anchor == "Privacy_Accessibility" || anchor == "Privacy_Assistive" ||
           anchor == "Privacy_ScreenCapture" || anchor == "Privacy_ListenEvent" || anchor == "Privacy_DevTools";
}

}  // namespace

SimSystemPreferences::SimSystemPreferences(SimulatedMac& mac) : mac_(mac) {
    bool settings = mac_.release().hasSystemSettings();
    std::string name = settings ? "System Settings" : "System Preferences";
    mac_.workspace().install({std::string(SystemPreferencesBundleIdentifier), name,
                              "file:///System/Applications/" + name + ".app/", launchDelay_});
    mac_.workspace().setURLHandler(std::string(urlScheme), [this](const std::string& url) { return openURL(url); });
    writeSecurityPaneBundle();
}

std::string SimSystemPreferences::securityPaneName(const std::string& language, int majorVersion) {
    bool renamed = majorVersion >= 13;  // "Privacy & Security" from macOS 13
    if (language == "de") return renamed ? "Datenschutz & Sicherheit" : "Sicherheit & Datenschutz";
    // French is unconfirmed: the names System Preferences is believed to show.
    if (language == "fr") return renamed ? "Confidentialité et sécurité" : "Sécurité et confidentialité";
    if (language == "ja") return renamed ? "プライバシーとセキュリティ" : "セキュリティとプライバシー";
    if (language == "zh-Hans") return renamed ? "隐私与安全性" : "安全性与隐私";
    return renamed ? "Privacy & Security" : "Security & Privacy";
}

void SimSystemPreferences::writeSecurityPaneBundle() {
    fs::path resources = fs::path(mac_.realPath("/System/Library/PreferencePanes/Security.prefPane")) / "Contents" / "Resources";
    for (const auto& language : securityPaneLanguages) {
        std::error_code ec;
        fs::create_directories(resources / (language + ".lproj"), ec);
        std::ofstream(resources / (language + ".lproj") / "InfoPlist.strings")
            << "\"CFBundleName\" = \"" << securityPaneName(language, mac_.release().systemVersion.majorVersion) << "\";\n";
    }
}

bool SimSystemPreferences::isRunning() const {
    return !mac_.workspace().runningApplicationsWithBundleIdentifier(SystemPreferencesBundleIdentifier).empty();
}

int SimSystemPreferences::processIdentifier() const {
    auto app = mac_.workspace().application(SystemPreferencesBundleIdentifier);
    return app ? app->processIdentifier() : -1;
}

bool SimSystemPreferences::hasLock() const { return mac_.release().systemVersion.majorVersion < 13; }

std::string SimSystemPreferences::windowTitle() const {
    if (pane_ != securityPane) return pane_ == "com.apple.preference.general" ? "General" : pane_;
    auto languages = mac_.defaults().userLanguages();
    auto preferred = mac_.bundles().preferredLocalizations(securityPaneLanguages, languages);
    return securityPaneName(preferred.empty() ? "en" : preferred.front(), mac_.release().systemVersion.majorVersion);
}

bool SimSystemPreferences::openURL(const std::string& url) {
    // x-apple.systempreferences:<pane>?<anchor>
    std::string rest = url.substr(urlScheme.size() + 1);
    auto question = rest.find('?');
    std::string pane = rest.substr(0, question);
    std::string anchor = question == std::string::npos ? std::string() : rest.substr(question + 1);
    if (pane.empty()) pane = "com.apple.preference.general";
    mac_.record("System Preferences", "is asked to open " + pane + (anchor.empty() ? "" : " at " + anchor));
    auto& workspace = mac_.workspace();
    if (!isRunning()) {
        auto app = workspace.start(SystemPreferencesBundleIdentifier);
        app->setFinishedLaunching(false);
        mac_.record("system", "launches " + app->localizedName());
        mac_.runLoop().scheduleUserEvent(launchDelay_, [this, pane, anchor, app] {
            if (app->isTerminated()) return;
            app->setFinishedLaunching(true);
            showPane(pane, anchor);
            mac_.workspace().activate(app);
        });
        return true;
    }
    mac_.runLoop().scheduleUserEvent(activationDelay, [this, pane, anchor] {
        if (!isRunning()) return;
        showPane(pane, anchor);
        mac_.workspace().activate(std::string(SystemPreferencesBundleIdentifier));
    });
    return true;
}

void SimSystemPreferences::showPane(const std::string& pane, const std::string& anchor) {
    bool changed = pane != pane_ || anchor != anchor_;
    pane_ = pane;
    anchor_ = anchor;
    if (changed) mac_.record("System Preferences", "shows \"" + windowTitle() + "\"" + (anchor.empty() ? "" : " at " + anchor));
}

void SimSystemPreferences::setWindowFrame(const Rect& frame) { frame_ = frame; }

void SimSystemPreferences::userEventInWindow(const std::string&) {
    // A click in System Preferences: a mouse-down and a mouse-up that the
    // global monitors of other applications see.
    Point inWindow{frame_.size.width / 2, 20};
    mac_.windows().deliverMouseEvent({NSEventTypeLeftMouseDown, 1, inWindow}, processIdentifier());
    mac_.windows().deliverMouseEvent({NSEventTypeLeftMouseUp, 1, inWindow}, processIdentifier());
}

void SimSystemPreferences::userShowsPane(const std::string& pane) {
    if (!isRunning()) return;
    showPane(pane, pane == securityPane ? anchor_ : std::string());
    userEventInWindow("pane");
}

void SimSystemPreferences::userMovesWindow(Point topLeft) {
    if (!isRunning()) return;
    frame_.origin = topLeft;
    mac_.windows().deliverMouseEvent({NSEventTypeLeftMouseDown, 1, {frame_.size.width / 2, 10}}, processIdentifier());
    mac_.windows().deliverMouseEvent({NSEventTypeLeftMouseDragged, 1, {frame_.size.width / 2, 10}}, processIdentifier());
    mac_.windows().deliverMouseEvent({NSEventTypeLeftMouseUp, 1, {frame_.size.width / 2, 10}}, processIdentifier());
    mac_.record("System Preferences", "window moves to (" + std::to_string(int(topLeft.x)) + ", " + std::to_string(int(topLeft.y)) + ")");
}

void SimSystemPreferences::userDragsWindow(Point topLeft, double seconds) {
    if (!isRunning()) return;
    constexpr double step = 0.05;
    const Point start = frame_.origin;
    const Point grip{frame_.size.width / 2, 10};
    mac_.windows().deliverMouseEvent({NSEventTypeLeftMouseDown, 1, grip}, processIdentifier());
    const int steps = std::max(1, static_cast<int>(seconds / step + 0.5));
    for (int i = 1; i <= steps; ++i) {
        const double t = static_cast<double>(i) / steps;
        mac_.runLoop().scheduleUserEvent(i * step, [this, start, topLeft, grip, t, last = i == steps] {
            if (!isRunning()) return;
            frame_.origin = {start.x + (topLeft.x - start.x) * t, start.y + (topLeft.y - start.y) * t};
            mac_.windows().deliverMouseEvent({NSEventTypeLeftMouseDragged, 1, grip}, processIdentifier());
            if (!last) return;
            mac_.windows().deliverMouseEvent({NSEventTypeLeftMouseUp, 1, grip}, processIdentifier());
            mac_.record("System Preferences", "window dragged to (" + std::to_string(int(topLeft.x)) + ", " +
                                                  std::to_string(int(topLeft.y)) + ")");
        });
    }
}

void SimSystemPreferences::userUnlocks() {
    if (!isRunning() || !locked_) return;
    userEventInWindow("lock");
    locked_ = false;
    mac_.record("System Preferences", "the pane is unlocked");
}

void SimSystemPreferences::userQuits() { mac_.workspace().quit(SystemPreferencesBundleIdentifier); }

void SimSystemPreferences::authorize() {
    ++authorizeEvents_;
    if (!hasLock() || !locked_) return;
    mac_.record("System Preferences", "asks for the administrator password to unlock the pane");
    if (unlockAnswerDelay_ < 0) return;
    mac_.runLoop().scheduleUserEvent(unlockAnswerDelay_, [this] {
        if (!isRunning() || !locked_) return;
        mac_.record("user", "types the password");
        locked_ = false;
        mac_.record("System Preferences", "the pane is unlocked");
    });
}

Rect SimSystemPreferences::listFrameOnScreen() const {
    double screenHeight = mac_.windows().mainScreenFrame().size.height;
    Rect window{{frame_.origin.x, screenHeight - frame_.maxY()}, frame_.size};
    // The list sits in the window's lower half, right of the category column.
    return {{window.origin.x + 200, window.origin.y + 40}, {window.size.width - 220, window.size.height / 2}};
}

Point SimSystemPreferences::listPoint() const {
    Rect list = listFrameOnScreen();
    return {list.origin.x + 240, list.origin.y + 115};
}

bool SimSystemPreferences::acceptsDrop(const std::string& url, Point screenPoint) {
    if (!isRunning() || pane_ != securityPane) return false;
    if (!listFrameOnScreen().contains(screenPoint)) return false;
    if (!listTakesApplications(anchor_)) {
        mac_.record("System Preferences", "the list at " + anchor_ + " takes no applications");
        return false;
    }
    if (hasLock() && locked_) {
        mac_.record("System Preferences", "refuses the drop: the pane is locked");
        return false;
    }
    if (url != SimWorkspace::directoryURL(mac_.hostBundlePath())) return false;
    granted_.push_back(anchor_);
    mac_.record("System Preferences", "adds " + mac_.configuration().hostName + " to the list at " + anchor_);
    if (grant_) grant_(anchor_);
    return true;
}

}  // namespace vantro::sim
