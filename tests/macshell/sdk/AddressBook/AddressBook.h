// Stand-in used only by the Mac shell type-check: the shared Address Book,
// touched on systems older than Contacts to trigger the contacts prompt.
//
// The AddressBook framework is not nullability-audited: the documentation
// shows `class func shared() -> ABAddressBook!`, so the return carries no
// annotation. Checked against developer.apple.com/documentation/addressbook/abaddressbook-swift.class/shared().
#ifndef VANTRO_MACSHELL_ADDRESSBOOK_H
#define VANTRO_MACSHELL_ADDRESSBOOK_H

#import <Foundation/Foundation.h>

@interface ABAddressBook : NSObject

+ (ABAddressBook *)sharedAddressBook;

@end

#endif
