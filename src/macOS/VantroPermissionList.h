#pragma once

// What the permission list's two Objective-C classes need of each other: the
// core list behind an Objective-C list, and the core row behind a row the
// list published.

#import <Vantro/VantroRequestButtonTableCellView.h>
#import <Vantro/VantroViewController.h>

#include <memory>

#include "PermissionList/VantroViewController.h"
#include "Vocabulary/PrivacyCategoryRecord.h"

// The Objective-C list under a name of its own: inside namespace vantro,
// "VantroViewController" names the core class.
typedef VantroViewController VantroViewControllerTwin;

NS_ASSUME_NONNULL_BEGIN

namespace vantro::mac {

// The core list an Objective-C list owns; nullptr for nil.
std::shared_ptr<vantro::VantroViewController> coreViewController(VantroViewControllerTwin* _Nullable controller);

// The core row behind a row dictionary that a list published; nullptr for
// nil and for any other object.
PrivacyCategoryRecordPtr coreRowForRow(id _Nullable row);

}  // namespace vantro::mac

NS_ASSUME_NONNULL_END
