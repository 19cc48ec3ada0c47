#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "CInterface/CallGuard.h"
#include "Simulator/SimulatedMac.h"
#include "Vocabulary/VantroVersion.h"
#include "vantro.h"
#include "vantro_simulator.h"

namespace vantro::test {
namespace {

struct SimulatedMacHandle {
    explicit SimulatedMacHandle(const char* release = "15", const char* language = nullptr)
        : mac(vantro_sim_create(release, language, VANTRO_TEST_RESOURCES_DIR)) {}
    ~SimulatedMacHandle() { vantro_sim_destroy(mac); }
    vantro_simulated_mac* mac;
};

TEST(CInterface, BadInputIsAnsweredNeverObeyed) {
    SimulatedMacHandle handle;
    ASSERT_NE(handle.mac, nullptr);
    struct Case {
        const char* identifier;
        int status, requestType;
    };
    const Case cases[] = {
        {nullptr, VANTRO_ERROR_NULL_ARGUMENT, VANTRO_ERROR_NULL_ARGUMENT},
        {"Privacy_\xC3", VANTRO_ERROR_INVALID_UTF8, VANTRO_ERROR_INVALID_UTF8},
        {"Privacy_Bogus", VANTRO_ERROR_UNKNOWN_IDENTIFIER, VANTRO_ERROR_UNKNOWN_IDENTIFIER},
        {"", VANTRO_ERROR_UNKNOWN_IDENTIFIER, VANTRO_ERROR_UNKNOWN_IDENTIFIER},
        // A newer category is unknown until the host turns them on.
        {"Privacy_Camera", VANTRO_ERROR_UNKNOWN_IDENTIFIER, VANTRO_ERROR_UNKNOWN_IDENTIFIER},
        // A category the status center has no status for still has a type.
        {"Privacy_Automation", VANTRO_ERROR_UNKNOWN_IDENTIFIER, VANTRO_REQUEST_TYPE_CHECK},
        {"Privacy_AllFiles", VANTRO_STATUS_DENIED, VANTRO_REQUEST_TYPE_GRANT},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.identifier ? c.identifier : "NULL");
        EXPECT_EQ(vantro_status(c.identifier), c.status);
        EXPECT_EQ(vantro_request_type(c.identifier), c.requestType);
        EXPECT_EQ(vantro_request(c.identifier, 1), c.status < 0 ? c.status : VANTRO_OK);
        const bool labelled = c.requestType >= 0;
        char* label = vantro_copy_label(c.identifier);
        EXPECT_EQ(label != nullptr, labelled);
        vantro_free_string(label);
        const char* list[] = {c.identifier};
        EXPECT_EQ(vantro_watch(list, 1), c.status < 0 ? c.status : VANTRO_OK);
    }
    const char* mixed[] = {"Privacy_AllFiles", nullptr};
    EXPECT_EQ(vantro_watch(mixed, 2), VANTRO_ERROR_NULL_ARGUMENT);
    EXPECT_EQ(vantro_watch(nullptr, 1), VANTRO_ERROR_NULL_ARGUMENT);
    EXPECT_EQ(vantro_watch(nullptr, -1), VANTRO_ERROR_OUT_OF_RANGE);
    EXPECT_EQ(vantro_watch(nullptr, 0), VANTRO_OK);
    EXPECT_EQ(vantro_add_status_callback(nullptr, nullptr), VANTRO_ERROR_NULL_ARGUMENT);
    EXPECT_EQ(vantro_guide("Privacy_Bogus", nullptr), VANTRO_ERROR_UNKNOWN_IDENTIFIER);
    EXPECT_EQ(vantro_guide("Privacy_AllFiles", "\xE0\x80\xAF"), VANTRO_ERROR_INVALID_UTF8);
    EXPECT_EQ(vantro_is_overlay_shown(), 0);
    EXPECT_EQ(vantro_category_identifier(-1), nullptr);
    EXPECT_EQ(vantro_category_identifier(vantro_category_count()), nullptr);
    EXPECT_NE(vantro_category_identifier(vantro_category_count() - 1), nullptr);
    EXPECT_EQ(vantro_sim_set_status(handle.mac, "Privacy_AllFiles", 7), VANTRO_ERROR_UNKNOWN_IDENTIFIER);
    EXPECT_EQ(vantro_sim_run_for(handle.mac, -1), VANTRO_ERROR_OUT_OF_RANGE);
    EXPECT_EQ(vantro_sim_drag_icon_into_list(handle.mac), VANTRO_ERROR_OUT_OF_RANGE);
}

TEST(CInterface, NothingRunsBeforeSetUpAfterTearDownOrOffTheMainThread) {
    auto refusals = [] {
        const char* list[] = {"Privacy_AllFiles"};
        char* label = vantro_copy_label("Privacy_AllFiles");
        std::vector<int> answers = {vantro_status("Privacy_AllFiles"), vantro_request_type("Privacy_AllFiles"),
                                    vantro_request("Privacy_AllFiles", 1), vantro_category_count(),
                                    vantro_guide(nullptr, nullptr), vantro_stop_guide(), vantro_is_overlay_shown(),
                                    vantro_set_newer_categories(1), vantro_newer_categories(), vantro_watch(list, 1),
                                    vantro_remove_status_callback(1), label == nullptr ? 0 : 1,
                                    vantro_category_identifier(0) == nullptr ? 0 : 1};
        vantro_free_string(label);
        return answers;
    };
    const int n = VANTRO_ERROR_NOT_SET_UP, w = VANTRO_ERROR_WRONG_THREAD;
    EXPECT_EQ(refusals(), (std::vector<int>{n, n, n, n, n, n, n, n, n, n, n, 0, 0}));
    {
        SimulatedMacHandle handle;
        std::vector<int> elsewhere;
        std::thread([&] { elsewhere = refusals(); }).join();
        EXPECT_EQ(elsewhere, (std::vector<int>{w, w, w, w, w, w, w, w, w, w, w, 0, 0}));
        EXPECT_EQ(vantro_newer_categories(), 0) << "nothing was turned on from the other thread";
    }
    EXPECT_EQ(refusals(), (std::vector<int>{n, n, n, n, n, n, n, n, n, n, n, 0, 0}));
    EXPECT_EQ(vantro_version(), kVersionMajor * 10000 + kVersionMinor * 100 + kVersionPatch);
    EXPECT_STREQ(vantro_version_string(), kVersionString);
    EXPECT_EQ(vantro_sim_create("9.9", nullptr, nullptr), nullptr);
    EXPECT_EQ(vantro_sim_create("15", "fr\xFF", nullptr), nullptr);
}

TEST(CInterface, TheCategoryListAndLabelsFollowTheReleaseTheSwitchAndTheLanguage) {
    struct Case {
        const char* release;
        const char* language;
        bool newer;
        int count;
        const char* last;
        const char* firstLabel;
    };
    const Case cases[] = {
        {"10.13", "en", false, 3, "Privacy_Reminders", "Contacts"},
        {"10.14", "en", false, 10, "Privacy_Accessibility", "Full Disk Access"},
        {"10.14", "en", true, 12, "Privacy_Microphone", "Full Disk Access"},
        {"15", "fr", false, 15, "Privacy_RemovableVolume", "Accès complet au disque"},
        {"15", "de-AT", true, 20, "Privacy_Bluetooth", "Festplattenvollzugriff"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.release) + " " + c.language);
        SimulatedMacHandle handle(c.release, c.language);
        EXPECT_EQ(vantro_set_newer_categories(c.newer), VANTRO_OK);
        ASSERT_EQ(vantro_category_count(), c.count);
        EXPECT_STREQ(vantro_category_identifier(c.count - 1), c.last);
        char* label = vantro_copy_label(vantro_category_identifier(0));
        EXPECT_STREQ(label, c.firstLabel);
        vantro_free_string(label);
    }
}

struct Heard {
    std::vector<std::string> changes;
    int removeAfter = 0;
    int token = 0;
};

void record(const char* identifier, int oldStatus, int newStatus, void* userData) {
    auto* heard = static_cast<Heard*>(userData);
    heard->changes.push_back(std::string(identifier) + " " + std::to_string(oldStatus) + "->" + std::to_string(newStatus));
    if (heard->removeAfter && static_cast<int>(heard->changes.size()) == heard->removeAfter)
        vantro_remove_status_callback(heard->token);
}

TEST(CInterface, CallbacksHearEachChangeWithTheirOwnDataUntilRemoved) {
    SimulatedMacHandle handle;
    Heard first, second;
    first.token = vantro_add_status_callback(record, &first);
    second.token = vantro_add_status_callback(record, &second);
    second.removeAfter = 1;
    ASSERT_GT(first.token, 0);
    ASSERT_GT(second.token, first.token);
    const char* list[] = {"Privacy_Calendars", "Privacy_Contacts"};
    ASSERT_EQ(vantro_watch(list, 2), VANTRO_OK);
    vantro_sim_leave_host(handle.mac);
    vantro_sim_run_for(handle.mac, 1);
    vantro_sim_set_status(handle.mac, "Privacy_Calendars", VANTRO_STATUS_AUTHORIZED);
    vantro_sim_set_status(handle.mac, "Privacy_Contacts", VANTRO_STATUS_DENIED);
    vantro_sim_return_to_host(handle.mac);
    vantro_sim_run_for(handle.mac, 1);
    EXPECT_EQ(first.changes, (std::vector<std::string>{"Privacy_Calendars 0->2", "Privacy_Contacts 0->1"}));
    // Removed from within its first call: the reading under way still tells it
    // the second change, no later reading does.
    EXPECT_EQ(second.changes, (std::vector<std::string>{"Privacy_Calendars 0->2", "Privacy_Contacts 0->1"}));
    vantro_sim_leave_host(handle.mac);
    vantro_sim_set_status(handle.mac, "Privacy_Calendars", VANTRO_STATUS_DENIED);
    vantro_sim_return_to_host(handle.mac);
    vantro_sim_run_for(handle.mac, 1);
    EXPECT_EQ(first.changes.size(), 3u);
    EXPECT_EQ(second.changes.size(), 2u);
}

TEST(CInterface, Utf8IsCheckedByTheRules) {
    struct Case {
        const char* text;
        bool valid;
    };
    const Case cases[] = {
        {"", true},           {"Privacy_AllFiles", true}, {"Accès", true},        {"\xE5\xA4\x89", true},
        {"\xF0\x9F\x98\x80", true},                        {"\xF4\x8F\xBF\xBF", true},  // U+10FFFF
        {"\x80", false},      {"\xC3", false},            {"\xC0\xAF", false},    {"\xC1\xBF", false},
        {"\xE0\x9F\xBF", false},                           {"\xED\xA0\x80", false},     // a surrogate
        {"\xF4\x90\x80\x80", false},                       {"\xF5\x80\x80\x80", false}, {"\xE5\xA4", false},
        {"a\xE5\xA4z", false},
    };
    for (const auto& c : cases) EXPECT_EQ(c::isValidUtf8(c.text), c.valid) << testing::PrintToString(std::string(c.text));
}

}  // namespace
}  // namespace vantro::test
