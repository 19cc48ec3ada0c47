// The status center's watch list and its notification: the Objective-C face
// of the core's PrivacyStatusWatcher. Every change the watcher tells is
// posted as VantroPrivacyStatusDidChangeNotification; the handler that posts
// is added with the first list the host sets.
//
// Implements: watchedPrivacyCategoryIdentifiers (get, set), the notification
// and its userInfo keys. Known gaps: none.

#import <Vantro/VantroRequestStatusCenter.h>

#include <dispatch/dispatch.h>

#include "StatusCenter/PrivacyStatusWatcher.h"
#include "macOS/MacFoundation.h"
#include "macOS/MacPlatform.h"

NSNotificationName const VantroPrivacyStatusDidChangeNotification = @"VantroPrivacyStatusDidChangeNotification";
NSString *const VantroPrivacyStatusIdentifierKey = @"identifier";
NSString *const VantroPrivacyStatusOldStatusKey = @"oldStatus";
NSString *const VantroPrivacyStatusNewStatusKey = @"newStatus";

namespace {

std::shared_ptr<vantro::PrivacyStatusWatcher> postingWatcher() {
    vantro::mac::installHostProcess();
    auto watcher = vantro::PrivacyStatusWatcher::sharedWatcher();
    static dispatch_once_t once;
    dispatch_once(&once, ^{
        watcher->addChangeHandler([](const vantro::PrivacyStatusChange& change) {
            NSDictionary *userInfo = @{
                VantroPrivacyStatusIdentifierKey : vantro::mac::toNSString(change.identifier),
                VantroPrivacyStatusOldStatusKey : @(change.oldStatus),
                VantroPrivacyStatusNewStatusKey : @(change.newStatus),
            };
            [[NSNotificationCenter defaultCenter] postNotificationName:VantroPrivacyStatusDidChangeNotification
                                                                object:[VantroRequestStatusCenter sharedRequestStatusCenter]
                                                              userInfo:userInfo];
        });
    });
    return watcher;
}

}  // namespace

@implementation VantroRequestStatusCenter (StatusChanges)

- (NSArray<PrivacyCategoryIdentifier> *)watchedPrivacyCategoryIdentifiers {
    return vantro::mac::toNSArray(postingWatcher()->watchedIdentifiers());
}

- (void)setWatchedPrivacyCategoryIdentifiers:(NSArray<PrivacyCategoryIdentifier> *)identifiers {
    postingWatcher()->setWatchedIdentifiers(vantro::mac::toStrings(identifiers));
}

@end
