// swift-tools-version:5.9
// Vantro as a Swift package: the library product "Vantro", made of the
// portable C++ core and the Objective-C++ shell that binds it to the Mac.
// Swift hosts `import Vantro`; Objective-C hosts `@import Vantro;`.
import PackageDescription

let package = Package(
    name: "Vantro",
    platforms: [.macOS(.v10_13)],
    products: [
        .library(name: "Vantro", targets: ["Vantro"]),
    ],
    targets: [
        // The core: every decision, in standard C++20. It has no public
        // headers (no include folder): the shell, its only client, reaches
        // them through its own header search path.
        .target(
            name: "VantroCore",
            path: "src",
            exclude: ["Simulator", "macOS"],
            sources: ["Vocabulary", "StatusCenter", "Guide", "Overlay", "PermissionList", "Platform"],
            cxxSettings: [.headerSearchPath(".")]
        ),
        // The shell: the real platform and the public Objective-C classes,
        // with the framework's resources (layouts compiled, .lproj kept).
        .target(
            name: "Vantro",
            dependencies: ["VantroCore"],
            path: ".",
            sources: ["src/macOS"],
            resources: [.process("Resources")],
            publicHeadersPath: "include",
            cxxSettings: [.headerSearchPath("src")],
            linkerSettings: [
                .linkedFramework("Foundation"),
                .linkedFramework("AppKit"),
                .linkedFramework("ApplicationServices"),
                .linkedFramework("CoreGraphics"),
                .linkedFramework("Security"),
                .linkedFramework("ScriptingBridge"),
            ]
        ),
    ],
    cxxLanguageStandard: .cxx20
)
