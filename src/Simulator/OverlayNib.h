#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Geometry.h"

namespace vantro::sim {

// NSAutoresizingMaskOptions.
enum AutoresizingMask : unsigned {
    NSViewNotSizable = 0,
    NSViewMinXMargin = 1,
    NSViewWidthSizable = 2,
    NSViewMaxXMargin = 4,
    NSViewMinYMargin = 8,
    NSViewHeightSizable = 16,
    NSViewMaxYMargin = 32,
};

// One view of a layout, as Interface Builder wrote it.
struct NibView {
    std::string id;
    // The custom class when one is set, else the AppKit class of the element
    // ("NSView", "NSTextField", "NSImageView", …).
    std::string className;
    // In the superview's coordinates (origin bottom left).
    Rect frame;
    unsigned autoresizingMask = NSViewNotSizable;
    // Index of the superview in OverlayNib::views; -1 for the content view.
    int superview = -1;
    // Bindings by name ("value"): the owner's key path they read, when bound
    // to the File's Owner.
    std::map<std::string, std::string> ownerBindings;
    // A text field's own text and font size; an image view's image name.
    std::string title;
    double fontSize = 13.0;
    bool boldFont = false;
    std::string imageName;
};

// A window layout read from an Interface Builder document (.xib): the File's
// Owner with its outlets, the window the "window" outlet names and its
// views. Only what the overlay needs is read.
struct OverlayNib {
    std::string ownerClass;
    // Outlet property → destination id.
    std::map<std::string, std::string> outlets;
    std::string windowId;
    std::string windowClass;
    // The style mask as written: NSWindowStyleMask bits.
    unsigned long styleMask = 0;
    bool visibleAtLaunch = true;
    Rect contentRect;
    // The content view first, then every view in drawing order (a view before
    // its subviews, siblings back to front).
    std::vector<NibView> views;

    // The view an outlet points at, or nullptr.
    const NibView* outletView(std::string_view property) const;
    int indexOf(std::string_view id) const;
};

// Reads a layout document. nullopt when the file is missing, is not well
// formed, is not an Interface Builder document, or names a window outlet
// whose window is missing or has a malformed frame.
std::optional<OverlayNib> readOverlayNib(const std::string& path);
// The same from text in memory.
std::optional<OverlayNib> parseOverlayNib(std::string_view text);

// The frame a view takes when its superview goes from `oldSize` to `newSize`,
// following its autoresizing mask: each change is shared among the flexible
// parts (margins, size) in proportion to their lengths, equally when all are
// zero; without a flexible part the view keeps its left and bottom margins.
Rect autoresizedFrame(const Rect& frame, unsigned mask, Size oldSize, Size newSize);

}  // namespace vantro::sim
