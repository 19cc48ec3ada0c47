// Window descriptions of any shape during a guide session: the window
// server's list is replaced by, or extended with, a property list read from
// the fuzzer's bytes (an array stands for the list, anything else for one
// description), while the guide places its overlay over the privacy pane,
// the user switches applications and comes back, and the session ends.
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "FuzzInput.h"
#include "Guide/Vantro.h"
#include "Simulator/PropertyListFile.h"

using namespace vantro;

// Seeds: the window server's real list during a guide session on each
// release, as an XML property list, to replace the list and to add to it.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
    fuzz::writeSeedsWhenAsked([](auto write) {
        for (std::size_t release = 0; release < std::size(fuzz::FuzzedReleases); ++release) {
            sim::MacConfiguration configuration;
            configuration.release = fuzz::FuzzedReleases[release];
            sim::SimulatedMac mac(configuration);
            Vantro::sharedKit()->askAccessForPanelIdentifier(VantroPrivacyFullDiskAccess);
            mac.runFor(1.5);
            auto descriptions = mac.windows().windowListDescriptions(kCGWindowListOptionOnScreenOnly);
            if (!descriptions) continue;
            std::string path = mac.rootDirectory() + "/descriptions.plist";
            if (!sim::PropertyListFile::writeXML(path, Value(*descriptions))) continue;
            std::ifstream in(path, std::ios::binary);
            std::string list{std::istreambuf_iterator<char>(in), {}};
            for (char replace : {'\1', '\0'}) write(fuzz::configurationBytes(release) + replace + list);
            Vantro::sharedKit()->stop();
        }
    });
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::FuzzInput input(data, size);
    auto configuration = fuzz::fuzzedConfiguration(input);
    bool replace = input.flag();
    auto value = sim::PropertyListFile::parse(input.rest());
    if (!value) return -1;
    std::vector<Value> fuzzed;
    if (auto* array = value->array()) fuzzed = *array;
    else fuzzed.push_back(*value);

    sim::SimulatedMac mac(configuration);
    mac.windows().setDescriptionFilter([&](std::vector<Value>& descriptions) {
        if (replace) descriptions.clear();
        descriptions.insert(descriptions.end(), fuzzed.begin(), fuzzed.end());
    });
    try {
        auto guide = Vantro::sharedKit();
        guide->askAccessForPanelIdentifier(VantroPrivacyFullDiskAccess);
        mac.runFor(1.5);
        mac.workspace().activate(mac.workspace().host());
        mac.runFor(0.5);
        mac.workspace().activate(SystemPreferencesBundleIdentifier);
        mac.runFor(1.5);
        guide->stop();
    } catch (const sim::AssertionFailure& failure) {
        fuzz::expectOnlyTheURLAssertion(failure);
    }
    mac.runUntilIdle(30);
    return 0;
}
