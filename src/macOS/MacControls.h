#pragma once

// The seam's controls on the real Mac: wrappers around a layout's push
// button, view-based table and array controller. A wrapper refers to its
// AppKit object weakly, as an outlet does: the layout's view hierarchy owns
// the object, and whoever connected the outlet owns the wrapper.

#import <AppKit/AppKit.h>

#include <memory>

#include "Platform/Controls.h"

NS_ASSUME_NONNULL_BEGIN

// An AppKit view that is the twin of a core view (the request button cell):
// a table hands the core the core view rather than a plain wrapper, so the
// core can tell what kind of view it got.
@protocol VantroCoreViewTwin <NSObject>
- (std::shared_ptr<vantro::View>)vantroCoreView;
@end

namespace vantro::mac {

std::shared_ptr<Button> makeButton(NSButton* button);
// `owner` becomes the owner of the views the table makes from its layout
// (makeViewWithIdentifier:owner:), whatever owner the core passes: the core
// cannot name an Objective-C object. It is held weakly.
std::shared_ptr<TableView> makeTableView(NSTableView* table, id _Nullable owner);
std::shared_ptr<ArrayController> makeArrayController(NSArrayController* controller);

}  // namespace vantro::mac

NS_ASSUME_NONNULL_END
