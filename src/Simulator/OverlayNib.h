#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Geometry.h"
#include "Simulator/NibDocument.h"

namespace vantro::sim {

// One view of the overlay's layout, as Interface Builder wrote it.
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

// A window layout: the File's Owner with its outlets, the window the "window"
// outlet names and that window's views, read from the same document model as
// every other layout.
struct OverlayNib {
    std::string ownerClass;
    // Outlet property → destination id.
    std::map<std::string, std::string> outlets;
    std::string windowId;
    // The window's custom class, "NSWindow" when none is set.
    std::string windowClass;
    // The style mask as written: NSWindowStyleMask bits.
    unsigned long styleMask = 0;
    bool visibleAtLaunch = true;
    // The window level the layout gives (attribute "level", a number or an
    // NSWindowLevel name such as "floating"); nullopt when it gives none.
    std::optional<long> level;
    Rect contentRect;
    // The content view first, then every view in drawing order (a view before
    // its subviews, siblings back to front).
    std::vector<NibView> views;

    // The view an outlet points at, or nullptr.
    const NibView* outletView(std::string_view property) const;
    int indexOf(std::string_view id) const;
};

// The window layout a document holds. nullopt when the window outlet names
// no window of the document, or that window has no content rectangle, no
// content view, or a view without a frame. A document without a window
// outlet gives a layout without a window (windowId empty).
std::optional<OverlayNib> overlayNibFrom(const NibDocument& document);
// Reads a document and the window layout it holds; nullopt when either fails.
std::optional<OverlayNib> readOverlayNib(const std::string& path);
// The same from text in memory.
std::optional<OverlayNib> parseOverlayNib(std::string_view text);

// NSWindowLevel by the names a layout may use; nullopt for other names.
std::optional<long> windowLevelNamed(std::string_view name);

}  // namespace vantro::sim
