#include "StatusCenter/DirectoryProbe.h"

#include "Platform/HostProcess.h"

namespace vantro {

namespace {
constexpr std::int64_t POSIXErrorEPERM = 1;
}

DirectoryProbeVerdict probeDirectories(const std::vector<std::string>& directories) {
    auto& fileSystem = HostProcess::current().platform().fileSystem();
    bool sawDirectory = false;
    for (const auto& directory : directories) {
        bool isDirectory = false;
        if (!fileSystem.fileExistsAtPath(directory, &isDirectory) || !isDirectory) continue;
        sawDirectory = true;
        PlatformError error;
        if (fileSystem.contentsOfDirectoryAtPath(directory, &error)) continue;
        if (isPrivacyRefusal(error)) return DirectoryProbeVerdict::Refused;
    }
    return sawDirectory ? DirectoryProbeVerdict::Readable : DirectoryProbeVerdict::NoDirectory;
}

bool isPrivacyRefusal(const PlatformError& error) {
    const auto& underlying = error.underlying;
    return underlying && underlying->domain == NSPOSIXErrorDomain && underlying->code == POSIXErrorEPERM;
}

std::vector<std::string> standardizedDirectories(const std::vector<std::string_view>& paths) {
    auto& fileSystem = HostProcess::current().platform().fileSystem();
    std::vector<std::string> directories;
    directories.reserve(paths.size());
    for (auto path : paths) directories.push_back(fileSystem.stringByStandardizingPath(fileSystem.stringByExpandingTildeInPath(path)));
    return directories;
}

}  // namespace vantro
