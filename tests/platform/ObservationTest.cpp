#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Platform/Observation.h"
#include "Simulator/SimulatedMac.h"

namespace vantro {
namespace {

struct Recorder : Observer {
    std::vector<std::pair<std::string, ObservationContext>> calls;
    std::function<void()> onCall;
    void observeValueForKeyPath(std::string_view keyPath, Observable&, ObservationContext context) override {
        calls.emplace_back(std::string(keyPath), context);
        if (onCall) onCall();
    }
};

struct Thing : Observable {};

const char contextA[] = "status";
const char contextB[] = "status";  // equal text, another address

TEST(Observation, InitialOptionDeliversAtOnceAndContextsKeepTheirIdentity) {
    Thing thing;
    Recorder recorder;
    thing.addObserver(recorder, "status", ObservingOptionInitial, contextA);
    ASSERT_EQ(recorder.calls.size(), 1u);
    thing.addObserver(recorder, "status", ObservingOptionNone, contextB);
    EXPECT_EQ(recorder.calls.size(), 1u);
    thing.didChangeValueForKey("status");
    ASSERT_EQ(recorder.calls.size(), 3u);
    EXPECT_EQ(recorder.calls[1].second, static_cast<ObservationContext>(contextA));
    EXPECT_EQ(recorder.calls[2].second, static_cast<ObservationContext>(contextB));
    EXPECT_NE(recorder.calls[1].second, recorder.calls[2].second);
    thing.didChangeValueForKey("label");
    EXPECT_EQ(recorder.calls.size(), 3u);
}

TEST(Observation, DuplicateRegistrationsDeliverTwiceAndRemoveOneAtATime) {
    Thing thing;
    Recorder recorder;
    thing.addObserver(recorder, "status", ObservingOptionNone, contextA);
    thing.addObserver(recorder, "status", ObservingOptionNone, contextA);
    thing.didChangeValueForKey("status");
    EXPECT_EQ(recorder.calls.size(), 2u);
    EXPECT_TRUE(thing.removeObserver(recorder, "status", contextA));
    thing.didChangeValueForKey("status");
    EXPECT_EQ(recorder.calls.size(), 3u);
    EXPECT_TRUE(thing.removeObserver(recorder, "status", contextA));
    EXPECT_EQ(thing.observationCount(), 0u);
}

TEST(Observation, RemovingAnUnknownRegistrationIsReportedAsThePlatformsObjection) {
    sim::SimulatedMac mac;
    Thing thing;
    Recorder recorder;
    thing.addObserver(recorder, "status", ObservingOptionNone, contextA);
    EXPECT_FALSE(thing.removeObserver(recorder, "status", contextB));  // same text, other context
    EXPECT_FALSE(thing.removeObserver(recorder, "label", contextA));
    EXPECT_EQ(mac.log().objections().size(), 2u);
    EXPECT_NE(mac.log().objections()[0].find("not registered as an observer"), std::string::npos);
    EXPECT_EQ(thing.observationCount(), 1u);
}

TEST(Observation, AnObserverRemovedDuringANotificationHearsNoMore) {
    Thing thing;
    Recorder first, second;
    first.onCall = [&] { thing.removeObserver(second, "status", contextA); };
    thing.addObserver(first, "status", ObservingOptionNone, contextA);
    thing.addObserver(second, "status", ObservingOptionNone, contextA);
    thing.didChangeValueForKey("status");
    EXPECT_EQ(first.calls.size(), 1u);
    EXPECT_TRUE(second.calls.empty());
}

}  // namespace
}  // namespace vantro
