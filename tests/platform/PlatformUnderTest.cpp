#include "platform/PlatformUnderTest.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace vantro::test {

namespace fs = std::filesystem;

PlatformUnderTest::~PlatformUnderTest() = default;

bool PlatformUnderTest::denyReadingByPermissions(const std::string& path) {
    std::error_code ec;
    fs::permissions(path, fs::perms::none, ec);
    // Permission bits do not stop the super-user.
    return !ec && geteuid() != 0;
}

std::string PlatformUnderTest::makeBundle(std::string_view name, const std::vector<BundleFile>& files) {
    fs::path bundle = fs::path(scratchDirectory()) / (std::string(name) + ".bundle");
    fs::path contents = bundle / "Contents";
    fs::create_directories(contents / "Resources");
    // Bundles are cached by identifier as well as by path: each made bundle
    // gets an identifier of its own.
    std::string identifier = "com.example.vantro.contract." + fs::path(scratchDirectory()).filename().string() + "." +
                             std::string(name);
    std::ofstream(contents / "Info.plist")
        << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" \"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
           "<plist version=\"1.0\"><dict>"
           "<key>CFBundleIdentifier</key><string>"
        << identifier
        << "</string>"
           "<key>CFBundleDevelopmentRegion</key><string>en</string>"
           "<key>CFBundlePackageType</key><string>BNDL</string>"
           "<key>CFBundleInfoDictionaryVersion</key><string>6.0</string>"
           "</dict></plist>\n";
    for (const auto& file : files) {
        fs::path path = contents / "Resources" / file.relativePath;
        fs::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << file.contents;
    }
    return bundle.string();
}

bool PlatformUnderTest::runMainLoopUntil(const std::function<bool()>& done, double limit, std::string_view mode,
                                         double step) {
    for (double ran = 0; !done(); ran += step) {
        if (ran >= limit) return false;
        runMainLoop(step, mode);
    }
    return true;
}

std::string PlatformUnderTest::makeScratchFolder(const std::string& parent) {
    fs::create_directories(parent);
    std::string pattern = (fs::path(parent) / "contract-XXXXXX").string();
    if (!mkdtemp(pattern.data())) return {};
    return pattern;
}

void PlatformUnderTest::removeScratchFolder(const std::string& path) {
    if (path.empty()) return;
    std::error_code ec;
    fs::permissions(path, fs::perms::owner_all, fs::perm_options::add, ec);
    for (fs::recursive_directory_iterator it(path, fs::directory_options::skip_permission_denied, ec), end;
         !ec && it != end; it.increment(ec)) {
        std::error_code ignored;
        if (!it->is_symlink(ignored)) fs::permissions(it->path(), fs::perms::owner_all, fs::perm_options::add, ignored);
    }
    fs::remove_all(path, ec);
}

}  // namespace vantro::test
