#pragma once

#include <string>

#include "Platform/FileSystem.h"

namespace vantro {

// The file manager over the real POSIX file system, with Foundation's error
// classification: a failed listing reports NSCocoaErrorDomain 257 for EPERM
// and EACCES, 260 for ENOENT and 256 for anything else, each carrying the
// POSIX error as its underlying error. Tilde expansion uses the given home
// directory, as Foundation uses the process's home.
class PosixFileSystem : public FileSystem {
public:
    explicit PosixFileSystem(std::string homeDirectory);

    bool fileExistsAtPath(std::string_view path, bool* isDirectory) override;
    std::optional<std::vector<std::string>> contentsOfDirectoryAtPath(std::string_view path, PlatformError* error) override;
    std::string stringByExpandingTildeInPath(std::string_view path) override;
    std::string stringByStandardizingPath(std::string_view path) override;

    // The Cocoa error that Foundation derives from a POSIX error number.
    static PlatformError cocoaErrorForPosixCode(int posixCode);

private:
    std::string home_;
};

}  // namespace vantro
