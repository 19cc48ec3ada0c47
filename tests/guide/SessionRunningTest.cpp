#include <gtest/gtest.h>

#include <string>

#include "support/GuideFixture.h"

namespace vantro::test {
namespace {

// Writes down "isSessionRunning" as each announcement finds it.
struct SessionObserver : Observer {
    std::string heard;
    void observeValueForKeyPath(std::string_view, Observable& object, ObservationContext) override {
        heard += static_cast<Vantro&>(object).isSessionRunning() ? "R" : "s";
    }
};

class SessionRunning : public GuideFixture {};

TEST_F(SessionRunning, IsAnnouncedAtEachStartAndAtTheStopThatEndsASession) {
    // What the host does, and what an observer has heard after it.
    struct Step {
        const char* action;
        const char* heard;
    };
    const Step steps[] = {
        {"stop", ""},          // no session: nothing to announce
        {"start", "R"},        {"start", "RR"},  // a second start is announced too
        {"stop", "RRs"},       {"stop", "RRs"},
        {"start", "RRsR"},     {"host", "RRsRs"},  // the host's return after System Preferences ends it
    };
    SessionObserver observer;
    static constexpr char context[] = "SessionRunningTest";
    guide->addObserver(observer, "isSessionRunning", ObservingOptionNone, context);
    for (const auto& step : steps) {
        SCOPED_TRACE(step.action);
        const std::string action = step.action;
        if (action == "start") startGuiding();
        if (action == "stop") guide->stop();
        if (action == "host") {
            mac.workspace().activate(mac.workspace().host());
            mac.runFor(0.5);
        }
        EXPECT_EQ(observer.heard, step.heard);
        EXPECT_EQ(guide->isSessionRunning(), !observer.heard.empty() && observer.heard.back() == 'R');
    }
    guide->removeObserver(observer, "isSessionRunning", context);
}

}  // namespace
}  // namespace vantro::test
