#include "Simulator/NibDocument.h"

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <memory>

namespace vantro::sim {

namespace {

struct DocumentDeleter {
    void operator()(xmlDoc* doc) const { xmlFreeDoc(doc); }
};
using Document = std::unique_ptr<xmlDoc, DocumentDeleter>;

constexpr int parseOptions = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;

std::string name(const xmlNode* node) { return reinterpret_cast<const char*>(node->name); }

bool named(const xmlNode* node, const char* wanted) {
    return node && node->type == XML_ELEMENT_NODE && xmlStrcmp(node->name, reinterpret_cast<const xmlChar*>(wanted)) == 0;
}

std::optional<std::string> attribute(const xmlNode* node, const char* attributeName) {
    xmlChar* value = xmlGetProp(node, reinterpret_cast<const xmlChar*>(attributeName));
    if (!value) return std::nullopt;
    std::string text(reinterpret_cast<const char*>(value));
    xmlFree(value);
    return text;
}

bool yes(const xmlNode* node, const char* attributeName) { return attribute(node, attributeName) == "YES"; }

std::vector<const xmlNode*> elements(const xmlNode* node, const char* wanted = nullptr) {
    std::vector<const xmlNode*> out;
    for (const xmlNode* c = node ? node->children : nullptr; c; c = c->next)
        if (c->type == XML_ELEMENT_NODE && (!wanted || named(c, wanted))) out.push_back(c);
    return out;
}

// The child element `wanted` whose key attribute is `key`.
const xmlNode* keyed(const xmlNode* node, const char* wanted, const char* key) {
    for (const xmlNode* c : elements(node, wanted))
        if (attribute(c, "key") == key) return c;
    return nullptr;
}

std::optional<double> number(const xmlNode* node, const char* attributeName) {
    auto text = attribute(node, attributeName);
    if (!text || text->empty()) return std::nullopt;
    errno = 0;
    char* end = nullptr;
    double value = std::strtod(text->c_str(), &end);
    if (errno != 0 || *end != '\0' || !std::isfinite(value)) return std::nullopt;
    return value;
}

std::optional<Rect> rect(const xmlNode* node) {
    auto x = number(node, "x"), y = number(node, "y"), w = number(node, "width"), h = number(node, "height");
    if (!x || !y || !w || !h || *w < 0 || *h < 0) return std::nullopt;
    return Rect{{*x, *y}, {*w, *h}};
}

unsigned autoresizing(const xmlNode* mask) {
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

// The AppKit class Interface Builder writes as the element `element`:
// "tableCellView" is an NSTableCellView, "customView" a plain NSView.
std::string appKitClass(const std::string& element) {
    if (element == "customView" || element == "view") return "NSView";
    if (element == "customObject") return "NSObject";
    if (element.empty()) return "NSObject";
    std::string className = "NS" + element;
    className[2] = static_cast<char>(std::toupper(static_cast<unsigned char>(className[2])));
    return className;
}

bool isConnection(const xmlNode* node) { return named(node, "outlet") || named(node, "binding") || named(node, "action"); }

class Reader {
public:
    explicit Reader(NibDocument& document) : document_(document) {}

    // Reads `node` and what it holds; false on a malformed rectangle.
    bool read(const xmlNode* node, int parent, int superview) {
        if (named(node, "rect") && !rect(node)) return false;
        if (isConnection(node)) {
            if (parent >= 0) document_.objects[static_cast<std::size_t>(parent)].connections.push_back(connection(node));
            return true;
        }
        int self = parent;
        if (auto id = attribute(node, "id"); id && !named(node, "constraint")) {
            self = static_cast<int>(document_.objects.size());
            document_.objects.push_back(object(node, *id, parent, superview));
        }
        for (const xmlNode* child : elements(node)) {
            // The views in a "subviews" list have the enclosing view as superview.
            if (named(child, "subviews")) {
                for (const xmlNode* view : elements(child))
                    if (!read(view, self, self)) return false;
            } else if (!read(child, self, -1)) {
                return false;
            }
        }
        return true;
    }

private:
    static NibConnection connection(const xmlNode* node) {
        NibConnection c;
        if (named(node, "outlet")) {
            c.kind = NibConnection::Kind::Outlet;
            c.name = attribute(node, "property").value_or("");
            c.destination = attribute(node, "destination").value_or("");
        } else if (named(node, "binding")) {
            c.kind = NibConnection::Kind::Binding;
            c.name = attribute(node, "name").value_or("");
            c.destination = attribute(node, "destination").value_or("");
            c.keyPath = attribute(node, "keyPath").value_or("");
        } else {
            c.kind = NibConnection::Kind::Action;
            c.name = attribute(node, "selector").value_or("");
            c.destination = attribute(node, "target").value_or("");
        }
        return c;
    }

    static NibObject object(const xmlNode* node, std::string id, int parent, int superview) {
        NibObject o;
        o.id = std::move(id);
        o.element = name(node);
        for (const xmlAttr* a = node->properties; a; a = a->next) {
            std::string attributeName = reinterpret_cast<const char*>(a->name);
            o.attributes[attributeName] = attribute(node, attributeName.c_str()).value_or("");
        }
        auto custom = o.attribute("customClass");
        o.customClass = custom.has_value();
        o.className = custom.value_or(appKitClass(o.element));
        o.key = o.attribute("key").value_or("");
        o.identifier = o.attribute("identifier").value_or("");
        o.parent = parent;
        o.superview = superview;
        if (const xmlNode* frame = keyed(node, "rect", "frame")) o.frame = rect(frame);
        if (const xmlNode* content = keyed(node, "rect", "contentRect")) o.contentRect = rect(content);
        o.autoresizingMask = autoresizing(keyed(node, "autoresizingMask", "autoresizingMask"));
        o.styleMask = styleMaskBits(keyed(node, "windowStyleMask", "styleMask"));
        for (const xmlNode* cell : elements(node)) {
            if (attribute(cell, "key") != "cell") continue;
            o.title = attribute(cell, "title").value_or("");
            o.imageName = attribute(cell, "image").value_or("");
            if (const xmlNode* font = keyed(cell, "font", "font")) {
                o.fontSize = number(font, "size").value_or(13.0);
                o.boldFont = attribute(font, "metaFont") == "systemBold";
            }
        }
        return o;
    }

    NibDocument& document_;
};

std::optional<NibDocument> readDocument(const xmlDoc* doc) {
    const xmlNode* root = doc ? xmlDocGetRootElement(doc) : nullptr;
    if (!named(root, "document")) return std::nullopt;
    auto type = attribute(root, "type");
    if (!type || type->find("InterfaceBuilder") == std::string::npos || type->find("XIB") == std::string::npos) return std::nullopt;
    const auto objects = elements(root, "objects");
    if (objects.empty()) return std::nullopt;
    NibDocument document;
    Reader reader(document);
    for (const xmlNode* object : elements(objects.front()))
        if (!reader.read(object, -1, -1)) return std::nullopt;
    return document;
}

}  // namespace

std::optional<std::string> NibObject::attribute(std::string_view attributeName) const {
    auto it = attributes.find(attributeName);
    if (it == attributes.end()) return std::nullopt;
    return it->second;
}

std::optional<std::string> NibObject::outlet(std::string_view property) const {
    for (const auto& c : connections)
        if (c.kind == NibConnection::Kind::Outlet && c.name == property) return c.destination;
    return std::nullopt;
}

const NibConnection* NibObject::binding(std::string_view bindingName) const {
    for (const auto& c : connections)
        if (c.kind == NibConnection::Kind::Binding && c.name == bindingName) return &c;
    return nullptr;
}

const NibConnection* NibObject::action() const {
    for (const auto& c : connections)
        if (c.kind == NibConnection::Kind::Action) return &c;
    return nullptr;
}

int NibDocument::indexOf(std::string_view id) const {
    for (std::size_t i = 0; i < objects.size(); ++i)
        if (objects[i].id == id) return static_cast<int>(i);
    return -1;
}

const NibObject* NibDocument::object(std::string_view id) const {
    const int index = indexOf(id);
    return index < 0 ? nullptr : &objects[static_cast<std::size_t>(index)];
}

bool NibDocument::isDescendant(int index, int ancestor) const {
    if (index < 0 || ancestor < 0) return false;
    for (int p = objects[static_cast<std::size_t>(index)].parent; p >= 0; p = objects[static_cast<std::size_t>(p)].parent)
        if (p == ancestor) return true;
    return false;
}

std::vector<int> NibDocument::descendantsOf(int ancestor) const {
    std::vector<int> out;
    for (std::size_t i = 0; i < objects.size(); ++i)
        if (isDescendant(static_cast<int>(i), ancestor)) out.push_back(static_cast<int>(i));
    return out;
}

std::optional<NibDocument> readNibDocument(const std::string& path) {
    Document doc(xmlReadFile(path.c_str(), nullptr, parseOptions));
    return readDocument(doc.get());
}

std::optional<NibDocument> parseNibDocument(std::string_view text) {
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
