#pragma once

#include <memory>
#include <string_view>

#include "Platform/Controls.h"
#include "Platform/Drawing.h"
#include "Platform/Geometry.h"
#include "Platform/Observation.h"

namespace vantro {

class ZVMainBundleIconImageView;

inline constexpr long NSPopUpMenuWindowLevel = 101;

// The overlay's borderless, non-opaque window that never makes the host
// active. Observable for "visible", announced whenever it is shown or hidden.
// Main thread.
class OverlayWindow : public Observable {
public:
    virtual void setBackgroundColor(const Color& color) = 0;
    virtual void setLevel(long level) = 0;
    // setFrame:display:animate:, in screen coordinates (origin bottom left).
    virtual void setFrame(const Rect& frame, bool display, bool animate) = 0;
    virtual void orderFront() = 0;
    virtual void orderOut() = 0;
    virtual bool isVisible() const = 0;
    virtual Rect frame() const = 0;
    virtual long level() const = 0;
    virtual Color backgroundColor() const = 0;

    std::string observableName() const override { return "VantroWindow"; }
};

// What a layout ("nib") gives its owner: the window and the objects its
// outlets name, each nullptr when the layout did not load or left the outlet
// unconnected. The window is the owner's to keep; the icon view and the text
// field are the window's subviews, which the window keeps alive.
struct OverlayLayout {
    std::shared_ptr<OverlayWindow> window;
    std::shared_ptr<ZVMainBundleIconImageView> iconView;
    // The text field that shows the overlay's message (an NSTextField); the
    // layout binds its value to the owner's "message".
    std::shared_ptr<View> unlockMessageField;
};

}  // namespace vantro
