#include <mutex>

#include "Platform/HostProcess.h"
#include "StatusCenter/VantroRequestStatusCenter.h"
#include "Vocabulary/BuildVariant.h"

namespace vantro {

namespace {

constexpr std::string_view photosFrameworkPath = "/System/Library/Frameworks/Photos.framework";
constexpr std::string_view assetsLibraryServicesPath =
    VANTRO_PRIVATE_NAME("/System/Library/PrivateFrameworks/AssetsLibraryServices.framework");
constexpr std::string_view PHPhotoLibrary = "PHPhotoLibrary";
constexpr std::string_view PLPrivacy = VANTRO_PRIVATE_NAME("PLPrivacy");

struct PhotosProcessState {
    std::once_flag photosOnce;
    std::once_flag assetsLibraryServicesOnce;
};

Platform& platform() { return HostProcess::current().platform(); }

// The App Store build knows Photos only through PHPhotoLibrary's public
// status and request.
bool mayUsePrivatePhotosInterfaces() { return !platform().system().usesOnlyPublicInterfaces(); }

// The private object's verdict; it always decides once it is there.
PrivacyAuthorizationStatus statusFromPrivacyObject(const std::shared_ptr<PhotosPrivacyObject>& privacy) {
    auto responds = [&](std::string_view selector) { return privacy && privacy->respondsToSelector(selector); };
    if (responds(VANTRO_PRIVATE_NAME("isPhotosTCCAccessAllowed")) && privacy->isPhotosTCCAccessAllowed())
        return PrivacyAuthorizationStatusAuthorized;
    if (responds(VANTRO_PRIVATE_NAME("isPhotosTCCAccessNotAllowed")) && privacy->isPhotosTCCAccessNotAllowed())
        return PrivacyAuthorizationStatusDenied;
    if (responds(VANTRO_PRIVATE_NAME("isPhotosTCCAccessRestricted")) && privacy->isPhotosTCCAccessRestricted())
        return PrivacyAuthorizationStatusDenied;
    if (responds(VANTRO_PRIVATE_NAME("photosTCCAccessStatus"))) {
        switch (privacy->photosTCCAccessStatus()) {
        case 0: return PrivacyAuthorizationStatusAuthorized;
        case 1:
        case 3: return PrivacyAuthorizationStatusDenied;
        default: break;  // 2 and anything newer: undecided
        }
    }
    return PrivacyAuthorizationStatusNotDetermined;
}

// Lists the library; true when the listing failed for want of permission
// (NSFileReadNoPermissionError), whatever the error's domain or cause.
bool photoLibraryRefusesListing() {
    auto path = VantroRequestStatusCenter::photosSystemLibraryPath();
    auto& fileSystem = platform().fileSystem();
    if (!path || !fileSystem.fileExistsAtPath(*path, nullptr)) return false;
    PlatformError error;
    return !fileSystem.contentsOfDirectoryAtPath(*path, &error) && error.code == NSFileReadNoPermissionError;
}

}  // namespace

PrivacyAuthorizationStatus VantroRequestStatusCenter::photosAuthorizationStatus() {
    // Photos is protected from 10.14 on.
    if (flooredAppKitVersion() <= 1561.0) return PrivacyAuthorizationStatusAuthorized;
    loadPhotosFramework();
    auto& services = platform().services();
    if (!services.classExists(PHPhotoLibrary)) return PrivacyAuthorizationStatusAuthorized;
    const long ph = services.photoLibraryAuthorizationStatus();

    // On 10.14 the public "authorized" cannot be trusted; the App Store build
    // has nothing else to ask and takes it as it is.
    if (flooredAppKitVersion() <= 1671.0 && ph == ServiceAuthorizationStatusAuthorized && mayUsePrivatePhotosInterfaces()) {
        if (canRelyOnPLPrivacyValue()) {
            loadAssetsLibraryServicesFramework();
            if (services.classRespondsToSelector(PLPrivacy, "sharedInstance"))
                return statusFromPrivacyObject(services.photosPrivacySharedInstance());
        }
        if (fullDiskAccessAuthorizationStatus() != PrivacyAuthorizationStatusAuthorized && photoLibraryRefusesListing())
            return PrivacyAuthorizationStatusDenied;
    }

    switch (ph) {
    case ServiceAuthorizationStatusNotDetermined: return PrivacyAuthorizationStatusNotDetermined;
    case ServiceAuthorizationStatusRestricted:
    case ServiceAuthorizationStatusDenied: return PrivacyAuthorizationStatusDenied;
    case ServiceAuthorizationStatusAuthorized: return PrivacyAuthorizationStatusAuthorized;
    default:
        // Codes of later systems (limited access, 4) are not a grant the
        // framework can vouch for; the legacy status reports limited access as
        // authorized anyway. Like EventKit's and Contacts' unknown codes: 0.
        return PrivacyAuthorizationStatusNotDetermined;
    }
}

void VantroRequestStatusCenter::requestPhotosAuthorization(bool silent) {
    loadPhotosFramework();
    auto& services = platform().services();
    if (!services.classExists(PHPhotoLibrary)) return;
    if (!hostDeclaresUsageDescription(VantroPrivacyPhotos)) return;
    auto* runLoop = &platform().runLoop();
    services.requestPhotoLibraryAuthorization([self = retainedSelf(), runLoop, silent](long status) {
        // Off the main thread: only the file system is touched here. Listing
        // the library right after a grant on 10.14 makes the later status read
        // meet the library's files; the outcome does not matter.
        if (flooredAppKitVersion() <= 1671.0 && status == ServiceAuthorizationStatusAuthorized &&
            mayUsePrivatePhotosInterfaces()) {
            auto& fileSystem = HostProcess::current().platform().fileSystem();
            if (auto path = photosSystemLibraryPath(); path && fileSystem.fileExistsAtPath(*path, nullptr))
                fileSystem.contentsOfDirectoryAtPath(*path, nullptr);
        }
        std::weak_ptr<VantroRequestStatusCenter> weakSelf = self;
        runLoop->dispatchAsyncMain([weakSelf, silent] {
            auto strong = weakSelf.lock();
            if (!strong) return;
            // From now on this status center no longer trusts the private object.
            strong->setCanRelyOnPLPrivacyValue(false);
            if (strong->photosAuthorizationStatus() != PrivacyAuthorizationStatusAuthorized && !silent)
                strong->alertOpenPrivacyPreferences(VantroPrivacyPhotos);
        });
    });
}

std::optional<std::string> VantroRequestStatusCenter::photosSystemLibraryPath() {
    auto& process = platform();
    auto& services = process.services();
    if (mayUsePrivatePhotosInterfaces() &&
        services.classRespondsToSelector(PHPhotoLibrary, VANTRO_PRIVATE_NAME("systemPhotoLibraryURL"))) {
        if (auto url = services.systemPhotoLibraryURL(); url && url->isFileURL) return url->path;
    }

    auto preference = process.defaults().copyAppValue("WellKnownLibraryPathCache", "com.apple.photolibraryd");
    if (!preference) return std::nullopt;
    const Value* cache = preference->find("cache");
    const Value* canonical = cache ? cache->find("kRDLibraryKey_Canonical") : nullptr;
    // Anything but data is dropped without a word.
    if (!canonical || !canonical->data()) return std::nullopt;

    auto resolution = services.resolveBookmarkData(*canonical->data(), kCFURLBookmarkResolutionWithoutUIMask);
    if (!resolution.url) {
        process.log().log("Could not decode kRDLibraryKey_Canonical value in com.apple.photolibraryd. Error: " +
                          resolution.errorDescription);
        return std::nullopt;
    }
    auto& fileSystem = process.fileSystem();
    std::string path = fileSystem.stringByStandardizingPath(resolution.url->path);
    if (!fileSystem.fileExistsAtPath(path, nullptr)) return std::nullopt;
    return path;
}

void VantroRequestStatusCenter::loadPhotosFramework() {
    auto& state = HostProcess::current().value<PhotosProcessState>();
    std::call_once(state.photosOnce, [] {
        auto& services = platform().services();
        if (!services.classExists(PHPhotoLibrary)) services.loadBundleAtPath(photosFrameworkPath);
    });
}

void VantroRequestStatusCenter::loadAssetsLibraryServicesFramework() {
    auto& state = HostProcess::current().value<PhotosProcessState>();
    std::call_once(state.assetsLibraryServicesOnce, [] {
        if (!mayUsePrivatePhotosInterfaces()) return;
        auto& services = platform().services();
        if (!services.classExists(PLPrivacy)) services.loadBundleAtPath(assetsLibraryServicesPath);
    });
}

}  // namespace vantro
