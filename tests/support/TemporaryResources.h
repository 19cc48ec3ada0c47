#pragma once

#include <filesystem>
#include <fstream>
#include <string>

#include "Simulator/SimulatedMac.h"

namespace vantro::test {

// A copy of the framework's resources in a folder of the test's own, so a
// test can change or remove a resource file.
class TemporaryResources {
public:
    TemporaryResources() {
        std::string pattern = (std::filesystem::temp_directory_path() / "vantro-resources-XXXXXX").string();
        path_ = mkdtemp(pattern.data()) ? pattern : std::string();
        std::filesystem::copy(VANTRO_TEST_RESOURCES_DIR, path_, std::filesystem::copy_options::recursive);
    }
    ~TemporaryResources() {
        std::error_code ec;
        std::filesystem::remove_all(path_, ec);
    }
    const std::string& path() const { return path_; }
    void write(const std::string& relativePath, const std::string& contents) const {
        std::filesystem::create_directories(std::filesystem::path(path_ + "/" + relativePath).parent_path());
        std::ofstream(path_ + "/" + relativePath) << contents;
    }
    void remove(const std::string& relativePath) const { std::filesystem::remove(path_ + "/" + relativePath); }

    sim::MacConfiguration configuration(sim::MacConfiguration base = {}) const {
        base.resourcesDirectory = path_;
        return base;
    }

private:
    std::string path_;
};

// A configuration at an exact AppKit version number.
inline sim::MacConfiguration atAppKit(double version, std::string release = "10.15") {
    sim::MacConfiguration configuration;
    configuration.release = std::move(release);
    configuration.appKitVersion = version;
    return configuration;
}

// An XML property list holding `body` as its top-level dictionary's contents.
inline std::string plistDictionary(const std::string& body) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>" + body + "</dict></plist>\n";
}

}  // namespace vantro::test
