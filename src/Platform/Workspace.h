#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Observation.h"

namespace vantro {

inline constexpr std::string_view SystemPreferencesBundleIdentifier = "com.apple.systempreferences";

inline constexpr unsigned NSApplicationActivateAllWindows = 1u << 0;
inline constexpr unsigned NSApplicationActivateIgnoringOtherApps = 1u << 1;
inline constexpr unsigned NSWorkspaceLaunchWithoutActivation = 0x00000200;
inline constexpr unsigned NSWorkspaceLaunchAsync = 0x00010000;

// A running application (NSRunningApplication). Observable for "hidden".
// The platform hands out one object per process for as long as it runs, so
// two answers for the same process are the same object. Main thread.
class RunningApplication : public Observable {
public:
    virtual std::optional<std::string> bundleIdentifier() const = 0;
    virtual int processIdentifier() const = 0;
    virtual std::string localizedName() const = 0;
    virtual bool isHidden() const = 0;
    virtual bool isTerminated() const = 0;
    // activateWithOptions:; the activation notification follows later.
    virtual bool activateWithOptions(unsigned options) = 0;

    // isEqual: — the same process.
    bool isEqual(const RunningApplication& other) const { return processIdentifier() == other.processIdentifier(); }
    std::string observableName() const override { return "NSRunningApplication"; }
};

using RunningApplicationPtr = std::shared_ptr<RunningApplication>;

// The shared workspace and its notification center. Main thread; handlers run
// on the main thread.
class Workspace {
public:
    Workspace() = default;
    Workspace(const Workspace&) = delete;
    Workspace& operator=(const Workspace&) = delete;
    virtual ~Workspace() = default;

    // openURL: with the URL made from `urlText` by URLWithString:. A text that
    // makes no URL, or a URL no application takes, answers false.
    virtual bool openURL(std::string_view urlText) = 0;

    // NSRunningApplication currentApplication.
    virtual RunningApplicationPtr currentApplication() = 0;
    // frontmostApplication; nullptr when none.
    virtual RunningApplicationPtr frontmostApplication() = 0;
    // runningApplicationsWithBundleIdentifier:, in launch order.
    virtual std::vector<RunningApplicationPtr> runningApplicationsWithBundleIdentifier(std::string_view bundleIdentifier) = 0;
    // URLForApplicationWithBundleIdentifier:; nullopt when not installed.
    virtual std::optional<std::string> URLForApplicationWithBundleIdentifier(std::string_view bundleIdentifier) = 0;
    // launchApplicationAtURL:options:configuration:error: with an empty
    // configuration; nullptr when the launch fails. With NSWorkspaceLaunchAsync
    // the application may still be starting when it is returned.
    virtual RunningApplicationPtr launchApplicationAtURL(std::string_view url, unsigned options) = 0;

    // Quits the current application and opens it again once it has ended: a
    // helper process waits for this one to end and then opens its bundle,
    // and the application is asked to terminate (terminate:, which the
    // host's delegate may still put off). Returns before the process ends.
    virtual void relaunchCurrentApplication() = 0;

    // addObserver:selector:name:NSWorkspaceDidActivateApplicationNotification
    // object:nil. Every call adds a registration, even a duplicate one, and each
    // registration delivers each notification. The handler receives the value
    // under NSWorkspaceApplicationKey (nullptr when the notification has none).
    // The observer is not retained: it must remove itself before it goes away.
    virtual void addActivationObserver(const void* observer, std::function<void(RunningApplicationPtr)> handler) = 0;
    // removeObserver:name:NSWorkspaceDidActivateApplicationNotification object:nil
    // — removes every activation registration of the observer, none included.
    virtual void removeActivationObserver(const void* observer) = 0;
    // removeObserver: — every registration of the observer.
    virtual void removeObserver(const void* observer) = 0;
};

}  // namespace vantro
