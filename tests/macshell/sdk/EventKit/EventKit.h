// Stand-in used only by the Mac shell type-check: EventKit's authorization
// status and the access requests for Calendars and Reminders.
#ifndef VANTRO_MACSHELL_EVENTKIT_H
#define VANTRO_MACSHELL_EVENTKIT_H

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

// EKEntityType is NSUInteger (event 0, reminder 1). Checked against
// developer.apple.com/documentation/eventkit/ekentitytype, onestack.dev
// EKEntityType (`init?(rawValue: UInt)`) and the Xamarin EKEntityType docs
// (Event = unsigned int64 0).
typedef NS_ENUM(NSUInteger, EKEntityType) {
    EKEntityTypeEvent,
    EKEntityTypeReminder
};

// EKAuthorizationStatus is NSInteger 0…4; Authorized is the old name of
// FullAccess. Checked against developer.apple.com/documentation/eventkit/ekauthorizationstatus
// and docs.rs objc2-event-kit / icrate EKTypes.rs (NSInteger, values 0–4,
// Authorized = FullAccess). FullAccess and WriteOnly appeared in macOS 14
// (…/ekauthorizationstatus/fullaccess), Authorized in 10.9.
typedef NS_ENUM(NSInteger, EKAuthorizationStatus) {
    EKAuthorizationStatusNotDetermined = 0,
    EKAuthorizationStatusRestricted,
    EKAuthorizationStatusDenied,
    EKAuthorizationStatusFullAccess API_AVAILABLE(macos(14.0)),
    EKAuthorizationStatusWriteOnly API_AVAILABLE(macos(14.0)),
    EKAuthorizationStatusAuthorized = 3
};

// Checked against developer.apple.com/documentation/eventkit/ekeventstorerequestaccesscompletionhandler
// (`(Bool, (any Error)?) -> Void`) and docs.rs objc2-event-kit
// (`Fn(Bool, *mut NSError)`).
typedef void (^EKEventStoreRequestAccessCompletionHandler)(BOOL granted, NSError *_Nullable error);

// Checked against developer.apple.com/documentation/eventkit/ekeventstore/authorizationstatus(for:),
// .../requestaccess(to:completion:), .../requestfullaccesstoevents(completion:)
// and docs.rs objc2-event-kit EKEventStore (requestFullAccessToRemindersWithCompletion:).
@interface EKEventStore : NSObject

+ (EKAuthorizationStatus)authorizationStatusForEntityType:(EKEntityType)entityType;

- (void)requestFullAccessToEventsWithCompletion:(EKEventStoreRequestAccessCompletionHandler)completion
    API_AVAILABLE(macos(14.0));
- (void)requestFullAccessToRemindersWithCompletion:(EKEventStoreRequestAccessCompletionHandler)completion
    API_AVAILABLE(macos(14.0));
- (void)requestAccessToEntityType:(EKEntityType)entityType
                       completion:(EKEventStoreRequestAccessCompletionHandler)completion;

@end

NS_ASSUME_NONNULL_END

#endif
