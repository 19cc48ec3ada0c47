#include "Simulator/SimFileSystem.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "Simulator/SimPrivacy.h"
#include "Simulator/SimulatedMac.h"

namespace vantro::sim {

namespace fs = std::filesystem;

SimFileSystem::SimFileSystem(SimulatedMac& mac, std::string homeDirectory)
    : mac_(mac), posix_(homeDirectory), home_(std::move(homeDirectory)) {
    // Each directory of Full Disk Access holds what the system keeps there
    // (the privacy database, Safari's history, …): readable, none is empty.
    for (const auto& directory : SimPrivacy::fullDiskAccessDirectories()) {
        setHomeEntry(directory, Entry::Directory);
        std::ofstream(fs::path(home_) / directory / "contents") << "kept by the system";
    }
    for (auto folder : {ProtectedFolder::Desktop, ProtectedFolder::Documents, ProtectedFolder::Downloads})
        setHomeEntry(SimPrivacy::folderName(folder), Entry::Directory);
    setHomeEntry(SimPrivacy::photoLibraryDirectory, Entry::Directory);
    std::ofstream(fs::path(home_) / SimPrivacy::photoLibraryDirectory / "database") << "photos";
}

void SimFileSystem::setHomeEntry(std::string_view relativePath, Entry entry) {
    fs::path path = fs::path(home_) / relativePath;
    std::error_code ec;
    fs::remove_all(path, ec);
    switch (entry) {
    case Entry::Directory: fs::create_directories(path, ec); break;
    case Entry::PlainFile:
        fs::create_directories(path.parent_path(), ec);
        std::ofstream(path) << "not a directory";
        break;
    case Entry::Missing: break;
    }
}

void SimFileSystem::setListingError(std::string_view path, int posixCode) {
    if (posixCode == 0) listingErrors_.erase(stringByStandardizingPath(path));
    else setListingError(path, PosixFileSystem::cocoaErrorForPosixCode(posixCode));
}

void SimFileSystem::setListingError(std::string_view path, PlatformError error) {
    listingErrors_.insert_or_assign(stringByStandardizingPath(path), std::move(error));
}

std::size_t SimFileSystem::listingsOf(std::string_view path) {
    std::string standardized = stringByStandardizingPath(path);
    return static_cast<std::size_t>(std::count(listed_.begin(), listed_.end(), standardized));
}

bool SimFileSystem::fileExistsAtPath(std::string_view path, bool* isDirectory) {
    return posix_.fileExistsAtPath(path, isDirectory);
}

std::optional<std::vector<std::string>> SimFileSystem::contentsOfDirectoryAtPath(std::string_view path, PlatformError* error) {
    // NSFileManager does not expand a tilde: "~" names an entry of the
    // working folder, as any other relative path does.
    std::string standardized = !path.empty() && path.front() == '~' ? std::string(path) : stringByStandardizingPath(path);
    listed_.push_back(standardized);
    auto fail = [&](int posixCode) -> std::optional<std::vector<std::string>> {
        if (error) *error = PosixFileSystem::cocoaErrorForPosixCode(posixCode);
        return std::nullopt;
    };
    // A path that is not there fails as it would anywhere; the permission bits
    // are looked at before the privacy database, as the kernel does.
    bool isDirectory = false;
    if (!posix_.fileExistsAtPath(standardized, &isDirectory)) return posix_.contentsOfDirectoryAtPath(standardized, error);
    if (auto it = listingErrors_.find(standardized); it != listingErrors_.end()) {
        if (error) *error = it->second;
        return std::nullopt;
    }
    if (int refusal = mac_.privacy().listingRefusal(standardized)) {
        if (refusal == EPERM && mac_.privacy().refusedListingsLookEmpty()) return std::vector<std::string>{};
        return fail(refusal);
    }
    return posix_.contentsOfDirectoryAtPath(standardized, error);
}

std::string SimFileSystem::stringByExpandingTildeInPath(std::string_view path) {
    return posix_.stringByExpandingTildeInPath(path);
}

std::string SimFileSystem::stringByStandardizingPath(std::string_view path) { return posix_.stringByStandardizingPath(path); }

}  // namespace vantro::sim
