// Stand-in used only by the Mac shell type-check: the Contacts authorization
// status and access request.
#ifndef VANTRO_MACSHELL_CONTACTS_H
#define VANTRO_MACSHELL_CONTACTS_H

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

// Both enumerations are NSInteger. Checked against docs.rs objc2-contacts
// CNContactStore.rs (CNEntityType(NSInteger), Contacts = 0;
// CNAuthorizationStatus(NSInteger)) and developer.apple.com/documentation/contacts/cnentitytype.
// Limited (4) is annotated for iOS 18 in the SDK; whether the macOS SDK marks
// it unavailable is unconfirmed, so it is declared like the others.
typedef NS_ENUM(NSInteger, CNEntityType) {
    CNEntityTypeContacts
};

typedef NS_ENUM(NSInteger, CNAuthorizationStatus) {
    CNAuthorizationStatusNotDetermined = 0,
    CNAuthorizationStatusRestricted,
    CNAuthorizationStatusDenied,
    CNAuthorizationStatusAuthorized,
    CNAuthorizationStatusLimited
};

// Checked against developer.apple.com/documentation/contacts/cncontactstore/authorizationstatus(for:)
// and .../requestaccess(for:completionhandler:) (`(Bool, (any Error)?) -> Void`).
@interface CNContactStore : NSObject

+ (CNAuthorizationStatus)authorizationStatusForEntityType:(CNEntityType)entityType;

- (void)requestAccessForEntityType:(CNEntityType)entityType
                 completionHandler:(void (^)(BOOL granted, NSError *_Nullable error))completionHandler;

@end

NS_ASSUME_NONNULL_END

#endif
