// The request button cell's Objective-C twin.
//
// Implements: VantroRequestButtonTableCellView, an NSTableCellView that owns
// a core cell (PermissionList/VantroRequestButtonTableCellView.h) and
// forwards to it. A new object value gives the core cell the core row behind
// it (a row a list published, VantroViewController.mm), so the core cell
// moves its status observation to that row and brings the button up to date;
// the button outlet reaches the core as a Button wrapper (MacControls.mm),
// through which the core sets the title and enabled state; the list reaches
// it as the core list behind the Objective-C one; the layout's action,
// requestAuthorization:, goes to the core. A table asked by the core for a
// view hands the core this cell's core twin (VantroCoreViewTwin). Main
// thread.
// Known gaps: an object value that no list published (a host's own
// dictionary) is shown but not followed, the core cell then has no row.

#import <Vantro/VantroRequestButtonTableCellView.h>
#import <Vantro/VantroViewController.h>

#include <memory>

#include "PermissionList/VantroRequestButtonTableCellView.h"
#include "macOS/MacControls.h"
#include "macOS/MacPlatform.h"
#include "macOS/VantroPermissionList.h"

using CoreCell = vantro::VantroRequestButtonTableCellView;

@interface VantroRequestButtonTableCellView () <VantroCoreViewTwin>
@end

namespace {

// Made on first use: a cell decoded from a layout may be given an object
// value before any initializer of ours would run.
CoreCell& coreCell(std::shared_ptr<CoreCell>& slot) {
    if (!slot) {
        vantro::mac::installHostProcess();
        slot = std::make_shared<CoreCell>();
    }
    return *slot;
}

}  // namespace

@implementation VantroRequestButtonTableCellView {
    std::shared_ptr<CoreCell> _core;
    __weak NSButton* _authorizationButton;
    // The outlet's wrapper, which the core holds weakly.
    std::shared_ptr<vantro::Button> _authorizationButtonControl;
    __weak VantroViewControllerTwin* _vantroViewController;
}

// NSTableCellView keeps the object value; only its setter is redefined here.
@dynamic objectValue;

- (std::shared_ptr<vantro::View>)vantroCoreView {
    coreCell(_core);
    return _core;
}

- (void)setObjectValue:(id)objectValue {
    [super setObjectValue:objectValue];
    coreCell(_core).setObjectValue(vantro::mac::coreRowForRow(objectValue));
}

- (NSButton*)authorizationButton {
    return _authorizationButton;
}

- (void)setAuthorizationButton:(NSButton*)button {
    _authorizationButton = button;
    _authorizationButtonControl = button ? vantro::mac::makeButton(button) : nullptr;
    coreCell(_core).setAuthorizationButton(_authorizationButtonControl);
}

- (VantroViewControllerTwin*)vantroViewController {
    return _vantroViewController;
}

- (void)setVantroViewController:(VantroViewControllerTwin*)controller {
    _vantroViewController = controller;
    coreCell(_core).setVantroViewController(vantro::mac::coreViewController(controller));
}

- (void)updateAuthorizationButton {
    coreCell(_core).updateAuthorizationButton();
}

- (IBAction)requestAuthorization:(id)sender {
    // The core is handed the outlet's wrapper when the outlet sent the action.
    NSButton* button = _authorizationButton;
    coreCell(_core).requestAuthorization(sender && sender == button ? _authorizationButtonControl.get() : nullptr);
}

@end
