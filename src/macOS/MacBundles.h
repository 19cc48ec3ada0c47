#pragma once

// The framework's own bundle, where its resources and layouts are.

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

namespace vantro::mac {

// The Swift package's resource bundle when the shell is built as a package
// (there the shell is linked into the host, whose bundle holds no resources
// of ours); otherwise the bundle of a framework class, the framework itself.
NSBundle* frameworkNSBundle();

}  // namespace vantro::mac

NS_ASSUME_NONNULL_END
