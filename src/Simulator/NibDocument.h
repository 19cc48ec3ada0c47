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

// The ids Interface Builder gives the placeholders of every layout.
inline constexpr std::string_view NibFilesOwnerId = "-2";
inline constexpr std::string_view NibFirstResponderId = "-1";

// One connection an object of a layout makes, as Interface Builder wrote it.
struct NibConnection {
    enum class Kind { Outlet, Binding, Action };
    Kind kind = Kind::Outlet;
    // The outlet's property, the binding's name ("value", "contentArray") or
    // the action's selector ("requestAuthorization:").
    std::string name;
    // The outlet's destination, the bound object, or the action's target.
    std::string destination;
    // The bound key path (bindings only).
    std::string keyPath;
};

// One object of a layout: a placeholder, a window, a view, a table column, a
// cell, an array controller, … Objects are the elements that carry an id,
// apart from connections and constraints.
struct NibObject {
    std::string id;
    // The element's name ("customObject", "window", "textField", "tableView").
    std::string element;
    // The custom class when one is set, else the AppKit class of the element
    // ("NSWindow", "NSView", "NSTextField", "NSTableCellView", …).
    std::string className;
    // Whether a custom class was set.
    bool customClass = false;
    // The key attribute: the property of the enclosing object it fills
    // ("contentView", "cell").
    std::string key;
    // The identifier attribute (a table column's, a cell view's).
    std::string identifier;
    // Every attribute as written.
    std::map<std::string, std::string, std::less<>> attributes;
    // Index of the nearest enclosing object; -1 at the top level.
    int parent = -1;
    // Index of the superview for a view in a "subviews" list; -1 otherwise.
    int superview = -1;
    // rect key="frame" (a view's, in its superview's coordinates, origin
    // bottom left) and rect key="contentRect" (a window's).
    std::optional<Rect> frame;
    std::optional<Rect> contentRect;
    unsigned autoresizingMask = NSViewNotSizable;
    // windowStyleMask key="styleMask": NSWindowStyleMask bits.
    unsigned long styleMask = 0;
    // The title, font and image its cell (key "cell") gives a control.
    std::string title;
    double fontSize = 13.0;
    bool boldFont = false;
    std::string imageName;
    std::vector<NibConnection> connections;

    std::optional<std::string> attribute(std::string_view name) const;
    // The destination of the outlet `property`, when connected.
    std::optional<std::string> outlet(std::string_view property) const;
    // The binding `name`, when bound.
    const NibConnection* binding(std::string_view name) const;
    // The action the object sends, when connected.
    const NibConnection* action() const;
};

// An Interface Builder document (.xib) as objects in document order: an
// object comes before what it holds, siblings in the order written (for
// subviews, back to front).
struct NibDocument {
    std::vector<NibObject> objects;

    int indexOf(std::string_view id) const;
    const NibObject* object(std::string_view id) const;
    // The File's Owner placeholder; nullptr when the document has none.
    const NibObject* owner() const { return object(NibFilesOwnerId); }
    // The objects held (directly or further down) by `ancestor`, in document
    // order.
    std::vector<int> descendantsOf(int ancestor) const;
    bool isDescendant(int index, int ancestor) const;
};

// Reads a layout document. nullopt when the file is missing, is not well
// formed, is not an Interface Builder document, has no objects, or holds a
// rectangle that is not four finite numbers with a size that is not negative.
std::optional<NibDocument> readNibDocument(const std::string& path);
// The same from text in memory.
std::optional<NibDocument> parseNibDocument(std::string_view text);

// The frame a view takes when its superview goes from `oldSize` to `newSize`,
// following its autoresizing mask: each change is shared among the flexible
// parts (margins, size) in proportion to their lengths, equally when all are
// zero; without a flexible part the view keeps its left and bottom margins.
Rect autoresizedFrame(const Rect& frame, unsigned mask, Size oldSize, Size newSize);

}  // namespace vantro::sim
