// A C host of any behaviour: a sequence of vantro.h and vantro_simulator.h
// calls chosen by the bytes, with strings of any bytes (NULL included), on a
// simulated Mac that may come and go between calls. Every answer stays
// within the values vantro.h documents for it.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "FuzzInput.h"
#include "vantro.h"
#include "vantro_simulator.h"

using namespace vantro;

namespace {

void expect(bool condition) {
    if (!condition) __builtin_trap();
}

// An error vantro.h names, or VANTRO_OK.
bool documented(int answer) { return answer <= VANTRO_OK && answer >= VANTRO_ERROR_INTERNAL; }

void heard(const char* identifier, int oldStatus, int newStatus, void* userData) {
    expect(identifier && *identifier);
    expect(oldStatus >= 0 && oldStatus <= 2 && newStatus >= 0 && newStatus <= 2 && oldStatus != newStatus);
    ++*static_cast<int*>(userData);
}

}  // namespace

// Seeds: a flow per known identifier (watch, request, guide, come back).
extern "C" int LLVMFuzzerInitialize(int*, char***) {
    fuzz::writeSeedsWhenAsked([](auto write) {
        for (auto identifier : VantroPrivacyAllIdentifiers)
            write(std::string("\x05\x0a\x02\x03\x04\x0b\x0c\x00", 8) + std::string(identifier) + '\0' + "Drag me");
        write(std::string("\x07\x00\x05\x01\x0d", 5) + "Privacy_Camera");
    });
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::FuzzInput input(data, size);
    std::vector<std::uint8_t> operations;
    for (int i = 0; i < 8; ++i) operations.push_back(static_cast<std::uint8_t>(input.choose(256)));
    // The strings: the rest, cut at each NUL; an empty piece stands for NULL.
    std::vector<std::string> pieces;
    std::string rest(input.rest());
    for (std::size_t start = 0;;) {
        auto end = rest.find('\0', start);
        pieces.push_back(rest.substr(start, end == std::string::npos ? std::string::npos : end - start));
        if (end == std::string::npos) break;
        start = end + 1;
    }
    std::size_t next = 0;
    auto text = [&]() -> const char* {
        const std::string& piece = pieces[next++ % pieces.size()];
        return piece.empty() ? nullptr : piece.c_str();
    };

    static const char* const releases[] = {"10.13", "10.15", "13", "15"};
    vantro_simulated_mac* mac = vantro_sim_create(releases[operations[0] % 4], "fr", VANTRO_RESOURCES_DIR);
    expect(mac != nullptr);
    int changes = 0;
    for (std::uint8_t operation : operations) {
        switch (operation % 16) {
        case 0: {
            int status = vantro_status(text());
            expect(documented(status) || status <= VANTRO_STATUS_AUTHORIZED);
            break;
        }
        case 1: {
            int type = vantro_request_type(text());
            expect(documented(type) || type <= VANTRO_REQUEST_TYPE_CHECK);
            break;
        }
        case 2: expect(documented(vantro_request(text(), operation & 0x10))); break;
        case 3: {
            char* label = vantro_copy_label(text());
            expect(!label || *label);
            vantro_free_string(label);
            break;
        }
        case 4: expect(documented(vantro_guide(text(), (operation & 0x10) ? text() : nullptr))); break;
        case 5: {
            const char* list[] = {text(), text()};
            expect(documented(vantro_watch(list, (operation >> 4) % 3)));
            break;
        }
        case 6: {
            int token = vantro_add_status_callback(heard, &changes);
            expect(token > 0 || documented(token));
            break;
        }
        case 7: expect(documented(vantro_set_newer_categories(operation & 0x10))); break;
        case 8: {
            int count = vantro_category_count();
            expect(count >= 0 || documented(count));
            for (int i = 0; i < count; ++i) expect(vantro_category_identifier(i) != nullptr);
            expect(vantro_category_identifier(count) == nullptr);
            break;
        }
        case 9: expect(documented(vantro_sim_set_status(mac, text(), (operation >> 4) % 4))); break;
        case 10: expect(documented(vantro_sim_leave_host(mac))); break;
        case 11: expect(documented(vantro_sim_drag_icon_into_list(mac))); break;
        case 12: expect(documented(vantro_sim_return_to_host(mac))); break;
        case 13: expect(documented(vantro_stop_guide())); break;
        case 14: expect(documented(vantro_remove_status_callback(operation >> 4))); break;
        case 15:
            // The Mac goes; calls now answer "not set up" until the next one.
            vantro_sim_destroy(mac);
            expect(vantro_status("Privacy_AllFiles") == VANTRO_ERROR_NOT_SET_UP);
            mac = vantro_sim_create(releases[operation % 4], nullptr, VANTRO_RESOURCES_DIR);
            expect(mac != nullptr);
            break;
        }
        expect(vantro_sim_run_for(mac, 1.5) == VANTRO_OK);
    }
    vantro_sim_run_for(mac, 10);
    vantro_sim_destroy(mac);
    return 0;
}
