#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Platform/FileSystem.h"

namespace vantro {

// What listing a set of protected directories told.
enum class DirectoryProbeVerdict {
    Refused,      // an existing directory refused the listing with EPERM
    Readable,     // at least one existing directory, none refused with EPERM
    NoDirectory,  // none of them exists as a directory
};

// Lists each directory in order. A path that is missing or not a directory is
// skipped; a listing that fails with an underlying POSIX EPERM ends the walk
// as refused; any other failure decides nothing. Only the underlying error is
// classified: plain permission bits (EACCES) do not mean refused.
DirectoryProbeVerdict probeDirectories(const std::vector<std::string>& directories);

// Whether a listing's error is the privacy protection's refusal: an
// underlying POSIX EPERM, whatever the outer error says.
bool isPrivacyRefusal(const PlatformError& error);

// Each path with its tilde expanded and then standardised, in order.
std::vector<std::string> standardizedDirectories(const std::vector<std::string_view>& paths);

}  // namespace vantro
