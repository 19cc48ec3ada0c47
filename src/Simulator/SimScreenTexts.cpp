#include "Simulator/SimScreenTexts.h"

#include "Simulator/SimulatedMac.h"

namespace vantro::sim {

namespace {

struct Translation {
    const char* en;
    const char* de;
    const char* fr;
    const char* ja;
};

// The simulated system's texts that Vantro's own tables do not hold. The
// category names come from System Settings' title table (in
// SimSystemPreferences), the one place the simulated system names a
// category. The English texts are those the real settings show where known;
// the translations are plausible, not checked against a Mac.
constexpr Translation translations[] = {
    // The menu bar.
    {"System Preferences", "Systemeinstellungen", "Préférences Système", "システム環境設定"},
    {"System Settings", "Systemeinstellungen", "Réglages Système", "システム設定"},
    {"Edit", "Bearbeiten", "Édition", "編集"},
    {"View", "Darstellung", "Présentation", "表示"},
    {"Window", "Fenster", "Fenêtre", "ウインドウ"},
    {"Help", "Hilfe", "Aide", "ヘルプ"},
    // The host's window around its permission list.
    {"Permissions", "Berechtigungen", "Autorisations", "アクセス権"},
    // System Preferences' Security & Privacy pane.
    {"General", "Allgemein", "Général", "一般"},
    {"FileVault", "FileVault", "FileVault", "FileVault"},
    {"Firewall", "Firewall", "Coupe-feu", "ファイアウォール"},
    {"Privacy", "Privatsphäre", "Confidentialité", "プライバシー"},
    {"Advanced…", "Weitere Optionen …", "Avancé…", "詳細…"},
    {"Click the lock to make changes.", "Klicke auf das Schloss, um Änderungen vorzunehmen.",
     "Cliquez sur le cadenas pour apporter des modifications.", "変更するにはカギをクリックします。"},
    {"Click the lock to prevent further changes.", "Klicke auf das Schloss, um weitere Änderungen zu verhindern.",
     "Cliquez sur le cadenas pour empêcher toute nouvelle modification.", "変更できないようにするにはカギをクリックします。"},
    {"Allow the apps below to use %@.", "Den Apps unten Folgendes erlauben: %@.", "Autoriser les apps ci-dessous : %@.",
     "以下のアプリケーションに%@を許可します。"},
    {"General settings", "Allgemeine Einstellungen", "Réglages généraux", "一般設定"},
    {"Search", "Suchen", "Rechercher", "検索"},
    // The administrator's password dialog.
    {"System Preferences is trying to unlock Security & Privacy preferences.",
     "Systemeinstellungen versucht, die Einstellungen „Sicherheit & Datenschutz“ zu entsperren.",
     "Préférences Système tente de déverrouiller les préférences Sécurité et confidentialité.",
     "システム環境設定が“セキュリティとプライバシー”のロックを解除しようとしています。"},
    {"System Settings is trying to modify your system settings.", "Systemeinstellungen versucht, deine Systemeinstellungen zu ändern.",
     "Réglages Système tente de modifier vos réglages système.", "システム設定がシステム設定を変更しようとしています。"},
    {"Enter your password to allow this.", "Gib dein Passwort ein, um dies zu erlauben.",
     "Saisissez votre mot de passe pour autoriser cette action.", "許可するにはパスワードを入力してください。"},
    {"User Name:", "Benutzername:", "Nom d’utilisateur :", "ユーザ名:"},
    {"Password:", "Passwort:", "Mot de passe :", "パスワード:"},
    {"Cancel", "Abbrechen", "Annuler", "キャンセル"},
    {"Unlock", "Entsperren", "Déverrouiller", "ロックを解除"},
    {"Modify Settings", "Einstellungen ändern", "Modifier les réglages", "設定を変更"},
    // The sheet System Settings shows once a running application is let in
    // where it takes effect only after the application reopens.
    {"%@ will not have full disk access until it is quit.",
     "%@ erhält erst Festplattenvollzugriff, wenn die App beendet wurde.",
     "%@ n’aura pas d’accès complet au disque tant que l’app n’aura pas été quittée.",
     "%@ は終了するまでフルディスクアクセスを利用できません。"},
    {"%@ may not be able to record the contents of your screen until it is quit.",
     "%@ kann den Inhalt deines Bildschirms möglicherweise erst aufnehmen, wenn die App beendet wurde.",
     "%@ ne pourra peut-être pas enregistrer le contenu de votre écran tant que l’app n’aura pas été quittée.",
     "%@ は終了するまで画面の内容を収録できない可能性があります。"},
    {"\u201C%@\u201D", "„%@“", "« %@ »", "“%@”"},
    {"Later", "Später", "Plus tard", "後で"},
    {"Quit & Reopen", "Beenden & erneut öffnen", "Quitter et rouvrir", "終了して再度開く"},
    // System Settings' sidebar.
    {"Wi-Fi", "WLAN", "Wi-Fi", "Wi-Fi"},
    {"Bluetooth", "Bluetooth", "Bluetooth", "Bluetooth"},
    {"Network", "Netzwerk", "Réseau", "ネットワーク"},
    {"Notifications", "Mitteilungen", "Notifications", "通知"},
    {"Sound", "Ton", "Son", "サウンド"},
    {"Focus", "Fokus", "Concentration", "集中モード"},
    {"Screen Time", "Bildschirmzeit", "Temps d’écran", "スクリーンタイム"},
    {"Appearance", "Erscheinungsbild", "Apparence", "外観"},
    {"Accessibility", "Bedienungshilfen", "Accessibilité", "アクセシビリティ"},
    {"Control Centre", "Kontrollzentrum", "Centre de contrôle", "コントロールセンター"},
    {"Siri & Spotlight", "Siri & Spotlight", "Siri et Spotlight", "Siri と Spotlight"},
    {"Apple Intelligence & Siri", "Apple Intelligence & Siri", "Apple Intelligence et Siri", "Apple Intelligence と Siri"},
    {"Spotlight", "Spotlight", "Spotlight", "Spotlight"},
    {"Desktop & Dock", "Schreibtisch & Dock", "Bureau et Dock", "デスクトップと Dock"},
    {"Displays", "Displays", "Moniteurs", "ディスプレイ"},
    {"Wallpaper", "Hintergrundbild", "Fond d’écran", "壁紙"},
    {"Screen Saver", "Bildschirmschoner", "Économiseur d’écran", "スクリーンセーバ"},
    {"Battery", "Batterie", "Batterie", "バッテリー"},
    {"Lock Screen", "Sperrbildschirm", "Écran verrouillé", "ロック画面"},
    {"Touch ID & Password", "Touch ID & Passwort", "Touch ID et mot de passe", "Touch ID とパスワード"},
    {"Users & Groups", "Benutzer:innen & Gruppen", "Utilisateurs et groupes", "ユーザとグループ"},
};

const char* inLanguage(const Translation& t, std::string_view language) {
    if (language == "de") return t.de;
    if (language == "fr") return t.fr;
    if (language == "ja") return t.ja;
    return t.en;
}

}  // namespace

const std::vector<std::string>& screenLanguages() {
    static const std::vector<std::string> languages = {"de", "en", "fr", "ja"};
    return languages;
}

std::string screenLanguage(SimulatedMac& mac) {
    auto preferred = mac.bundles().preferredLocalizations(screenLanguages(), mac.defaults().userLanguages());
    return preferred.empty() ? "en" : preferred.front();
}

std::string screenText(std::string_view english, std::string_view language) {
    for (const auto& t : translations)
        if (english == t.en) return inLanguage(t, language);
    return std::string(english);
}

std::vector<ScreenTextPair> screenTextPairs(std::string_view language) {
    std::vector<ScreenTextPair> pairs;
    for (const auto& t : translations) pairs.push_back({t.en, inLanguage(t, language)});
    return pairs;
}

SettingsFamily settingsFamily(int majorVersion, int minorVersion) {
    if (majorVersion >= 26) return SettingsFamily::Tahoe;
    if (majorVersion >= 13) return SettingsFamily::Ventura;
    if (majorVersion >= 11 || minorVersion >= 15) return SettingsFamily::Catalina;
    return SettingsFamily::Mojave;
}

const SettingsLook& settingsLook(SettingsFamily family) {
    // Window corner radius, sidebar translucency, selection radius, row pitch.
    static const SettingsLook mojave{5, 0, 0, 24}, catalina{10, 0, 5, 26}, ventura{12, 0, 5, 26}, tahoe{24, 0.45, 11, 24};
    switch (family) {
        case SettingsFamily::Mojave: return mojave;
        case SettingsFamily::Catalina: return catalina;
        case SettingsFamily::Ventura: return ventura;
        case SettingsFamily::Tahoe: return tahoe;
    }
    return ventura;
}

namespace {
// Each category's icon colour, as the settings tint them.
constexpr CategoryEntry location{"Privacy_LocationServices", 0.20, 0.48, 0.96};
constexpr CategoryEntry contacts{"Privacy_Contacts", 0.62, 0.50, 0.38};
constexpr CategoryEntry calendars{"Privacy_Calendars", 0.95, 0.27, 0.23};
constexpr CategoryEntry reminders{"Privacy_Reminders", 0.96, 0.55, 0.14};
constexpr CategoryEntry photos{"Privacy_Photos", 0.98, 0.75, 0.18};
constexpr CategoryEntry bluetooth{"Privacy_Bluetooth", 0.16, 0.48, 0.98};
constexpr CategoryEntry camera{"Privacy_Camera", 0.45, 0.45, 0.48};
constexpr CategoryEntry microphone{"Privacy_Microphone", 0.93, 0.33, 0.37};
constexpr CategoryEntry accessibility{"Privacy_Accessibility", 0.16, 0.48, 0.98};
constexpr CategoryEntry inputMonitoring{"Privacy_ListenEvent", 0.55, 0.55, 0.58};
constexpr CategoryEntry fullDiskAccess{"Privacy_AllFiles", 0.35, 0.60, 0.95};
constexpr CategoryEntry filesAndFolders{"Privacy_FilesAndFolders", 0.35, 0.60, 0.95};
constexpr CategoryEntry screenRecording{"Privacy_ScreenCapture", 0.86, 0.30, 0.30};
constexpr CategoryEntry automation{"Privacy_Automation", 0.55, 0.55, 0.58};
constexpr CategoryEntry analytics{"Privacy_Analytics", 0.30, 0.55, 0.95};
constexpr CategoryEntry appManagement{"Privacy_AppBundles", 0.20, 0.48, 0.96};
constexpr CategoryEntry developerTools{"Privacy_DevTools", 0.45, 0.45, 0.48};
}  // namespace

const std::vector<CategoryEntry>& preferencesPrivacyColumn(SettingsFamily family) {
    // Mojave's tab has no Files and Folders, Input Monitoring or Screen
    // Recording: those lists came with Catalina.
    static const std::vector<CategoryEntry> mojave = {location, contacts, calendars, reminders, photos, camera,
                                                      microphone, accessibility, fullDiskAccess, automation};
    static const std::vector<CategoryEntry> catalina = {location,        contacts,       calendars,       reminders,
                                                        photos,          camera,         microphone,      accessibility,
                                                        inputMonitoring, fullDiskAccess, filesAndFolders, screenRecording,
                                                        automation};
    return family == SettingsFamily::Mojave ? mojave : catalina;
}

const std::vector<CategoryEntry>& settingsPrivacyRows() {
    static const std::vector<CategoryEntry> rows = {location,        contacts,       calendars,       reminders,
                                                    photos,          bluetooth,      camera,          microphone,
                                                    accessibility,   inputMonitoring, fullDiskAccess, filesAndFolders,
                                                    screenRecording, automation,     appManagement,   developerTools,
                                                    analytics};
    return rows;
}

const std::vector<const char*>& settingsSidebar(SettingsFamily family) {
    // Ventura's order (kept by 14 and 15), and the redesign's regrouping (both as
    // reported, not checked item by item on a Mac):
    // system settings first, then notifications and focus, then security.
    static const std::vector<const char*> ventura = {
        "Wi-Fi", "Bluetooth", "Network",                                          // connections
        "Notifications", "Sound", "Focus", "Screen Time",                         // attention
        "General", "Appearance", "Accessibility", "Control Centre", "Siri & Spotlight",
        "Privacy & Security",                                                     // the privacy lists
        "Desktop & Dock", "Displays", "Wallpaper", "Screen Saver", "Battery",     // the Mac itself
        "Lock Screen", "Touch ID & Password", "Users & Groups"};                  // who may use it
    static const std::vector<const char*> tahoe = {
        "Wi-Fi", "Bluetooth", "Network", "Battery",
        "General", "Accessibility", "Appearance", "Apple Intelligence & Siri", "Control Centre", "Desktop & Dock",
        "Displays", "Spotlight", "Wallpaper",
        "Notifications", "Sound", "Focus", "Screen Time",
        "Lock Screen", "Privacy & Security", "Touch ID & Password", "Users & Groups"};
    return family == SettingsFamily::Tahoe ? tahoe : ventura;
}

}  // namespace vantro::sim
