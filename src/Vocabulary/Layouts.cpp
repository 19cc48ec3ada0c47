#include "Vocabulary/Layouts.h"

#include "Platform/Bundles.h"
#include "Platform/HostProcess.h"

namespace vantro {

std::string nibNameForClassName(std::string_view className) {
    auto dot = className.rfind('.');
    return std::string(dot == std::string_view::npos ? className : className.substr(dot + 1));
}

bool bundleHoldsCompiledNib(const Bundle* bundle, std::string_view nibName) {
    if (bundle && bundle->pathForResource(nibName, "nib")) return true;
    HostProcess::current().platform().log().log("Compiled layout not found: " + std::string(nibName));
    return false;
}

}  // namespace vantro
