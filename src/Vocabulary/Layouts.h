#pragma once

#include <string>
#include <string_view>

namespace vantro {

class Bundle;

// The layout named after a class: the class's name without the module that
// a Swift class's name carries ("App.CustomList" gives "CustomList").
std::string nibNameForClassName(std::string_view className);

// Whether `bundle` holds the layout `nibName` compiled (a ".nib"). Asking
// the platform to load a layout that is not there raises, and a package
// built without compiling its layouts holds none, so the framework asks this
// first. When it is not there, writes "Compiled layout not found: %@" with
// the name to the system log. Main thread.
bool bundleHoldsCompiledNib(const Bundle* bundle, std::string_view nibName);

}  // namespace vantro
