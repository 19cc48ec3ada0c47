// Stand-in used only by the Mac shell type-check: the photo library's
// authorization status and request.
#ifndef VANTRO_MACSHELL_PHOTOS_H
#define VANTRO_MACSHELL_PHOTOS_H

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

// NSInteger, values 0–4. Checked against docs.rs objc2-photos PHPhotoLibrary.rs
// (PHAuthorizationStatus(NSInteger), NotDetermined 0 … Limited 4) and
// developer.apple.com/documentation/photos/phauthorizationstatus. Limited is
// annotated for iOS 14 in the SDK; whether macOS ever reports it is
// unconfirmed.
typedef NS_ENUM(NSInteger, PHAuthorizationStatus) {
    PHAuthorizationStatusNotDetermined = 0,
    PHAuthorizationStatusRestricted,
    PHAuthorizationStatusDenied,
    PHAuthorizationStatusAuthorized,
    PHAuthorizationStatusLimited API_AVAILABLE(macos(11.0))
};

// Checked against developer.apple.com/documentation/photos/phphotolibrary/authorizationstatus()
// and .../requestauthorization(_:) (`(PHAuthorizationStatus) -> Void`).
@interface PHPhotoLibrary : NSObject

+ (PHAuthorizationStatus)authorizationStatus;
+ (void)requestAuthorization:(void (^)(PHAuthorizationStatus status))handler;

@end

NS_ASSUME_NONNULL_END

#endif
