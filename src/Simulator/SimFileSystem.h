#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/PosixFileSystem.h"

namespace vantro::sim {

class SimulatedMac;

// The simulated Mac's file manager: the real POSIX file system beneath the
// Mac's temporary root, with the privacy database in front of it. Listing a
// protected directory the host has no access to fails as on a real Mac, with
// NSCocoaErrorDomain 257 over NSPOSIXErrorDomain 1 (EPERM), or, where the
// release hides the location, 260 over ENOENT; when the privacy database is
// told so, an EPERM refusal lists as an empty folder instead. The first
// listing of an undecided protected folder asks the user and waits for the
// answer.
//
// Plain permission bits do not stop the root user the tests may run as, so a
// listing failure can be set per path: any POSIX code (EACCES, say), or any
// error at all, as other file systems' drivers answer.
//
// The user's home holds, from the start, the eight directories that need Full
// Disk Access (each with a file in it), the Desktop, Documents and Downloads folders, and the system
// photo library; a test may remove any of them or make it a plain file.
class SimFileSystem : public FileSystem {
public:
    SimFileSystem(SimulatedMac& mac, std::string homeDirectory);

    bool fileExistsAtPath(std::string_view path, bool* isDirectory) override;
    std::optional<std::vector<std::string>> contentsOfDirectoryAtPath(std::string_view path, PlatformError* error) override;
    std::string stringByExpandingTildeInPath(std::string_view path) override;
    std::string stringByStandardizingPath(std::string_view path) override;

    // What stands at a path of the home directory ("Library/Mail").
    enum class Entry { Directory, PlainFile, Missing };
    void setHomeEntry(std::string_view relativePath, Entry entry);
    // Makes every listing of the path fail with this POSIX error (EACCES…);
    // 0 clears it. `path` may start with "~".
    void setListingError(std::string_view path, int posixCode);
    // Makes every listing of the path fail with exactly this error.
    void setListingError(std::string_view path, PlatformError error);

    // Every listing asked for, in order, as the standardised paths given.
    const std::vector<std::string>& listedPaths() const { return listed_; }
    std::size_t listingCount() const { return listed_.size(); }
    // How many listings of a path (which may start with "~") were asked for.
    std::size_t listingsOf(std::string_view path);
    PosixFileSystem& posix() { return posix_; }

private:
    SimulatedMac& mac_;
    PosixFileSystem posix_;
    std::string home_;
    std::map<std::string, PlatformError, std::less<>> listingErrors_;
    std::vector<std::string> listed_;
};

}  // namespace vantro::sim
