#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <string>
#include <string_view>

#include "Guide/Vantro.h"
#include "Simulator/SimDiagnostics.h"
#include "Simulator/SimulatedMac.h"

namespace vantro::fuzz {

// The fuzzer's bytes, taken from the front: a few small choices first, the
// rest as text.
class FuzzInput {
public:
    FuzzInput(const std::uint8_t* data, std::size_t size) : bytes_(reinterpret_cast<const char*>(data), size) {}

    // One of `count` choices; 0 once the bytes run out.
    std::size_t choose(std::size_t count) {
        if (bytes_.empty() || count == 0) return 0;
        auto byte = static_cast<unsigned char>(bytes_.front());
        bytes_.remove_prefix(1);
        return byte % count;
    }
    bool flag() { return choose(2) == 1; }
    std::string_view rest() const { return bytes_; }

private:
    std::string_view bytes_;
};

// The releases a fuzzed Mac runs: the oldest, the last with the lock and
// System Preferences, the first with System Settings, the first with full
// event-store access, and today's.
inline const char* const FuzzedReleases[] = {"10.13", "10.15", "12", "13", "14", "26"};

inline sim::MacConfiguration fuzzedConfiguration(FuzzInput& input) {
    sim::MacConfiguration configuration;
    configuration.release = FuzzedReleases[input.choose(std::size(FuzzedReleases))];
    configuration.sandboxed = input.flag();
    static const char* const languages[] = {"en", "de", "fr", "ja"};
    configuration.languages = {languages[input.choose(std::size(languages))]};
    return configuration;
}

// The bytes that make fuzzedConfiguration choose the release at `index` of
// FuzzedReleases, outside any sandbox, in English.
inline std::string configurationBytes(std::size_t index) { return {static_cast<char>(index), '\0', '\0'}; }

// With VANTRO_FUZZ_WRITE_SEEDS set to a folder, a target that builds its
// seeds from a running simulated Mac writes them there (seed-0, seed-1, …)
// and the program ends; fuzz/run does this before fuzzing.
template <typename WriteSeeds>
void writeSeedsWhenAsked(WriteSeeds writeSeeds) {
    const char* folder = std::getenv("VANTRO_FUZZ_WRITE_SEEDS");
    if (!folder) return;
    int count = 0;
    writeSeeds([&](std::string_view bytes) {
        std::ofstream(std::string(folder) + "/seed-" + std::to_string(count++), std::ios::binary)
            .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    });
    std::exit(0);
}

// The one assertion the framework is meant to make on outside data: a pane
// anchor that makes no URL. Any other is a finding, and aborts.
inline void expectOnlyTheURLAssertion(const sim::AssertionFailure& failure) {
    if (failure.method != "openPrivacyPreferencesWithAnchor:") __builtin_trap();
}

// A guide session for `identifier`, run for `seconds` and stopped. The one
// assertion the guide may make ends it early.
inline void guideSession(sim::SimulatedMac& mac, std::string_view identifier, double seconds) {
    try {
        auto guide = Vantro::sharedKit();
        guide->askAccessForPanelIdentifier(identifier);
        mac.runFor(seconds);
        guide->stop();
    } catch (const sim::AssertionFailure& failure) {
        expectOnlyTheURLAssertion(failure);
    }
}

}  // namespace vantro::fuzz
