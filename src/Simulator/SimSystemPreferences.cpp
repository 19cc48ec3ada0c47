#include "Simulator/SimSystemPreferences.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "Platform/Event.h"
#include "Platform/Workspace.h"
#include "Simulator/SimScreenTexts.h"
#include "Simulator/SimulatedMac.h"

namespace vantro::sim {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view urlScheme = "x-apple.systempreferences";
constexpr double activationDelay = 0.2;
// The localizations of the simulated Security pane bundle.
const std::vector<std::string> securityPaneLanguages = {"de", "en", "fr", "ja", "zh-Hans"};
// The languages System Settings' privacy titles are simulated in.
const std::vector<std::string> settingsLanguages = {"de", "en", "fr", "ja"};
// System Settings' privacy extension, the other URL form of the page.
constexpr std::string_view settingsPrivacyExtension = "com.apple.settings.PrivacySecurity.extension";
// System Settings' window: a fixed width (reported as 710 to 715 points, the
// exact value unconfirmed) and a height of its own.
constexpr Rect settingsWindowFrame{{362, 100}, {715, 620}};

// System Settings' titles of the "Privacy & Security" page and its sub-panes,
// by anchor, in English, German, French and Japanese. The English ones are
// reported; the translations are plausible, not confirmed. The page's title
// is keyed "".
struct SettingsTitle {
    const char* anchor;
    const char* en;
    const char* de;
    const char* fr;
    const char* ja;
};
constexpr SettingsTitle settingsTitles[] = {
    {"", "Privacy & Security", "Datenschutz & Sicherheit", "Confidentialité et sécurité", "プライバシーとセキュリティ"},
    {"Privacy_AllFiles", "Full Disk Access", "Festplattenvollzugriff", "Accès complet au disque", "フルディスクアクセス"},
    {"Privacy_Accessibility", "Accessibility", "Bedienungshilfen", "Accessibilité", "アクセシビリティ"},
    {"Privacy_FilesAndFolders", "Files and Folders", "Dateien und Ordner", "Fichiers et dossiers", "ファイルとフォルダ"},
    {"Privacy_Automation", "Automation", "Automation", "Automatisation", "オートメーション"},
    {"Privacy_ListenEvent", "Input Monitoring", "Eingabeüberwachung", "Surveillance de l’entrée", "入力監視"},
    {"Privacy_ScreenCapture", "Screen & System Audio Recording", "Bildschirm- & Systemaudioaufnahme",
     "Enregistrement de l’écran et de l’audio du système", "画面収録とシステムオーディオ録音"},
    {"Privacy_Camera", "Camera", "Kamera", "Caméra", "カメラ"},
    {"Privacy_Microphone", "Microphone", "Mikrofon", "Micro", "マイク"},
    {"Privacy_Bluetooth", "Bluetooth", "Bluetooth", "Bluetooth", "Bluetooth"},
    {"Privacy_AppBundles", "App Management", "App-Verwaltung", "Gestion des apps", "App管理"},
    {"Privacy_DevTools", "Developer Tools", "Entwicklungswerkzeuge", "Outils de développement", "デベロッパツール"},
    {"Privacy_Analytics", "Analytics & Improvements", "Analyse & Verbesserungen", "Analyse et améliorations", "解析と改善"},
    {"Privacy_Contacts", "Contacts", "Kontakte", "Contacts", "連絡先"},
    {"Privacy_Calendars", "Calendars", "Kalender", "Calendriers", "カレンダー"},
    {"Privacy_Reminders", "Reminders", "Erinnerungen", "Rappels", "リマインダー"},
    {"Privacy_Photos", "Photos", "Fotos", "Photos", "写真"},
    {"Privacy_LocationServices", "Location Services", "Ortungsdienste", "Service de localisation", "位置情報サービス"},
};
// Renamed sub-panes: Screen Recording until 14 added system audio (the name
// System Preferences' Privacy tab used too), and
// Accessibility on 27 (the translations of both unconfirmed).
constexpr SettingsTitle screenRecordingOn13{"Privacy_ScreenCapture", "Screen Recording", "Bildschirmaufnahme",
                                            "Enregistrement de l’écran", "画面収録"};
constexpr SettingsTitle accessibilityFrom27{"Privacy_Accessibility", "Device Control and Data Access",
                                            "Gerätesteuerung und Datenzugriff", "Contrôle de l’appareil et accès aux données",
                                            "デバイスの制御とデータアクセス"};

const SettingsTitle* settingsTitle(const std::string& anchor, int majorVersion) {
    if (anchor == screenRecordingOn13.anchor && majorVersion <= 13) return &screenRecordingOn13;
    if (anchor == accessibilityFrom27.anchor && majorVersion >= 27) return &accessibilityFrom27;
    for (const auto& title : settingsTitles)
        if (anchor == title.anchor) return &title;
    return nullptr;
}

const char* inLanguage(const SettingsTitle& title, const std::string& language) {
    if (language == "de") return title.de;
    if (language == "fr") return title.fr;
    if (language == "ja") return title.ja;
    return title.en;
}

}  // namespace

bool SimSystemPreferences::listTakesApplications(const std::string& anchor) {
    return anchor == "Privacy_AllFiles" || anchor == "Privacy_Accessibility" || anchor == "Privacy_Assistive" ||
           anchor == "Privacy_ScreenCapture" || anchor == "Privacy_ListenEvent" || anchor == "Privacy_DevTools";
}

SimSystemPreferences::SimSystemPreferences(SimulatedMac& mac)
    : mac_(mac), name_(mac.release().hasSystemSettings() ? "System Settings" : "System Preferences") {
    if (isSystemSettings()) frame_ = settingsWindowFrame;
    locked_ = hasLock();
    mac_.workspace().install({std::string(SystemPreferencesBundleIdentifier), name_,
                              "file:///System/Applications/" + name_ + ".app/", launchDelay_});
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

bool SimSystemPreferences::isSystemSettings() const { return mac_.release().hasSystemSettings(); }

bool SimSystemPreferences::hasLock() const { return !isSystemSettings(); }

std::optional<std::string> SimSystemPreferences::settingsSubPaneTitle(const std::string& language, const std::string& anchor,
                                                                      int majorVersion) {
    const SettingsTitle* title = anchor.empty() ? nullptr : settingsTitle(anchor, majorVersion);
    if (!title) return std::nullopt;
    return std::string(inLanguage(*title, language));
}

bool SimSystemPreferences::showsSubPane() const {
    return isSystemSettings() && pane_ == securityPane && settingsSubPaneTitle("en", anchor_, mac_.release().systemVersion.majorVersion);
}

std::string SimSystemPreferences::windowTitle() const {
    if (pane_ != securityPane) return pane_ == "com.apple.preference.general" ? "General" : pane_;
    if (isSystemSettings()) {
        auto preferred = mac_.bundles().preferredLocalizations(settingsLanguages, mac_.defaults().userLanguages());
        const std::string language = preferred.empty() ? "en" : preferred.front();
        const int major = mac_.release().systemVersion.majorVersion;
        if (auto subPane = settingsSubPaneTitle(language, anchor_, major)) return *subPane;
        return inLanguage(*settingsTitle("", major), language);
    }
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
    mac_.record(name_, "is asked to open " + pane + (anchor.empty() ? "" : " at " + anchor));
    // System Settings' own form names the same page.
    if (isSystemSettings() && pane == settingsPrivacyExtension) pane = securityPane;
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
    if (changed) mac_.record(name_, "shows \"" + windowTitle() + "\"" + (anchor.empty() ? "" : " at " + anchor));
}

void SimSystemPreferences::setWindowFrame(const Rect& frame) {
    frame_ = frame;
    // System Settings' window keeps its width.
    if (isSystemSettings()) frame_.size.width = settingsWindowFrame.size.width;
}

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

void SimSystemPreferences::userOpensPrivacyList(const std::string& anchor) {
    if (!isRunning()) return;
    showPane(securityPane, anchor);
    userEventInWindow("list");
}

void SimSystemPreferences::userMovesWindow(Point topLeft) {
    if (!isRunning()) return;
    frame_.origin = topLeft;
    mac_.windows().deliverMouseEvent({NSEventTypeLeftMouseDown, 1, {frame_.size.width / 2, 10}}, processIdentifier());
    mac_.windows().deliverMouseEvent({NSEventTypeLeftMouseDragged, 1, {frame_.size.width / 2, 10}}, processIdentifier());
    mac_.windows().deliverMouseEvent({NSEventTypeLeftMouseUp, 1, {frame_.size.width / 2, 10}}, processIdentifier());
    mac_.record(name_, "window moves to (" + std::to_string(int(topLeft.x)) + ", " + std::to_string(int(topLeft.y)) + ")");
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
            mac_.record(name_, "window dragged to (" + std::to_string(int(topLeft.x)) + ", " +
                                                  std::to_string(int(topLeft.y)) + ")");
        });
    }
}

void SimSystemPreferences::userUnlocks() {
    if (!isRunning() || !locked_) return;
    userEventInWindow("lock");
    locked_ = false;
    passwordAsked_ = false;
    mac_.record("System Preferences", "the pane is unlocked");
}

void SimSystemPreferences::userQuits() { mac_.workspace().quit(SystemPreferencesBundleIdentifier); }

void SimSystemPreferences::authorize() {
    ++authorizeEvents_;
    if (!hasLock() || !locked_) return;
    mac_.record("System Preferences", "asks for the administrator password to unlock the pane");
    passwordAsked_ = true;
    if (unlockAnswerDelay_ < 0) return;
    mac_.runLoop().scheduleUserEvent(unlockAnswerDelay_, [this] {
        if (!isRunning() || !locked_) return;
        passwordAsked_ = false;
        mac_.record("user", "types the password");
        locked_ = false;
        mac_.record("System Preferences", "the pane is unlocked");
    });
}

Rect SimSystemPreferences::listFrameOnScreen() const {
    double screenHeight = mac_.windows().mainScreenFrame().size.height;
    Rect window{{frame_.origin.x, screenHeight - frame_.maxY()}, frame_.size};
    if (isSystemSettings()) {
        // Right of the sidebar, under the sub-pane's heading and text, above
        // the "+" and "−" buttons.
        return {{window.origin.x + settingsSidebarWidth + 20, window.origin.y + 70},
                {window.size.width - settingsSidebarWidth - 40, window.size.height - 220}};
    }
    // The list sits in the window's lower half, right of the category column.
    return {{window.origin.x + 200, window.origin.y + 40}, {window.size.width - 220, window.size.height / 2}};
}

Point SimSystemPreferences::listPoint() const {
    Rect list = listFrameOnScreen();
    return {list.origin.x + 240, list.origin.y + 115};
}

Rect SimSystemPreferences::plusButtonOnScreen() const {
    Rect list = listFrameOnScreen();
    return {{list.origin.x, list.origin.y - 30}, {24, 22}};
}

bool SimSystemPreferences::listShownTakesApplications() const { return showsSubPane() && listTakesApplications(anchor_); }

bool SimSystemPreferences::listsHost(const std::string& anchor) const {
    return std::any_of(listed_.begin(), listed_.end(), [&](const ListedApplication& a) { return a.anchor == anchor; });
}

bool SimSystemPreferences::hostSwitchedOn(const std::string& anchor) const {
    return std::any_of(listed_.begin(), listed_.end(), [&](const ListedApplication& a) { return a.anchor == anchor && a.on; });
}

void SimSystemPreferences::listHost(const std::string& how) {
    if (listsHost(anchor_)) {
        mac_.record(name_, mac_.configuration().hostName + " is already in the list at " + anchor_);
        return;
    }
    listed_.push_back({anchor_, false});
    mac_.record(name_, how + " " + mac_.configuration().hostName + " to the list at " + anchor_ + ", switched off");
}

bool SimSystemPreferences::userAddsHostWithPlusButton() {
    if (!isRunning() || !listShownTakesApplications()) return false;
    userEventInWindow("plus");
    mac_.record(name_, "shows an open panel; the user chooses " + mac_.configuration().hostName);
    listHost("adds");
    return true;
}

bool SimSystemPreferences::userSwitchesOnHost() {
    if (!isRunning() || !showsSubPane() || !listsHost(anchor_) || hostSwitchedOn(anchor_) || passwordAsked_) return false;
    userEventInWindow("switch");
    // Turning a switch on needs an administrator's authorization (Apple
    // documents it for Input Monitoring and Screen Recording; reported for
    // the others).
    passwordAsked_ = true;
    mac_.record(name_, "asks for the administrator password to turn on " + mac_.configuration().hostName);
    if (unlockAnswerDelay_ < 0) return true;
    mac_.runLoop().scheduleUserEvent(unlockAnswerDelay_, [this, anchor = anchor_] {
        passwordAsked_ = false;
        if (!isRunning()) return;
        mac_.record("user", "types the password");
        for (auto& listed : listed_)
            if (listed.anchor == anchor) listed.on = true;
        mac_.record(name_, "turns on " + mac_.configuration().hostName + " at " + anchor);
        if (grant_) grant_(anchor);
        showReopenSheet(anchor);
    });
    return true;
}

void SimSystemPreferences::showReopenSheet(const std::string& anchor) {
    // Reported for Full Disk Access from 11 (11.6, 12.2, 13) and for Screen
    // Recording on System Settings; the host must be running to be quit.
    const int major = mac_.release().systemVersion.majorVersion;
    const bool fullDiskAccess = anchor == "Privacy_AllFiles" && major >= 11;
    const bool screenRecording = anchor == "Privacy_ScreenCapture" && isSystemSettings();
    if (!(fullDiskAccess || screenRecording) || !mac_.workspace().host() || reopenSheet_) return;
    reopenSheet_ = anchor;
    extraWindows_.push_back({*reopenSheetFrame(), std::nullopt});
    // A sheet comes in front of its window.
    mac_.windows().bringWindowForward(SimWindows::preferencesWindowNumber + static_cast<int>(extraWindows_.size()));
    mac_.record(name_, "shows a sheet: " + reopenSheetText() + " [Later] [Quit & Reopen]");
    // The click that confirmed the change, as other applications' monitors see it.
    userEventInWindow("sheet");
}

std::optional<Rect> SimSystemPreferences::reopenSheetFrame() const {
    if (!reopenSheet_) return std::nullopt;
    constexpr Size sheet{260, 170};
    return Rect{{frame_.origin.x + (frame_.size.width - sheet.width) / 2, frame_.origin.y + 52}, sheet};
}

std::string SimSystemPreferences::reopenSheetText(std::string_view language) const {
    const std::string_view format = reopenSheet_ == "Privacy_ScreenCapture"
                                        ? "%@ may not be able to record the contents of your screen until it is quit."
                                        : "%@ will not have full disk access until it is quit.";
    std::string text = screenText(format, language);
    const std::string app = screenText("\u201C%@\u201D", language);
    const auto quoted = app.substr(0, app.find("%@")) + mac_.configuration().hostName + app.substr(app.find("%@") + 2);
    if (const auto at = text.find("%@"); at != std::string::npos) text.replace(at, 2, quoted);
    return text;
}

bool SimSystemPreferences::userAnswersReopenSheet(bool quitAndReopen) {
    if (!reopenSheet_ || !isRunning()) return false;
    const Rect sheet = *reopenSheetFrame();
    std::erase_if(extraWindows_, [&](const ExtraWindow& w) { return w.frame.size == sheet.size && !w.title; });
    reopenSheet_.reset();
    mac_.record(name_, quitAndReopen ? "closes the sheet: Quit & Reopen" : "closes the sheet: Later");
    userEventInWindow("sheet button");
    if (quitAndReopen) mac_.relaunchHost();
    return true;
}

bool SimSystemPreferences::acceptsDrop(const std::string& url, Point screenPoint) {
    if (!isRunning() || pane_ != securityPane) return false;
    if (!listFrameOnScreen().contains(screenPoint)) return false;
    if (isSystemSettings()) {
        if (!listShownTakesApplications()) {
            mac_.record(name_, showsSubPane() ? "the list at " + anchor_ + " takes no applications" : "the page has no list to drop on");
            return false;
        }
        if (url != SimWorkspace::directoryURL(mac_.hostBundlePath())) return false;
        listHost("adds");
        return true;
    }
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
    showReopenSheet(anchor_);
    return true;
}

}  // namespace vantro::sim
