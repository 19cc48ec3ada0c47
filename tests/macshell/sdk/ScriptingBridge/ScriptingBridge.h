// Stand-in used only by the Mac shell type-check: the Scripting Bridge calls
// the shell uses to send a harmless Apple event (which raises the Automation
// consent prompt on systems without AEDeterminePermissionToAutomateTarget).
#ifndef VANTRO_MACSHELL_SCRIPTINGBRIDGE_H
#define VANTRO_MACSHELL_SCRIPTINGBRIDGE_H

#import <Foundation/Foundation.h>
#import <ApplicationServices/ApplicationServices.h>

NS_ASSUME_NONNULL_BEGIN

// Checked against developer.apple.com/documentation/scriptingbridge/sbobject,
// .../sbobject/property(withcode:) (`(AEKeyword) -> SBObject`) and the get()
// entry linked from the class page (nullability of get's result per the class
// page's "force evaluation"; unconfirmed). -sendEvent:id:parameters: is
// unconfirmed against an Apple page: it takes the event class and ID and then
// a list of (DescType keyword, id value) pairs ended by 0.
@interface SBObject : NSObject <NSCoding>

- (nullable id)get;

@end

@interface SBObject (SBGlueInterface)

- (SBObject *)propertyWithCode:(AEKeyword)code;
- (id)sendEvent:(AEEventClass)eventClass id:(AEEventID)eventID parameters:(DescType)firstParamCode, ...;

@end

// Checked against developer.apple.com/documentation/scriptingbridge/sbapplication/init(bundleidentifier:)
// (`init?(bundleIdentifier ident: String)`).
@interface SBApplication : SBObject <NSCoding>

- (nullable instancetype)initWithBundleIdentifier:(NSString *)ident;

@end

NS_ASSUME_NONNULL_END

#endif
