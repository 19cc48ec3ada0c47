// The real Mac under the contract suites (tests/platform/contract).
//
// Implements:
// - the platform: vantro::mac::makePlatform(), installed as the current
//   HostProcess while the harness lives;
// - the main run loop, run with -[NSRunLoop runMode:beforeDate:] in a process
//   set up as a Cocoa application is: NSApp exists, as an accessory
//   application (it may show windows, and has no Dock icon), and the modal
//   panel and event tracking modes are among the common modes, where the main
//   queue is served;
// - activation notifications, posted on the shared workspace's notification
//   center with the NSRunningApplication under NSWorkspaceApplicationKey;
// - the system log: NSLog's copy on the standard error, which goes to a file
//   while the harness lives (and on to the real standard error after);
// - assertion failures: a handler in the main thread's dictionary under
//   NSAssertionHandlerKey that records each failure and returns;
// - a scratch folder in NSTemporaryDirectory(), and the standard user defaults
//   cleared of the keys the contracts write ("VantroContract…") at the end.
//
// Known gaps:
// - a log line spanning several lines is read as its first line only;
// - NSLog writes its copy to the standard error only when that is a file, a
//   pipe or a terminal; under a debugger it may not, and the log contract then
//   fails;
// - the privacy-protected folder is found by trying the Full Disk Access
//   folders; a process with that access has none, and the case is skipped.
#import <AppKit/AppKit.h>
#include <CoreFoundation/CoreFoundation.h>

#include <dirent.h>
#include <fcntl.h>
#include <stdarg.h>
#include <stdlib.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include "../PlatformUnderTest.h"
#include "macOS/MacPlatform.h"
#include "macOS/MacWorkspace.h"

namespace {

std::string utf8(NSString *string) {
    const char *bytes = string ? [string UTF8String] : nullptr;
    return bytes ? std::string(bytes) : std::string();
}

NSString *nsString(std::string_view text) {
    return [[NSString alloc] initWithBytes:text.data() length:text.size() encoding:NSUTF8StringEncoding];
}

// The name the failing object goes by: a class by its own name, a string as
// it is, any other object by its class.
NSString *objectName(id object) {
    if (!object) return @"";
    if ((id)[object class] == object) return NSStringFromClass((Class)object);
    if ([object isKindOfClass:[NSString class]]) return (NSString *)object;
    return NSStringFromClass([object class]);
}

}  // namespace

// Records every assertion failure and returns, so the caller goes on.
@interface VantroContractAssertionHandler : NSAssertionHandler
- (std::vector<vantro::test::RecordedAssertionFailure>)failures;
@end

// GNUstep declares both handlers noreturn; Apple's declarations are not, and a
// handler that returns is the point of this one.
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Winvalid-noreturn"

@implementation VantroContractAssertionHandler {
    std::vector<vantro::test::RecordedAssertionFailure> _failures;
}

- (void)handleFailureInMethod:(SEL)selector
                       object:(id)object
                         file:(NSString *)fileName
                   lineNumber:(NSInteger)line
                  description:(NSString *)format, ... {
    va_list arguments;
    va_start(arguments, format);
    NSString *description = format ? [[NSString alloc] initWithFormat:format arguments:arguments] : @"";
    va_end(arguments);
    _failures.push_back({utf8(NSStringFromSelector(selector)), utf8(objectName(object)), utf8(fileName),
                         static_cast<long>(line), utf8(description)});
}

- (void)handleFailureInFunction:(NSString *)functionName
                           file:(NSString *)fileName
                     lineNumber:(NSInteger)line
                    description:(NSString *)format, ... {
    va_list arguments;
    va_start(arguments, format);
    NSString *description = format ? [[NSString alloc] initWithFormat:format arguments:arguments] : @"";
    va_end(arguments);
    _failures.push_back({utf8(functionName), std::string(), utf8(fileName), static_cast<long>(line), utf8(description)});
}

- (std::vector<vantro::test::RecordedAssertionFailure>)failures {
    return _failures;
}

@end
#pragma clang diagnostic pop

namespace vantro::test {

namespace {

class MacPlatformUnderTest : public PlatformUnderTest {
public:
    MacPlatformUnderTest() {
        // The framework runs inside a Cocoa application, whose common modes
        // are the default, modal panel and event tracking modes.
        [NSApplication sharedApplication];
        // The harness shows windows (the overlay's) but wants no Dock icon.
        [NSApp setActivationPolicy:NSApplicationActivationPolicyAccessory];
        CFRunLoopAddCommonMode(CFRunLoopGetMain(), (__bridge CFStringRef)::NSModalPanelRunLoopMode);
        CFRunLoopAddCommonMode(CFRunLoopGetMain(), (__bridge CFStringRef)::NSEventTrackingRunLoopMode);

        scratch_ = makeScratchFolder(utf8([NSTemporaryDirectory() stringByAppendingPathComponent:@"vantro-contract"]));
        captureStandardError();

        handler_ = [[VantroContractAssertionHandler alloc] init];
        NSMutableDictionary *threadDictionary = [[NSThread currentThread] threadDictionary];
        previousHandler_ = threadDictionary[NSAssertionHandlerKey];
        threadDictionary[NSAssertionHandlerKey] = handler_;

        process_ = std::make_unique<HostProcess>(mac::makePlatform());
        HostProcess::install(process_.get());
    }

    ~MacPlatformUnderTest() override {
        // The process goes first: its objects may still log or assert.
        process_.reset();
        NSMutableDictionary *threadDictionary = [[NSThread currentThread] threadDictionary];
        if (previousHandler_) threadDictionary[NSAssertionHandlerKey] = previousHandler_;
        else [threadDictionary removeObjectForKey:NSAssertionHandlerKey];
        forgetContractDefaults();
        releaseStandardError();
        removeScratchFolder(scratch_);
    }

    Platform& platform() override { return process_->platform(); }

    void runMainLoop(double seconds, std::string_view mode) override {
        NSString *modeName = nsString(mode);
        NSDate *limit = [NSDate dateWithTimeIntervalSinceNow:seconds];
        NSRunLoop *loop = [NSRunLoop currentRunLoop];
        do {
            @autoreleasepool {
                // runMode:beforeDate: returns after each source it handles,
                // and at once when the mode has nothing to run.
                if (![loop runMode:modeName beforeDate:limit]) [NSThread sleepForTimeInterval:0.001];
            }
        } while ([limit timeIntervalSinceNow] > 0);
    }

    std::string homeDirectory() override { return utf8(NSHomeDirectory()); }
    const std::string& scratchDirectory() const override { return scratch_; }

    std::optional<std::string> privacyProtectedDirectory() override {
        const std::string home = homeDirectory();
        for (const char *relative : {"Library/Mail", "Library/Messages", "Library/Safari", "Library/Cookies",
                                     "Library/Containers/com.apple.mail", "Library/Containers/com.apple.Safari",
                                     "Library/Metadata/CoreSpotlight", "Library/Application Support/com.apple.TCC"}) {
            std::string path = home + "/" + relative;
            DIR *directory = opendir(path.c_str());
            if (directory) {
                closedir(directory);
                continue;
            }
            if (errno == EPERM) return path;
        }
        return std::nullopt;
    }

    std::vector<std::string> logLines() override {
        std::fflush(stderr);
        // NSLog's copy reads "<date> <time> <process>[<pid>:<thread>] <line>".
        const std::string marker = "[" + std::to_string(getpid()) + ":";
        std::vector<std::string> lines;
        std::ifstream in(capturePath_);
        for (std::string line; std::getline(in, line);) {
            auto at = line.find(marker);
            if (at == std::string::npos) continue;
            auto end = line.find("] ", at);
            if (end == std::string::npos) continue;
            lines.push_back(line.substr(end + 2));
        }
        return lines;
    }

    std::vector<RecordedAssertionFailure> assertionFailures() override { return [handler_ failures]; }

    void postActivationNotification(const RunningApplicationPtr &application) override {
        NSRunningApplication *running = mac::nsRunningApplication(application);
        NSDictionary *userInfo = running ? @{NSWorkspaceApplicationKey : running} : nil;
        [NSWorkspace.sharedWorkspace.notificationCenter postNotificationName:NSWorkspaceDidActivateApplicationNotification
                                                                      object:NSWorkspace.sharedWorkspace
                                                                    userInfo:userInfo];
    }

private:
    void captureStandardError() {
        // NSLog copies each line to the standard error when that is a file;
        // the variable makes it do so whatever the standard error is.
        setenv("CFLOG_FORCE_STDERR", "1", 1);
        std::string pattern = utf8([NSTemporaryDirectory() stringByAppendingPathComponent:@"vantro-contract-log-XXXXXX"]);
        int file = mkstemp(pattern.data());
        if (file < 0) return;
        capturePath_ = pattern;
        std::fflush(stderr);
        savedStandardError_ = dup(STDERR_FILENO);
        dup2(file, STDERR_FILENO);
        close(file);
    }

    void releaseStandardError() {
        if (savedStandardError_ < 0) return;
        std::fflush(stderr);
        dup2(savedStandardError_, STDERR_FILENO);
        close(savedStandardError_);
        // What was captured goes on, so that a failing run still shows it.
        std::ifstream in(capturePath_);
        std::cerr << in.rdbuf();
        unlink(capturePath_.c_str());
    }

    static void forgetContractDefaults() {
        NSUserDefaults *defaults = [NSUserDefaults standardUserDefaults];
        for (NSString *key in [[defaults dictionaryRepresentation] allKeys])
            if ([key hasPrefix:@"VantroContract"]) [defaults removeObjectForKey:key];
    }

    std::string scratch_;
    std::string capturePath_;
    int savedStandardError_ = -1;
    VantroContractAssertionHandler *handler_ = nil;
    id previousHandler_ = nil;
    std::unique_ptr<HostProcess> process_;
};

}  // namespace

std::unique_ptr<PlatformUnderTest> makePlatformUnderTest() { return std::make_unique<MacPlatformUnderTest>(); }

}  // namespace vantro::test
