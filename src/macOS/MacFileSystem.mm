// FileSystem on the real Mac.
//
// Implements: -[NSFileManager fileExistsAtPath:isDirectory:] and
// contentsOfDirectoryAtPath:error: on the default manager, whose errors carry
// the POSIX error under NSUnderlyingErrorKey; NSString's
// stringByExpandingTildeInPath and stringByStandardizingPath. The default
// manager and NSString are safe on any thread.
// Known gaps: none.

#import <Foundation/Foundation.h>

#include "macOS/MacAreas.h"
#include "macOS/MacFoundation.h"

namespace vantro::mac {

namespace {

class MacFileSystem final : public FileSystem {
public:
    bool fileExistsAtPath(std::string_view path, bool* isDirectory) override {
        BOOL directory = NO;
        BOOL exists = [NSFileManager.defaultManager fileExistsAtPath:toNSString(path) isDirectory:&directory];
        if (isDirectory) *isDirectory = exists && directory;
        return exists;
    }

    std::optional<std::vector<std::string>> contentsOfDirectoryAtPath(std::string_view path, PlatformError* error) override {
        NSError* failure = nil;
        NSArray<NSString*>* contents = [NSFileManager.defaultManager contentsOfDirectoryAtPath:toNSString(path)
                                                                                         error:&failure];
        if (contents) return toStrings(contents);
        if (error) {
            // Foundation always says why; should it not, the failure still
            // reads as an unknown read error with nothing beneath it.
            *error = failure ? toPlatformError(failure)
                             : PlatformError{std::string(NSCocoaErrorDomain), NSFileReadUnknownError, nullptr};
        }
        return std::nullopt;
    }

    std::string stringByExpandingTildeInPath(std::string_view path) override {
        return toString(toNSString(path).stringByExpandingTildeInPath);
    }

    std::string stringByStandardizingPath(std::string_view path) override {
        return toString(toNSString(path).stringByStandardizingPath);
    }
};

}  // namespace

std::unique_ptr<FileSystem> makeFileSystem() { return std::make_unique<MacFileSystem>(); }

}  // namespace vantro::mac
