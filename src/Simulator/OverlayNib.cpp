#include "Simulator/OverlayNib.h"

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <map>
#include <memory>

namespace vantro::sim {

namespace {

struct DocumentDeleter {
    void operator()(xmlDoc* doc) const { xmlFreeDoc(doc); }
};
using Document = std::unique_ptr<xmlDoc, DocumentDeleter>;

constexpr int parseOptions = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;

bool named(const xmlNode* node, const char* name) {
    return node && node->type == XML_ELEMENT_NODE && xmlStrcmp(node->name, reinterpret_cast<const xmlChar*>(name)) == 0;
}

std::optional<std::string> attribute(const xmlNode* node, const char* name) {
    xmlChar* value = xmlGetProp(node, reinterpret_cast<const xmlChar*>(name));
    if (!value) return std::nullopt;
    std::string text(reinterpret_cast<const char*>(value));
    xmlFree(value);
    return text;
}

bool yes(const xmlNode* node, const char* name) { return attribute(node, name) == "YES"; }

std::vector<const xmlNode*> children(const xmlNode* node, const char* name = nullptr) {
    std::vector<const xmlNode*> out;
    for (const xmlNode* c = node ? node->children : nullptr; c; c = c->next)
        if (c->type == XML_ELEMENT_NODE && (!name || named(c, name))) out.push_back(c);
    return out;
}

// The child element `name` whose key attribute is `key` (any key when null).
const xmlNode* child(const xmlNode* node, const char* name, const char* key = nullptr) {
    for (const xmlNode* c : children(node, name))
        if (!key || attribute(c, "key") == key) return c;
    return nullptr;
}

std::optional<double> number(const xmlNode* node, const char* name) {
    auto text = attribute(node, name);
    if (!text || text->empty()) return std::nullopt;
    errno = 0;
    char* end = nullptr;
    double value = std::strtod(text->c_str(), &end);
    if (errno != 0 || *end != '\0' || !std::isfinite(value)) return std::nullopt;
    return value;
}

std::optional<Rect> rect(const xmlNode* node) {
    if (!node) return std::nullopt;
    auto x = number(node, "x"), y = number(node, "y"), w = number(node, "width"), h = number(node, "height");
    if (!x || !y || !w || !h || *w < 0 || *h < 0) return std::nullopt;
    return Rect{{*x, *y}, {*w, *h}};
}

unsigned autoresizing(const xmlNode* view) {
    const xmlNode* mask = child(view, "autoresizingMask", "autoresizingMask");
    if (!mask) return NSViewNotSizable;
    unsigned bits = 0;
    if (yes(mask, "flexibleMinX")) bits |= NSViewMinXMargin;
    if (yes(mask, "widthSizable")) bits |= NSViewWidthSizable;
    if (yes(mask, "flexibleMaxX")) bits |= NSViewMaxXMargin;
    if (yes(mask, "flexibleMinY")) bits |= NSViewMinYMargin;
    if (yes(mask, "heightSizable")) bits |= NSViewHeightSizable;
    if (yes(mask, "flexibleMaxY")) bits |= NSViewMaxYMargin;
    return bits;
}

std::string appKitClass(const xmlNode* view) {
    static const std::map<std::string, std::string, std::less<>> classes = {
        {"view", "NSView"},           {"customView", "NSView"}, {"textField", "NSTextField"},
        {"imageView", "NSImageView"}, {"button", "NSButton"},   {"box", "NSBox"},
    };
    auto it = classes.find(reinterpret_cast<const char*>(view->name));
    return it != classes.end() ? it->second : "NSView";
}

unsigned long styleMaskBits(const xmlNode* mask) {
    if (!mask) return 0;
    unsigned long bits = 0;
    if (yes(mask, "titled")) bits |= 1ul << 0;
    if (yes(mask, "closable")) bits |= 1ul << 1;
    if (yes(mask, "miniaturizable")) bits |= 1ul << 2;
    if (yes(mask, "resizable")) bits |= 1ul << 3;
    if (yes(mask, "utility")) bits |= 1ul << 4;
    if (yes(mask, "fullSizeContentView")) bits |= 1ul << 15;
    return bits;
}

// Reads `element` and its subviews into nib.views; false on a malformed frame.
bool readView(const xmlNode* element, int superview, OverlayNib& nib) {
    auto frame = rect(child(element, "rect", "frame"));
    if (!frame) return false;
    NibView view;
    view.id = attribute(element, "id").value_or("");
    view.className = attribute(element, "customClass").value_or(appKitClass(element));
    view.frame = *frame;
    view.autoresizingMask = autoresizing(element);
    view.superview = superview;
    if (const xmlNode* cell = child(element, "textFieldCell", "cell")) {
        view.title = attribute(cell, "title").value_or("");
        if (const xmlNode* font = child(cell, "font", "font")) {
            view.fontSize = number(font, "size").value_or(13.0);
            view.boldFont = attribute(font, "metaFont") == "systemBold";
        }
    }
    if (const xmlNode* cell = child(element, "imageCell", "cell")) view.imageName = attribute(cell, "image").value_or("");
    for (const xmlNode* binding : children(child(element, "connections"), "binding"))
        if (attribute(binding, "destination") == "-2")
            view.ownerBindings[attribute(binding, "name").value_or("")] = attribute(binding, "keyPath").value_or("");
    nib.views.push_back(std::move(view));
    const int index = static_cast<int>(nib.views.size()) - 1;
    for (const xmlNode* sub : children(child(element, "subviews")))
        if (!readView(sub, index, nib)) return false;
    return true;
}

std::optional<OverlayNib> readDocument(const xmlDoc* doc) {
    const xmlNode* root = doc ? xmlDocGetRootElement(doc) : nullptr;
    if (!named(root, "document")) return std::nullopt;
    auto type = attribute(root, "type");
    if (!type || type->find("InterfaceBuilder") == std::string::npos || type->find("XIB") == std::string::npos) return std::nullopt;
    const xmlNode* objects = child(root, "objects");
    if (!objects) return std::nullopt;

    OverlayNib nib;
    for (const xmlNode* object : children(objects, "customObject")) {
        if (attribute(object, "id") != "-2") continue;
        nib.ownerClass = attribute(object, "customClass").value_or("NSObject");
        for (const xmlNode* outlet : children(child(object, "connections"), "outlet")) {
            auto property = attribute(outlet, "property");
            auto destination = attribute(outlet, "destination");
            if (property && destination) nib.outlets[*property] = *destination;
        }
    }
    auto windowOutlet = nib.outlets.find("window");
    if (windowOutlet == nib.outlets.end()) return nib;
    for (const xmlNode* window : children(objects, "window")) {
        if (attribute(window, "id") != windowOutlet->second) continue;
        auto contentRect = rect(child(window, "rect", "contentRect"));
        const xmlNode* contentView = child(window, "view", "contentView");
        if (!contentRect || !contentView) return std::nullopt;
        nib.windowId = windowOutlet->second;
        nib.windowClass = attribute(window, "customClass").value_or("NSWindow");
        nib.styleMask = styleMaskBits(child(window, "windowStyleMask", "styleMask"));
        nib.visibleAtLaunch = attribute(window, "visibleAtLaunch") != "NO";
        nib.contentRect = *contentRect;
        if (!readView(contentView, -1, nib)) return std::nullopt;
        return nib;
    }
    // The outlet names a window the document does not hold.
    return std::nullopt;
}

}  // namespace

const NibView* OverlayNib::outletView(std::string_view property) const {
    auto it = outlets.find(std::string(property));
    if (it == outlets.end()) return nullptr;
    int index = indexOf(it->second);
    return index < 0 ? nullptr : &views[static_cast<std::size_t>(index)];
}

int OverlayNib::indexOf(std::string_view id) const {
    for (std::size_t i = 0; i < views.size(); ++i)
        if (views[i].id == id) return static_cast<int>(i);
    return -1;
}

std::optional<OverlayNib> readOverlayNib(const std::string& path) {
    Document doc(xmlReadFile(path.c_str(), nullptr, parseOptions));
    return readDocument(doc.get());
}

std::optional<OverlayNib> parseOverlayNib(std::string_view text) {
    Document doc(xmlReadMemory(text.data(), static_cast<int>(text.size()), "layout.xib", nullptr, parseOptions));
    return readDocument(doc.get());
}

Rect autoresizedFrame(const Rect& frame, unsigned mask, Size oldSize, Size newSize) {
    // One axis: the low margin, the length and the high margin share the
    // change among those that may stretch.
    auto axis = [](double origin, double length, double oldTotal, double newTotal, bool lowFlexible, bool lengthFlexible,
                   bool highFlexible) {
        double parts[3] = {origin, length, oldTotal - origin - length};
        const bool flexible[3] = {lowFlexible, lengthFlexible, highFlexible};
        const double delta = newTotal - oldTotal;
        double sum = 0;
        int count = 0;
        for (int i = 0; i < 3; ++i)
            if (flexible[i]) {
                sum += std::max(parts[i], 0.0);
                ++count;
            }
        if (count > 0)
            for (int i = 0; i < 3; ++i)
                if (flexible[i]) parts[i] += sum > 0 ? delta * std::max(parts[i], 0.0) / sum : delta / count;
        return std::pair{parts[0], std::max(parts[1], 0.0)};
    };
    auto [x, width] = axis(frame.origin.x, frame.size.width, oldSize.width, newSize.width, mask & NSViewMinXMargin,
                           mask & NSViewWidthSizable, mask & NSViewMaxXMargin);
    auto [y, height] = axis(frame.origin.y, frame.size.height, oldSize.height, newSize.height, mask & NSViewMinYMargin,
                            mask & NSViewHeightSizable, mask & NSViewMaxYMargin);
    return {{x, y}, {width, height}};
}

}  // namespace vantro::sim
