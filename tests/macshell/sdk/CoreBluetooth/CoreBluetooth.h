// Stand-in used only by the Mac shell type-check: Core Bluetooth's
// authorization and the central manager whose start makes the system ask.
#ifndef VANTRO_MACSHELL_COREBLUETOOTH_H
#define VANTRO_MACSHELL_COREBLUETOOTH_H

#import <Foundation/Foundation.h>
#include <dispatch/dispatch.h>

NS_ASSUME_NONNULL_BEGIN

// NSInteger, values 0–3. Checked against
// developer.apple.com/documentation/corebluetooth/cbmanagerauthorization
// (macOS 10.15) and learn.microsoft.com CBManagerAuthorization (0–3).
typedef NS_ENUM(NSInteger, CBManagerAuthorization) {
    CBManagerAuthorizationNotDetermined = 0,
    CBManagerAuthorizationRestricted,
    CBManagerAuthorizationDenied,
    CBManagerAuthorizationAllowedAlways
} API_AVAILABLE(macos(10.15));

// NSInteger, values 0–5. Checked against docs.rs objc2-core-bluetooth
// CBManager.rs (CBManagerState(NSInteger), Unknown 0 … PoweredOn 5) and
// developer.apple.com/documentation/corebluetooth/cbmanager/state.
typedef NS_ENUM(NSInteger, CBManagerState) {
    CBManagerStateUnknown = 0,
    CBManagerStateResetting,
    CBManagerStateUnsupported,
    CBManagerStateUnauthorized,
    CBManagerStatePoweredOff,
    CBManagerStatePoweredOn
};

// Checked against developer.apple.com/documentation/corebluetooth/cbmanager
// (class 10.13; state 10.13), .../cbmanager/authorization-swift.type.property
// (the class property, macOS 10.15) and onestack.dev CBManager
// (`class var authorization`).
@interface CBManager : NSObject
@property (nonatomic, assign, readonly) CBManagerState state;
@property (class, nonatomic, assign, readonly) CBManagerAuthorization authorization API_AVAILABLE(macos(10.15));
@end

@class CBCentralManager;

// Checked against developer.apple.com/documentation/corebluetooth/cbcentralmanagerdelegate/centralmanagerdidupdatestate(_:)
// (required) and docs.rs objc2-core-bluetooth CBCentralManagerDelegate.
@protocol CBCentralManagerDelegate <NSObject>
@required
- (void)centralManagerDidUpdateState:(CBCentralManager *)central;
@end

// Checked against developer.apple.com/documentation/corebluetooth/cbcentralmanager/init(delegate:queue:options:)
// (delegate, queue and options optional; macOS 10.9).
@interface CBCentralManager : CBManager
- (instancetype)initWithDelegate:(nullable id<CBCentralManagerDelegate>)delegate
                           queue:(nullable dispatch_queue_t)queue
                         options:(nullable NSDictionary<NSString *, id> *)options;
@end

NS_ASSUME_NONNULL_END

#endif
