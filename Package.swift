// swift-tools-version:5.9
// Vantro as a Swift package: the library product "Vantro", made of the
// portable C++ core and the Objective-C++ shell that binds it to the Mac.
// Swift hosts `import Vantro`; Objective-C hosts `@import Vantro;`.
import PackageDescription

// The App Store build, without any private interface of the system: set
// VANTRO_APP_STORE=1 in the environment of `swift build` or `xcodebuild` (and
// build afresh after switching). A variable, not a second product, because
// one source file belongs to one target only, and the build differs in the
// compiler's definitions, which a manifest cannot vary per product.
let appStoreBuild = Context.environment["VANTRO_APP_STORE"] == "1"
let variantDefinitions: [CXXSetting] = appStoreBuild ? [.define("VANTRO_APP_STORE", to: "1")] : []
let variantCDefinitions: [CSetting] = appStoreBuild ? [.define("VANTRO_APP_STORE", to: "1")] : []

let package = Package(
    name: "Vantro",
    // The resources hold .lproj folders; the package manager requires a
    // default localization then.
    defaultLocalization: "en",
    platforms: [.macOS(.v10_13)],
    products: [
        .library(name: "Vantro", targets: ["Vantro"]),
    ],
    targets: [
        // The core: every decision, in standard C++20. A C-family library
        // target needs a public headers folder inside its own; the core's is
        // its root, so that `#include "Platform/Value.h"` reads the same in
        // the core and in the shell. No Swift code imports it.
        // The POSIX file manager belongs to the simulated Mac: it uses
        // std::filesystem, which the system's C++ library offers only from
        // macOS 10.15.
        .target(
            name: "VantroCore",
            path: "src",
            exclude: ["Simulator", "macOS", "CInterface", "Platform/PosixFileSystem.cpp"],
            sources: ["Vocabulary", "StatusCenter", "Guide", "Overlay", "PermissionList", "Platform"],
            publicHeadersPath: ".",
            cxxSettings: variantDefinitions
        ),
        // The shell: the real platform and the public Objective-C classes,
        // with the framework's resources. Its folder is the package's root,
        // so that the public headers (include/) and the resources
        // (Resources/) can sit there for CMake as well; everything else at the
        // root is left out, or the package manager would take stray .lproj
        // folders (a CMake build folder holds the framework's) as resources.
        // ARC is on: the package manager compiles Objective-C with it.
        // `swift build` copies the .xib layouts as they are; Xcode compiles
        // them.
        .target(
            name: "Vantro",
            dependencies: ["VantroCore"],
            path: ".",
            exclude: [
                "bench", "build", "docs", "scripts", "tests", "tools", "Modules",
                "src/Guide", "src/Overlay", "src/PermissionList", "src/Platform", "src/Simulator",
                "src/StatusCenter", "src/Vocabulary",
                "CMakeLists.txt", "CMakePresets.json", "README.md", "CHANGELOG.md",
            ],
            sources: ["src/macOS"],
            resources: [.process("Resources")],
            publicHeadersPath: "include",
            cSettings: variantCDefinitions,
            cxxSettings: [.headerSearchPath("src")] + variantDefinitions,
            linkerSettings: [
                .linkedFramework("Foundation"),
                .linkedFramework("AppKit"),
                .linkedFramework("ApplicationServices"),
                .linkedFramework("CoreGraphics"),
                // The Input Monitoring calls are looked up by name in IOKit.
                .linkedFramework("IOKit"),
                .linkedFramework("Security"),
                .linkedFramework("ScriptingBridge"),
            ]
        ),
    ],
    cxxLanguageStandard: .cxx20
)
