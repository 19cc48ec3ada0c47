#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "Guide/Vantro.h"
#include "Overlay/VantroWindowController.h"
#include "Simulator/SimulatedMac.h"

namespace vantro::test {

// A delegate that answers both messages and writes down what it was told.
struct RecordingDelegate : VantroDelegate {
    std::vector<std::string> calls;
    bool respondsToVantroWillOpenPanel() const override { return true; }
    void vantroWillOpenPanel(std::string_view panel) override { calls.push_back("will " + std::string(panel)); }
    bool respondsToVantroDidOpenPanel() const override { return true; }
    void vantroDidOpenPanel(std::string_view panel) override { calls.push_back("did " + std::string(panel)); }
    long count(std::string_view prefix) const {
        long n = 0;
        for (const auto& c : calls) n += c.rfind(prefix, 0) == 0;
        return n;
    }
};

// A simulated Mac with the guide's shared instance and a recording delegate.
class GuideFixture : public ::testing::Test {
protected:
    explicit GuideFixture(sim::MacConfiguration configuration = {}) : mac(std::move(configuration)) {
        guide = Vantro::sharedKit();
        delegate = std::make_shared<RecordingDelegate>();
        guide->setDelegate(delegate);
    }

    // Starts a session for Full Disk Access and runs until System Preferences
    // has come forward and the overlay lies over it.
    void startGuiding(PrivacyCategoryIdentifier identifier = VantroPrivacyFullDiskAccess) {
        guide->askAccessForPanelIdentifier(identifier);
        mac.runFor(1.5);
    }
    bool sessionRegistered() { return mac.workspace().activationObserverCount() > 0; }
    sim::SimApplicationPtr systemPreferencesApp() { return mac.workspace().application(SystemPreferencesBundleIdentifier); }
    sim::SimApplicationPtr otherApp() {
        mac.workspace().install({"com.example.Other", "Other", "file:///Applications/Other.app/", 0.3});
        return mac.workspace().start("com.example.Other");
    }
    OverlayWindow* overlay() { return guide->windowController() ? guide->windowController()->window() : nullptr; }
    // The overlay's frame over a settings window at (x, y) from the top of the
    // 900-point main screen: the window and the strip of 110 below it.
    static Rect overWindowAt(double x, double y, double width = 668, double height = 580) {
        return {{x, 900 - (y + height + 110)}, {width, height + 110}};
    }
    // System Preferences' windows are listed under `title` from now on.
    void titlePreferencesWindows(std::string title) {
        const long pid = mac.systemPreferences().processIdentifier();
        mac.windows().setDescriptionFilter([pid, title](std::vector<Value>& list) {
            for (auto& w : list)
                if (w.find("kCGWindowOwnerPID")->integerValue() == pid) w.dictionary()->insert_or_assign("kCGWindowName", Value(title));
        });
    }

    sim::SimulatedMac mac;
    std::shared_ptr<Vantro> guide;
    std::shared_ptr<RecordingDelegate> delegate;
};

}  // namespace vantro::test
