#include "Platform/PosixFileSystem.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>

namespace vantro {

namespace fs = std::filesystem;

PosixFileSystem::PosixFileSystem(std::string homeDirectory) : home_(std::move(homeDirectory)) {}

bool PosixFileSystem::fileExistsAtPath(std::string_view path, bool* isDirectory) {
    std::error_code ec;
    auto status = fs::status(fs::path(path), ec);
    bool exists = !ec && fs::exists(status);
    if (isDirectory) *isDirectory = exists && fs::is_directory(status);
    return exists;
}

PlatformError PosixFileSystem::cocoaErrorForPosixCode(int posixCode) {
    std::int64_t cocoa = NSFileReadUnknownError;
    if (posixCode == EPERM || posixCode == EACCES) cocoa = NSFileReadNoPermissionError;
    else if (posixCode == ENOENT) cocoa = NSFileReadNoSuchFileError;
    auto underlying = std::make_shared<PlatformError>(PlatformError{std::string(NSPOSIXErrorDomain), posixCode, nullptr});
    return PlatformError{std::string(NSCocoaErrorDomain), cocoa, std::move(underlying)};
}

std::optional<std::vector<std::string>> PosixFileSystem::contentsOfDirectoryAtPath(std::string_view path, PlatformError* error) {
    std::error_code ec;
    std::vector<std::string> names;
    fs::directory_iterator it(fs::path(path), ec);
    for (; !ec && it != fs::directory_iterator(); it.increment(ec)) names.push_back(it->path().filename().string());
    if (ec) {
        if (error) *error = cocoaErrorForPosixCode(ec.value());
        return std::nullopt;
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::string PosixFileSystem::stringByExpandingTildeInPath(std::string_view path) {
    if (path == "~") return home_;
    if (path.substr(0, 2) == "~/") return home_ + std::string(path.substr(1));
    return std::string(path);
}

std::string PosixFileSystem::stringByStandardizingPath(std::string_view input) {
    std::string path = stringByExpandingTildeInPath(input);
    if (path.empty()) return path;
    bool absolute = path.front() == '/';
    std::vector<std::string> parts;
    std::size_t start = 0;
    while (start <= path.size()) {
        auto slash = path.find('/', start);
        if (slash == std::string::npos) slash = path.size();
        std::string part = path.substr(start, slash - start);
        if (part.empty() || part == ".") {
            // doubled slashes and "." vanish
        } else if (part == ".." && absolute) {
            if (!parts.empty()) parts.pop_back();
        } else {
            parts.push_back(part);
        }
        start = slash + 1;
    }
    std::string out = absolute ? "/" : "";
    for (std::size_t i = 0; i < parts.size(); ++i) out += (i ? "/" : "") + parts[i];
    return out.empty() ? std::string(".") : out;
}

}  // namespace vantro
