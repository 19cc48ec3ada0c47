#pragma once

// Finding the Objective-C twin of a core object the platform made, and back:
// the overlay's window controller and the global event monitor's token.

#import <AppKit/AppKit.h>

#include <memory>

#include "Overlay/VantroWindowController.h"
#include "Platform/Windows.h"

@class VantroWindowController;

// The Objective-C controller under a name of its own: inside namespace
// vantro, "VantroWindowController" names the core class.
typedef VantroWindowController VantroWindowControllerTwin;

NS_ASSUME_NONNULL_BEGIN

namespace vantro::mac {

// The Objective-C controller of a core controller whose layout the Mac
// loaded; nil for nullptr or a controller without a loaded layout.
VantroWindowControllerTwin* _Nullable windowControllerFor(const std::shared_ptr<vantro::VantroWindowController>& controller);
// The core controller behind an Objective-C one; nullptr for nil.
std::shared_ptr<vantro::VantroWindowController> coreWindowController(VantroWindowControllerTwin* _Nullable controller);

// The token NSEvent handed out for a monitor, and a monitor for a token.
id _Nullable monitorToken(const std::shared_ptr<EventMonitor>& monitor);
std::shared_ptr<EventMonitor> eventMonitorFor(id _Nullable token);

}  // namespace vantro::mac

NS_ASSUME_NONNULL_END
