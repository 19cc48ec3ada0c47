// Stand-in used only by the Mac shell type-check: the capture devices'
// authorization status and request.
#ifndef VANTRO_MACSHELL_AVFOUNDATION_H
#define VANTRO_MACSHELL_AVFOUNDATION_H

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

// AVMediaType is a typed string; video is "vide" and audio "soun". Checked
// against developer.apple.com/documentation/avfoundation/avmediatype; the
// values against docs.rs objc2-av-foundation AVMediaFormat (unconfirmed
// against an Apple page). The shell passes the values, not the constants:
// AVFoundation is found by name, not linked.
// NS_TYPED_ENUM is Foundation's; GNUstep lacks it. It stands for clang's
// swift_wrapper(enum) attribute, the closed twin of NS_TYPED_EXTENSIBLE_ENUM.
#ifndef NS_TYPED_ENUM
#define NS_TYPED_ENUM __attribute__((swift_wrapper(enum)))
#endif
typedef NSString *AVMediaType NS_TYPED_ENUM;

// NSInteger, values 0–3. Checked against
// developer.apple.com/documentation/avfoundation/avauthorizationstatus (macOS
// 10.14) and learn.microsoft.com AVAuthorizationStatus.
typedef NS_ENUM(NSInteger, AVAuthorizationStatus) {
    AVAuthorizationStatusNotDetermined = 0,
    AVAuthorizationStatusRestricted = 1,
    AVAuthorizationStatusDenied = 2,
    AVAuthorizationStatusAuthorized = 3
} API_AVAILABLE(macos(10.14));

// Checked against developer.apple.com/documentation/avfoundation/avcapturedevice/authorizationstatus(for:)
// and .../requestaccess(for:completionhandler:) (both macOS 10.14; the
// handler `(Bool) -> Void`, called on an arbitrary queue).
@interface AVCaptureDevice : NSObject

+ (AVAuthorizationStatus)authorizationStatusForMediaType:(AVMediaType)mediaType API_AVAILABLE(macos(10.14));
+ (void)requestAccessForMediaType:(AVMediaType)mediaType completionHandler:(void (^)(BOOL granted))handler
    API_AVAILABLE(macos(10.14));

@end

NS_ASSUME_NONNULL_END

#endif
