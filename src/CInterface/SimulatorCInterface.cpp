// vantro_simulator.h over the simulated Mac: what a test of a host needs to
// make a Mac and play its user, through C.

#include <cmath>
#include <memory>
#include <string>

#include "CInterface/CallGuard.h"
#include "Guide/Vantro.h"
#include "Overlay/VantroWindowController.h"
#include "Simulator/SimOverlay.h"
#include "Simulator/SimulatedMac.h"
#include "vantro_simulator.h"

struct vantro_simulated_mac {
    std::unique_ptr<vantro::sim::SimulatedMac> mac;
    vantro::sim::SimApplicationPtr elsewhere;
};

using namespace vantro;
using namespace vantro::c;

extern "C" {

vantro_simulated_mac* vantro_sim_create(const char* release, const char* language, const char* resources) {
    try {
        for (const char* text : {release, language, resources})
            if (text && !isValidUtf8(text)) return nullptr;
        sim::MacConfiguration configuration;
        if (release) {
            if (!sim::MacRelease::named(release)) return nullptr;
            configuration.release = release;
        }
        if (language && *language) configuration.languages = {language};
        if (resources && *resources) configuration.resourcesDirectory = resources;
        auto made = std::make_unique<vantro_simulated_mac>();
        made->mac = std::make_unique<sim::SimulatedMac>(std::move(configuration));
        return made.release();
    } catch (...) {
        return nullptr;
    }
}

void vantro_sim_destroy(vantro_simulated_mac* mac) {
    try {
        delete mac;
    } catch (...) {
    }
}

int vantro_sim_run_for(vantro_simulated_mac* mac, double seconds) {
    return guarded([&] {
        if (!mac) return static_cast<int>(VANTRO_ERROR_NULL_ARGUMENT);
        if (!std::isfinite(seconds) || seconds < 0) return static_cast<int>(VANTRO_ERROR_OUT_OF_RANGE);
        mac->mac->runFor(seconds);
        return static_cast<int>(VANTRO_OK);
    });
}

double vantro_sim_now(const vantro_simulated_mac* mac) { return mac ? mac->mac->now() : -1.0; }

int vantro_sim_set_status(vantro_simulated_mac* mac, const char* identifier, int status) {
    return guarded([&] {
        if (!mac) return static_cast<int>(VANTRO_ERROR_NULL_ARGUMENT);
        if (int error = checkString(identifier)) return error;
        sim::Consent consent;
        switch (status) {
        case VANTRO_STATUS_NOT_DETERMINED: consent = sim::Consent::NotDetermined; break;
        case VANTRO_STATUS_DENIED: consent = sim::Consent::Denied; break;
        case VANTRO_STATUS_AUTHORIZED: consent = sim::Consent::Authorized; break;
        default: return static_cast<int>(VANTRO_ERROR_UNKNOWN_IDENTIFIER);
        }
        mac->mac->record("user", std::string("sets ") + identifier + " in the settings");
        return mac->mac->privacy().setConsentForIdentifier(identifier, consent) ? static_cast<int>(VANTRO_OK)
                                                                               : static_cast<int>(VANTRO_ERROR_UNKNOWN_IDENTIFIER);
    });
}

int vantro_sim_answer_next_prompt(vantro_simulated_mac* mac, int allow) {
    return guarded([&] {
        if (!mac) return static_cast<int>(VANTRO_ERROR_NULL_ARGUMENT);
        mac->mac->privacy().answerNextPrompt(allow ? sim::PromptAnswer::allow() : sim::PromptAnswer::deny());
        return static_cast<int>(VANTRO_OK);
    });
}

int vantro_sim_leave_host(vantro_simulated_mac* mac) {
    return guarded([&] {
        if (!mac) return static_cast<int>(VANTRO_ERROR_NULL_ARGUMENT);
        auto& workspace = mac->mac->workspace();
        if (!mac->elsewhere) {
            workspace.install({"com.apple.finder", "Finder", "file:///System/Library/CoreServices/Finder.app/", 0.3});
            mac->elsewhere = workspace.start("com.apple.finder");
        }
        workspace.activate(mac->elsewhere);
        return static_cast<int>(VANTRO_OK);
    });
}

int vantro_sim_return_to_host(vantro_simulated_mac* mac) {
    return guarded([&] {
        if (!mac) return static_cast<int>(VANTRO_ERROR_NULL_ARGUMENT);
        mac->mac->workspace().activate(mac->mac->workspace().host());
        return static_cast<int>(VANTRO_OK);
    });
}

int vantro_sim_drag_icon_into_list(vantro_simulated_mac* mac) {
    return guarded([&] {
        if (!mac) return static_cast<int>(VANTRO_ERROR_NULL_ARGUMENT);
        auto guide = Vantro::sharedKit();
        if (!guide->isOverlayShown() || !guide->windowController()) return static_cast<int>(VANTRO_ERROR_OUT_OF_RANGE);
        auto& settings = mac->mac->systemPreferences();
        if (settings.hasLock() && settings.isLocked()) settings.userUnlocks();
        if (!sim::userDragsIcon(*mac->mac, *guide->windowController(), settings.listPoint()))
            return static_cast<int>(VANTRO_ERROR_OUT_OF_RANGE);
        // System Settings lists the host switched off; the user switches it on.
        if (!settings.hasLock() && !settings.userSwitchesOnHost()) return static_cast<int>(VANTRO_ERROR_OUT_OF_RANGE);
        return static_cast<int>(VANTRO_OK);
    });
}

}  // extern "C"
