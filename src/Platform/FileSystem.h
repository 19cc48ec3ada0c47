#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vantro {

inline constexpr std::string_view NSCocoaErrorDomain = "NSCocoaErrorDomain";
inline constexpr std::string_view NSPOSIXErrorDomain = "NSPOSIXErrorDomain";
inline constexpr std::int64_t NSFileReadUnknownError = 256;
inline constexpr std::int64_t NSFileReadNoPermissionError = 257;
inline constexpr std::int64_t NSFileReadNoSuchFileError = 260;

// An error as Foundation reports it: a domain, a code and, in its user info
// under NSUnderlyingErrorKey, the error it came from (for file operations the
// POSIX error).
struct PlatformError {
    std::string domain;
    std::int64_t code = 0;
    std::shared_ptr<const PlatformError> underlying;
};

// The file manager (NSFileManager's default manager, NSString's path
// methods). Calls are synchronous and may block on the disk. Safe from any
// thread: the Photos answer touches the library from the system's queue.
class FileSystem {
public:
    FileSystem() = default;
    FileSystem(const FileSystem&) = delete;
    FileSystem& operator=(const FileSystem&) = delete;
    virtual ~FileSystem() = default;

    // fileExistsAtPath:isDirectory:. `isDirectory` may be null.
    virtual bool fileExistsAtPath(std::string_view path, bool* isDirectory) = 0;
    // contentsOfDirectoryAtPath:error:. On failure returns nullopt and, when
    // `error` is given, fills it: NSCocoaErrorDomain 257 for EPERM and EACCES,
    // 260 for ENOENT, 256 otherwise, with the NSPOSIXErrorDomain error beneath.
    virtual std::optional<std::vector<std::string>> contentsOfDirectoryAtPath(std::string_view path, PlatformError* error) = 0;
    // stringByExpandingTildeInPath.
    virtual std::string stringByExpandingTildeInPath(std::string_view path) = 0;
    // stringByStandardizingPath: tilde expanded, "." and ".." resolved, doubled
    // and trailing slashes removed.
    virtual std::string stringByStandardizingPath(std::string_view path) = 0;
};

}  // namespace vantro
