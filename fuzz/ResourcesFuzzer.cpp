// The framework's resources of any shape: one of the real resource files
// (the request types, the prompts, a layout, a strings table of any
// language) is replaced by the fuzzer's bytes, and a simulated Mac with those
// resources shows the permission list, answers statuses and guides the user
// to Full Disk Access. Whatever the file holds, the framework answers and
// does not crash.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "FuzzInput.h"
#include "PermissionList/VantroViewController.h"
#include "Simulator/SimPermissionList.h"
#include "StatusCenter/VantroRequestStatusCenter.h"

using namespace vantro;
namespace fs = std::filesystem;

namespace {

struct Resources {
    fs::path folder;
    // The files of the real resources, relative to the folder, in a fixed
    // order: the first byte of an input picks one.
    std::vector<fs::path> files;
};

Resources& resources() {
    static Resources* made = [] {
        auto* r = new Resources;
        std::string pattern = (fs::temp_directory_path() / "vantro-fuzz-resources-XXXXXX").string();
        if (!mkdtemp(pattern.data())) std::abort();
        r->folder = pattern;
        fs::copy(VANTRO_RESOURCES_DIR, r->folder, fs::copy_options::recursive);
        for (const auto& entry : fs::recursive_directory_iterator(r->folder))
            if (entry.is_regular_file()) r->files.push_back(fs::relative(entry.path(), r->folder));
        std::sort(r->files.begin(), r->files.end());
        std::atexit([] { fs::remove_all(resources().folder); });
        return r;
    }();
    return *made;
}

void write(const fs::path& path, std::string_view bytes) {
    std::ofstream(path, std::ios::binary | std::ios::trunc).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

std::string read(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

}  // namespace

// Seeds: each real resource file as it is, on the releases in turn.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
    fuzz::writeSeedsWhenAsked([](auto write) {
        auto& r = resources();
        for (std::size_t index = 0; index < r.files.size(); ++index)
            write(std::string(1, static_cast<char>(index)) +
                  fuzz::configurationBytes(index % std::size(fuzz::FuzzedReleases)) + read(r.folder / r.files[index]));
    });
    resources();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    auto& r = resources();
    fuzz::FuzzInput input(data, size);
    const fs::path file = r.folder / r.files[input.choose(r.files.size())];
    auto configuration = fuzz::fuzzedConfiguration(input);
    configuration.resourcesDirectory = r.folder.string();
    const std::string original = read(file);
    write(file, input.rest());
    {
        sim::SimulatedMac mac(configuration);
        auto controller = VantroViewController::create();
        {
            sim::SimPermissionList list(mac, controller);
            list.show();
            mac.runFor(2);
            (void)sim::SimPermissionList::describe(list.rows());
        }
        auto center = VantroRequestStatusCenter::sharedRequestStatusCenter();
        for (auto identifier : {VantroPrivacyFullDiskAccess, VantroPrivacyContacts, VantroPrivacyDesktopFolder})
            (void)center->authorizationRequestTypeForIdentifier(identifier);
        fuzz::guideSession(mac, VantroPrivacyFullDiskAccess, 3);
        mac.runUntilIdle(30);
    }
    write(file, original);
    return 0;
}
