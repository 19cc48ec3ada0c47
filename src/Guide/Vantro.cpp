#include "Guide/Vantro.h"

#include <mutex>

#include "Guide/GuideProcessState.h"
#include "Overlay/VantroWindowController.h"
#include "Platform/HostProcess.h"
#include "Vocabulary/NewerPrivacyCategories.h"

namespace vantro {

namespace {

// The context of the guide's observation of the host's "hidden": recognised
// by its address.
constexpr char ApplicationIsHiddenContext[] = "Vantro.ApplicationIsHidden";

constexpr std::string_view SecurityPanePath = "/System/Library/PreferencePanes/Security.prefPane";

void replaceAll(std::string& text, std::string_view placeholder, std::string_view replacement) {
    for (auto at = text.find(placeholder); at != std::string::npos; at = text.find(placeholder, at + replacement.size()))
        text.replace(at, placeholder.size(), replacement);
}

}  // namespace

Vantro::Vantro(const SharedOwnership&) {
    hostApplication_ = HostProcess::current().platform().workspace().currentApplication();
    if (hostApplication_) hostApplication_->addObserver(*this, "hidden", ObservingOptionNone, ApplicationIsHiddenContext);
}

Vantro::~Vantro() {
    auto& platform = HostProcess::current().platform();
    platform.workspace().removeObserver(this);
    // From hostApplication as it is now, which is the application registered
    // with unless the host replaced it.
    if (hostApplication_) hostApplication_->removeObserver(*this, "hidden", ApplicationIsHiddenContext);
    if (windowController_ && windowController_->window())
        windowController_->window()->removeObserver(*this, "visible", GuideOverlayVisibleContext);
}

std::shared_ptr<Vantro> Vantro::sharedKit() {
    auto& state = guideProcessState();
    std::call_once(state.sharedOnce, [&] { state.shared = makeShared<Vantro>(); });
    return state.shared;
}

void Vantro::askAccessForPanelIdentifier(std::optional<std::string_view> identifier) {
    askAccessForPanelIdentifier(identifier, resolvePrompt(identifier));
}

void Vantro::askAccessForPanelIdentifier(std::optional<std::string_view> identifier, std::optional<std::string> message) {
    panelIdentifier_ = identifier ? std::optional<std::string>(std::string(*identifier)) : std::nullopt;
    message_ = std::move(message);
    didSeeSystemPreferences_ = false;
    didSeeOtherApplication_ = false;
    privacyPanelName_ = securityPaneTitle();
    didSeePrivacyPanel_ = false;
    orderOutOverlay();
    if (auto d = delegate(); d && d->respondsToVantroWillOpenPanel()) d->vantroWillOpenPanel(panelIdentifier_.value_or(""));
    // Registered on every start, without looking for an earlier registration:
    // a second start while a session runs handles each activation twice until
    // stop removes both.
    HostProcess::current().platform().workspace().addActivationObserver(
        this, [this](RunningApplicationPtr activated) { applicationChanged(std::move(activated)); });
    sessionRunning_ = true;
    didChangeValueForKey("isSessionRunning");
    activatePanel();
}

const Value* Vantro::promptTable() {
    auto& platform = HostProcess::current().platform();
    auto& state = guideProcessState();
    if (!state.promptTable) {
        // Kept only once read: a missing resource is looked for on every call.
        if (auto path = platform.bundles().frameworkBundle()->pathForResource("Prompts", "plist")) {
            auto table = platform.bundles().propertyListWithContentsOfFile(*path);
            if (table && table->dictionary()) {
                auto keys = table->dictionary()->find("keys");
                if (keys != table->dictionary()->end() && keys->second.dictionary()) {
                    auto& names = *keys->second.dictionary();
                    // From 10.14 on Accessibility is a switch to turn on rather
                    // than a list to drag into: its prompt says so, whatever the file says.
                    if (flooredAppKitVersion() > 1561.0) names.insert_or_assign(std::string(VantroPrivacyAccessibility), Value("CheckForAccess"));
                    // On 27 the list is titled "Device Control and Data Access"
                    // (the service is still Accessibility): the prompt of both
                    // of its identifiers names the list the user sees.
                    if (flooredAppKitVersion() >= NSAppKitVersionNumber27_0)
                        for (auto identifier : {VantroPrivacyAccessibility, VantroPrivacyAssistive})
                            names.insert_or_assign(std::string(identifier), Value("DeviceControl"));
                }
                state.promptTable = std::move(*table);
            }
        }
    }
    return state.promptTable ? &*state.promptTable : nullptr;
}

std::string Vantro::resolvePrompt(std::optional<std::string_view> identifier) {
    const Value* table = promptTable();
    const Value* keys = table ? table->find("keys") : nullptr;
    // A newer category the host has not turned on gets the default prompt, as
    // any identifier the table does not list.
    const Value* promptName = keys && identifier && !isPrivacyCategoryWithheld(*identifier) ? keys->find(*identifier) : nullptr;
    if (!promptName && keys) promptName = keys->find("Privacy_Default");
    return promptText(promptName && promptName->isString() ? *promptName->stringPointer() : std::string());
}

std::string Vantro::promptText(const std::string& promptName) {
    auto& platform = HostProcess::current().platform();
    std::optional<std::string> localizationKey;
    if (const Value* table = promptTable(); table && !promptName.empty()) {
        const Value* strings = table->find("strings");
        // System Settings has no lock and switches instead of boxes: from
        // macOS 13 a prompt's text comes from "systemSettingsStrings" where
        // that table names one, and from "strings" otherwise.
        const Value* systemSettingsStrings = runsSystemSettings() ? table->find("systemSettingsStrings") : nullptr;
        const Value* key = systemSettingsStrings ? systemSettingsStrings->find(promptName) : nullptr;
        if (!key && strings) key = strings->find(promptName);
        if (key) localizationKey = key->string();
    }
    std::string text = localizationKey ? platform.bundles().frameworkBundle()->localizedString(*localizationKey, "", std::nullopt) : std::string();
    auto current = platform.workspace().currentApplication();
    replaceAll(text, "%@", current ? current->localizedName() : std::string());
    return text;
}

bool Vantro::takesEffectOnlyAfterRelaunch(std::string_view identifier) {
    // Reported by several projects on 13 to 26: the running process keeps
    // its old Screen Recording answer until it relaunches.
    return identifier == "Privacy_ScreenCapture";
}

bool Vantro::needsRelaunchForPanelIdentifier(std::string_view identifier) const { return needsRelaunch_.count(identifier) > 0; }

void Vantro::relaunchHost() { HostProcess::current().platform().workspace().relaunchCurrentApplication(); }

std::optional<std::string> Vantro::securityPaneTitle() {
    auto& platform = HostProcess::current().platform();
    auto pane = platform.bundles().bundleWithPath(SecurityPanePath);
    if (!pane) return std::nullopt;
    // The user's languages come from the global domain on purpose, not from
    // the host's own localizations: the pane speaks the user's language.
    std::vector<std::string> languages;
    if (auto global = platform.defaults().persistentDomainForName(NSGlobalDomain)) {
        auto it = global->find("AppleLanguages");
        if (it != global->end() && it->second.array())
            for (const auto& language : *it->second.array())
                if (auto s = language.string()) languages.push_back(*s);
    }
    auto preferred = platform.bundles().preferredLocalizations(pane->localizations(), languages);
    if (preferred.empty()) return std::nullopt;
    auto path = pane->pathForResource("InfoPlist", "strings", preferred.front());
    if (!path) return std::nullopt;
    auto strings = platform.bundles().propertyListWithContentsOfFile(*path);
    if (!strings) return std::nullopt;
    const Value* name = strings->find("CFBundleName");
    return name ? name->string() : std::nullopt;
}

void Vantro::activatePanel() {
    callURL();
    applicationChanged(nullptr);
}

void Vantro::callURL() {
    if (!openPrivacyPreferencesWithAnchor(panelIdentifier_)) stop();
}

void Vantro::stop() {
    removeMonitor();
    HostProcess::current().platform().workspace().removeActivationObserver(this);
    orderOutOverlay();
    if (sessionRunning_) {
        sessionRunning_ = false;
        didChangeValueForKey("isSessionRunning");
    }
}

void Vantro::orderOutOverlay() {
    if (windowController_ && windowController_->window()) windowController_->window()->orderOut();
}

void Vantro::setWindowController(std::shared_ptr<VantroWindowController> windowController) {
    // What key-value observing does for the dependent key "isOverlayShown":
    // the observation of the old controller's window ends, the new one's
    // begins, and observers hear that the value may have changed.
    if (windowController_ && windowController_->window())
        windowController_->window()->removeObserver(*this, "visible", GuideOverlayVisibleContext);
    windowController_ = std::move(windowController);
    if (windowController_ && windowController_->window())
        windowController_->window()->addObserver(*this, "visible", ObservingOptionNone, GuideOverlayVisibleContext);
    didChangeValueForKey("isOverlayShown");
}

bool Vantro::isOverlayShown() const {
    return windowController_ && windowController_->window() && windowController_->window()->isVisible();
}

std::vector<std::string> Vantro::keyPathsForValuesAffectingIsOverlayShown() { return {"windowController.window.visible"}; }

void Vantro::observeValueForKeyPath(std::string_view, Observable&, ObservationContext context) {
    if (context == ApplicationIsHiddenContext) {
        auto current = HostProcess::current().platform().workspace().currentApplication();
        if (current && current->isHidden() && isOverlayShown()) orderOutOverlay();
    } else if (context == GuideOverlayVisibleContext) {
        didChangeValueForKey("isOverlayShown");
    }
}

}  // namespace vantro
