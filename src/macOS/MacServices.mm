// Services on the real Mac.
//
// Implements: EventKit's EKEventStore (the request of every release and,
// from macOS 14, the full-access requests), Contacts' CNAuthorization and
// CNContactStore, and AddressBook's ABAddressBook, each found by name at run
// time (the framework links none of them: the framework that owns a class is
// loaded from its bundle path, once, the first time the class is asked for);
// AXIsProcessTrustedWithOptions with kAXTrustedCheckOptionPrompt; loading a
// bundle by path; Photos' PHPhotoLibrary and the private PLPrivacy object,
// found by name once the framework has loaded them, every private message
// preceded by respondsToSelector:; bookmark resolution with
// CFURLCreateByResolvingBookmarkData. Class look-ups, systemPhotoLibraryURL
// and bookmark resolution are safe on any thread.
// Each EventKit and Contacts request has a store of its own, which its
// completion keeps until the answer has come and releases after it.
// Completions of EventKit, Contacts and Photos arrive on the system's queues
// and are handed on from a global queue, never on the requester's stack nor
// the main thread, whatever the system did: the core hops to the main queue.
// The newer categories: CGPreflightScreenCaptureAccess and
// CGRequestScreenCaptureAccess, IOHIDCheckAccess and IOHIDRequestAccess, each
// looked up with dlsym (they exist from 10.15; the framework runs from 10.13)
// and called through a signature written here, never the SDK's declaration;
// AVFoundation's AVCaptureDevice and Core Bluetooth's CBManager and
// CBCentralManager, found by name like EventKit. A Bluetooth request starts a
// central manager, whose start makes the system ask; its delegate keeps it
// until the user has decided and answers once.
// The App Store build (VANTRO_APP_STORE) names no private interface: it has
// no PLPrivacy object and no systemPhotoLibraryURL, and says so.
// Known gaps: the error passed to a completion keeps its domain and code but
// not its description (the framework reads neither).

#import <AddressBook/AddressBook.h>
#import <ApplicationServices/ApplicationServices.h>
#import <Contacts/Contacts.h>
#import <CoreBluetooth/CoreBluetooth.h>
#import <CoreFoundation/CoreFoundation.h>
#import <EventKit/EventKit.h>
#import <Foundation/Foundation.h>
#import <Photos/Photos.h>

#include <dispatch/dispatch.h>
#include <dlfcn.h>

#include <atomic>
#include <cstdint>
#include <optional>

#include "Vocabulary/BuildVariant.h"
#include "macOS/MacAreas.h"
#include "macOS/MacFoundation.h"

// The framework asks exactly these services on every release it supports,
// older calls and classes included (the old EventKit request, AddressBook,
// the Photos status): deprecation warnings of a newer SDK do not apply.
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wdeprecated-declarations"

// The classes found by name, seen through the class messages the framework
// sends them: a class found by name is not linked, so it cannot be named
// directly. The SDK's own types serve where they exist on 10.13; a status
// type of a later release is its plain integer here, so that nothing newer
// than the deployment target is named outside an availability check.
@protocol VantroEventStoreClass <NSObject>
+ (EKAuthorizationStatus)authorizationStatusForEntityType:(EKEntityType)entityType;
@end

@protocol VantroContactsClass <NSObject>
+ (CNAuthorizationStatus)authorizationStatusForEntityType:(CNEntityType)entityType;
@end

@protocol VantroAddressBookClass <NSObject>
+ (nullable ABAddressBook*)sharedAddressBook;
@end

@protocol VantroPhotoLibraryClass <NSObject>
+ (PHAuthorizationStatus)authorizationStatus;
+ (void)requestAuthorization:(void (^)(PHAuthorizationStatus status))handler;
@end

#if !VANTRO_APP_STORE
// The private messages the framework may send, declared here since no SDK
// header publishes them. Each is sent only after respondsToSelector: said yes.
@protocol VantroPhotosPrivacy <NSObject>
- (BOOL)isPhotosTCCAccessAllowed;
- (BOOL)isPhotosTCCAccessNotAllowed;
- (BOOL)isPhotosTCCAccessRestricted;
- (int)photosTCCAccessStatus;
@end

@protocol VantroPhotosPrivacyClass <NSObject>
+ (nullable id<VantroPhotosPrivacy>)sharedInstance;
@end

@protocol VantroSystemPhotoLibraryClass <NSObject>
+ (nullable NSURL*)systemPhotoLibraryURL;
@end
#endif

// AVCaptureDevice from 10.14: the status is AVAuthorizationStatus, an NSInteger.
@protocol VantroCaptureDeviceClass <NSObject>
+ (NSInteger)authorizationStatusForMediaType:(NSString*)mediaType;
+ (void)requestAccessForMediaType:(NSString*)mediaType completionHandler:(void (^)(BOOL granted))handler;
@end

// CBManager from 10.15: the authorization is CBManagerAuthorization, an
// NSInteger whose "not determined" is 0.
@protocol VantroBluetoothManagerClass <NSObject>
+ (NSInteger)authorization;
@end

static const NSInteger VantroBluetoothAuthorizationNotDetermined = 0;

// Waits for the user's Bluetooth decision: Core Bluetooth asks when a central
// manager starts and tells the delegate of each state change on the given
// queue. The waiter keeps itself and its manager alive until the system's
// authorization is decided, then answers once and lets both go. An answer
// that never comes keeps them to the end of the process.
@interface VantroBluetoothAuthorizationWaiter : NSObject <CBCentralManagerDelegate>
- (instancetype)initWithAnswer:(void (^)(long authorization))answer;
- (void)startWithManagerClass:(Class)managerClass queue:(dispatch_queue_t)queue;
@end

@implementation VantroBluetoothAuthorizationWaiter {
    void (^_answer)(long authorization);
    CBCentralManager* _manager;
    VantroBluetoothAuthorizationWaiter* _keptAlive;
    std::atomic<bool> _answered;
}

- (instancetype)initWithAnswer:(void (^)(long authorization))answer {
    if ((self = [super init])) {
        _answer = answer;
        _answered = false;
    }
    return self;
}

- (void)startWithManagerClass:(Class)managerClass queue:(dispatch_queue_t)queue {
    _keptAlive = self;
    _manager = [[managerClass alloc] initWithDelegate:self queue:queue options:nil];
}

- (void)centralManagerDidUpdateState:(CBCentralManager*)central {
    (void)central;
    Class authorizing = NSClassFromString(@"CBManager");
    if (![authorizing respondsToSelector:@selector(authorization)]) return;
    NSInteger authorization = [(Class<VantroBluetoothManagerClass>)authorizing authorization];
    // The first updates may come before the user has answered.
    if (authorization == VantroBluetoothAuthorizationNotDetermined) return;
    if (_answered.exchange(true)) return;
    _answer(authorization);
    _manager = nil;
    _keptAlive = nil;
}

@end

namespace vantro::mac {

namespace {

struct OwningFramework {
    NSString* className;
    NSString* frameworkPath;
};

// The frameworks behind the classes the framework finds by name but does not
// link. Photos is not here: the core decides when it is loaded.
const OwningFramework owningFrameworks[] = {
    {@"EKEventStore", @"/System/Library/Frameworks/EventKit.framework"},
    {@"CNContactStore", @"/System/Library/Frameworks/Contacts.framework"},
    {@"CNAuthorization", @"/System/Library/Frameworks/Contacts.framework"},
    {@"ABAddressBook", @"/System/Library/Frameworks/AddressBook.framework"},
    {@"AVCaptureDevice", @"/System/Library/Frameworks/AVFoundation.framework"},
    {@"CBManager", @"/System/Library/Frameworks/CoreBluetooth.framework"},
    {@"CBCentralManager", @"/System/Library/Frameworks/CoreBluetooth.framework"},
};

// The C signatures of the 10.15 calls looked up by name. IOHIDRequestType and
// IOHIDAccessType are C enumerations, passed and returned as 32-bit unsigned
// integers.
using ScreenCaptureAccessFunction = bool();
using HIDCheckAccessFunction = std::uint32_t(std::uint32_t requestType);
using HIDRequestAccessFunction = bool(std::uint32_t requestType);

// A function of a system framework looked up by name, or null on a release
// that lacks it.
template <class Function>
Function* systemFunction(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_DEFAULT, name));
}

// The class of that name, after loading the framework that owns it when it
// is one of the unlinked ones. nil when the system has no such class.
Class classNamed(NSString* name) {
    if (Class found = NSClassFromString(name)) return found;
    for (const auto& owner : owningFrameworks) {
        if (![owner.className isEqualToString:name]) continue;
        // NSBundle loads a bundle once; loading it again is a cheap no-op.
        [[NSBundle bundleWithPath:owner.frameworkPath] load];
        return NSClassFromString(name);
    }
    return nil;
}

// The queue answers are handed on from. The system may answer on the main
// thread, or at once on the requester's stack (a request it refuses without
// asking); the seam promises neither, so every answer moves here first.
dispatch_queue_t answerQueue() { return dispatch_get_global_queue(DISPATCH_QUEUE_PRIORITY_DEFAULT, 0); }

std::function<void(BOOL, NSError*)> completionFor(std::function<void(bool granted, const PlatformError* error)> completion) {
    return [completion = std::move(completion)](BOOL granted, NSError* error) {
        auto deliver = completion;
        bool answer = granted;
        std::optional<PlatformError> failure;
        if (error) failure = toPlatformError(error);
        dispatch_async(answerQueue(), ^{
          deliver(answer, failure ? &*failure : nullptr);
        });
    };
}

#if !VANTRO_APP_STORE
class MacPhotosPrivacyObject final : public PhotosPrivacyObject {
public:
    explicit MacPhotosPrivacyObject(id<VantroPhotosPrivacy> object) : object_(object) {}

    bool respondsToSelector(std::string_view selector) const override {
        return [object_ respondsToSelector:NSSelectorFromString(toNSString(selector))];
    }
    bool isPhotosTCCAccessAllowed() override {
        return [object_ respondsToSelector:@selector(isPhotosTCCAccessAllowed)] && [object_ isPhotosTCCAccessAllowed];
    }
    bool isPhotosTCCAccessNotAllowed() override {
        return [object_ respondsToSelector:@selector(isPhotosTCCAccessNotAllowed)] && [object_ isPhotosTCCAccessNotAllowed];
    }
    bool isPhotosTCCAccessRestricted() override {
        return [object_ respondsToSelector:@selector(isPhotosTCCAccessRestricted)] && [object_ isPhotosTCCAccessRestricted];
    }
    std::int32_t photosTCCAccessStatus() override {
        return [object_ respondsToSelector:@selector(photosTCCAccessStatus)] ? [object_ photosTCCAccessStatus] : 0;
    }

private:
    id<VantroPhotosPrivacy> object_;
};
#endif

class MacServices final : public Services {
public:
    bool classExists(std::string_view className) override { return classNamed(toNSString(className)) != nil; }

    bool classRespondsToSelector(std::string_view className, std::string_view selector) override {
        Class found = classNamed(toNSString(className));
        return found && [found respondsToSelector:NSSelectorFromString(toNSString(selector))];
    }

    bool classInstancesRespondToSelector(std::string_view className, std::string_view selector) override {
        Class found = classNamed(toNSString(className));
        return found && [found instancesRespondToSelector:NSSelectorFromString(toNSString(selector))];
    }

    long eventStoreAuthorizationStatus(long entityType) override {
        Class store = classNamed(@"EKEventStore");
        if (![store respondsToSelector:@selector(authorizationStatusForEntityType:)]) return 0;
        return [(Class<VantroEventStoreClass>)store authorizationStatusForEntityType:static_cast<EKEntityType>(entityType)];
    }

    void requestEventStoreAccess(long entityType,
                                 std::function<void(bool granted, const PlatformError* error)> completion) override {
        requestWithEventStore(std::move(completion), ^(EKEventStore* store, EKEventStoreRequestAccessCompletionHandler handler) {
          [store requestAccessToEntityType:static_cast<EKEntityType>(entityType) completion:handler];
        });
    }

    void requestFullEventStoreAccess(long entityType,
                                     std::function<void(bool granted, const PlatformError* error)> completion) override {
        requestWithEventStore(std::move(completion), ^(EKEventStore* store, EKEventStoreRequestAccessCompletionHandler handler) {
          // The core asks only where the store answers the request; the
          // check keeps the compiler's availability rules for a 10.13
          // deployment.
          if (@available(macOS 14.0, *)) {
              if (entityType == EKEntityTypeReminder) [store requestFullAccessToRemindersWithCompletion:handler];
              else [store requestFullAccessToEventsWithCompletion:handler];
          }
        });
    }

    // Sends one request to an event store made for it alone, with a handler
    // that passes the answer on. The handler keeps the store until the
    // answer has come and lets it go then: a store released while its
    // request is pending has been seen never to answer.
    static void requestWithEventStore(std::function<void(bool granted, const PlatformError* error)> completion,
                                      void (^send)(EKEventStore* store, EKEventStoreRequestAccessCompletionHandler handler)) {
        Class storeClass = classNamed(@"EKEventStore");
        if (!storeClass) return;
        EKEventStore* store = [[storeClass alloc] init];
        __block EKEventStore* pending = store;
        auto answer = completionFor(std::move(completion));
        send(store, ^(BOOL granted, NSError* _Nullable error) {
          answer(granted, error);
          pending = nil;
        });
    }

    long contactsAuthorizationStatus(std::string_view className, long entityType) override {
        Class found = classNamed(toNSString(className));
        if (![found respondsToSelector:@selector(authorizationStatusForEntityType:)]) return 0;
        return [(Class<VantroContactsClass>)found authorizationStatusForEntityType:static_cast<CNEntityType>(entityType)];
    }

    void requestContactsAccess(long entityType,
                               std::function<void(bool granted, const PlatformError* error)> completion) override {
        Class storeClass = classNamed(@"CNContactStore");
        if (!storeClass) return;
        CNContactStore* store = [[storeClass alloc] init];
        // Kept by the handler until the answer has come, as the event store is.
        __block CNContactStore* pending = store;
        auto answer = completionFor(std::move(completion));
        [store requestAccessForEntityType:static_cast<CNEntityType>(entityType)
                        completionHandler:^(BOOL granted, NSError* _Nullable error) {
                          answer(granted, error);
                          pending = nil;
                        }];
    }

    bool sharedAddressBookExists() override {
        Class addressBook = classNamed(@"ABAddressBook");
        if (![addressBook respondsToSelector:@selector(sharedAddressBook)]) return false;
        return [(Class<VantroAddressBookClass>)addressBook sharedAddressBook] != nil;
    }

    bool isProcessTrustedWithOptions(bool prompt) override {
        NSDictionary* options = @{(__bridge NSString*)kAXTrustedCheckOptionPrompt : @(prompt)};
        return AXIsProcessTrustedWithOptions((__bridge CFDictionaryRef)options);
    }

    bool loadBundleAtPath(std::string_view path) override {
        NSBundle* bundle = [NSBundle bundleWithPath:toNSString(path)];
        return bundle && [bundle load];
    }

    long photoLibraryAuthorizationStatus() override {
        Class library = NSClassFromString(@"PHPhotoLibrary");
        if (![library respondsToSelector:@selector(authorizationStatus)]) return 0;
        return [(Class<VantroPhotoLibraryClass>)library authorizationStatus];
    }

    void requestPhotoLibraryAuthorization(std::function<void(long status)> handler) override {
        Class library = NSClassFromString(@"PHPhotoLibrary");
        if (![library respondsToSelector:@selector(requestAuthorization:)]) return;
        [(Class<VantroPhotoLibraryClass>)library requestAuthorization:^(PHAuthorizationStatus status) {
          long answer = status;
          dispatch_async(answerQueue(), ^{
            handler(answer);
          });
        }];
    }

    std::optional<PlatformURL> systemPhotoLibraryURL() override {
#if VANTRO_APP_STORE
        return std::nullopt;
#else
        Class library = NSClassFromString(@"PHPhotoLibrary");
        if (![library respondsToSelector:@selector(systemPhotoLibraryURL)]) return std::nullopt;
        NSURL* url = [(Class<VantroSystemPhotoLibraryClass>)library systemPhotoLibraryURL];
        if (!url) return std::nullopt;
        return PlatformURL{static_cast<bool>(url.isFileURL), toString(url.path)};
#endif
    }

    std::shared_ptr<PhotosPrivacyObject> photosPrivacySharedInstance() override {
#if VANTRO_APP_STORE
        return nullptr;
#else
        Class privacy = NSClassFromString(@"PLPrivacy");
        if (![privacy respondsToSelector:@selector(sharedInstance)]) return nullptr;
        id<VantroPhotosPrivacy> object = [(Class<VantroPhotosPrivacyClass>)privacy sharedInstance];
        if (!object) return nullptr;
        return std::make_shared<MacPhotosPrivacyObject>(object);
#endif
    }

    BookmarkResolution resolveBookmarkData(const Data& bookmark, unsigned long options) override {
        NSData* data = [NSData dataWithBytes:bookmark.bytes.data() length:bookmark.bytes.size()];
        CFErrorRef error = nullptr;
        CFURLRef url = CFURLCreateByResolvingBookmarkData(kCFAllocatorDefault, (__bridge CFDataRef)data,
                                                          static_cast<CFURLBookmarkResolutionOptions>(options), nullptr,
                                                          nullptr, nullptr, &error);
        BookmarkResolution resolution;
        if (url) {
            NSURL* resolved = CFBridgingRelease(url);
            resolution.url = PlatformURL{static_cast<bool>(resolved.isFileURL), toString(resolved.path)};
        } else if (error) {
            resolution.errorDescription = toString(CFBridgingRelease(CFErrorCopyDescription(error)));
        }
        if (error) CFRelease(error);
        return resolution;
    }

    // The newer categories. Where a release lacks the call, the seam says so
    // (nullopt, or NO for a request) and the core decides what that means.

    std::optional<bool> preflightScreenCaptureAccess() override {
        auto preflight = systemFunction<ScreenCaptureAccessFunction>("CGPreflightScreenCaptureAccess");
        if (!preflight) return std::nullopt;
        return static_cast<bool>(preflight());
    }

    std::optional<bool> requestScreenCaptureAccess() override {
        auto request = systemFunction<ScreenCaptureAccessFunction>("CGRequestScreenCaptureAccess");
        if (!request) return std::nullopt;
        return static_cast<bool>(request());
    }

    std::optional<long> hidCheckAccess(long requestType) override {
        auto check = systemFunction<HIDCheckAccessFunction>("IOHIDCheckAccess");
        if (!check) return std::nullopt;
        return static_cast<long>(check(static_cast<std::uint32_t>(requestType)));
    }

    std::optional<bool> hidRequestAccess(long requestType) override {
        auto request = systemFunction<HIDRequestAccessFunction>("IOHIDRequestAccess");
        if (!request) return std::nullopt;
        return static_cast<bool>(request(static_cast<std::uint32_t>(requestType)));
    }

    std::optional<long> captureDeviceAuthorizationStatus(std::string_view mediaType) override {
        Class device = classNamed(@"AVCaptureDevice");
        if (![device respondsToSelector:@selector(authorizationStatusForMediaType:)]) return std::nullopt;
        return static_cast<long>([(Class<VantroCaptureDeviceClass>)device authorizationStatusForMediaType:toNSString(mediaType)]);
    }

    bool requestCaptureDeviceAccess(std::string_view mediaType, std::function<void(bool granted)> completion) override {
        Class device = classNamed(@"AVCaptureDevice");
        if (![device respondsToSelector:@selector(requestAccessForMediaType:completionHandler:)]) return false;
        [(Class<VantroCaptureDeviceClass>)device requestAccessForMediaType:toNSString(mediaType)
                                                         completionHandler:^(BOOL granted) {
                                                           bool answer = granted;
                                                           dispatch_async(answerQueue(), ^{
                                                             completion(answer);
                                                           });
                                                         }];
        return true;
    }

    std::optional<long> bluetoothAuthorization() override {
        Class manager = classNamed(@"CBManager");
        if (![manager respondsToSelector:@selector(authorization)]) return std::nullopt;
        return static_cast<long>([(Class<VantroBluetoothManagerClass>)manager authorization]);
    }

    bool requestBluetoothAccess(std::function<void(long authorization)> completion) override {
        Class central = classNamed(@"CBCentralManager");
        if (!central || ![classNamed(@"CBManager") respondsToSelector:@selector(authorization)]) return false;
        // The delegate hears from the manager on a global queue: never the
        // main thread, never this stack.
        VantroBluetoothAuthorizationWaiter* waiter =
            [[VantroBluetoothAuthorizationWaiter alloc] initWithAnswer:^(long authorization) {
              completion(authorization);
            }];
        [waiter startWithManagerClass:central queue:answerQueue()];
        return true;
    }
};

#pragma clang diagnostic pop

}  // namespace

std::unique_ptr<Services> makeServices() { return std::make_unique<MacServices>(); }

}  // namespace vantro::mac
