#include "Simulator/OverlayNib.h"

#include <cerrno>
#include <cstdlib>

namespace vantro::sim {

namespace {

// The level attribute: an NSWindowLevel name or a whole number.
std::optional<long> levelOf(const NibObject& window) {
    auto text = window.attribute("level");
    if (!text) return std::nullopt;
    if (auto named = windowLevelNamed(*text)) return named;
    errno = 0;
    char* end = nullptr;
    const long value = std::strtol(text->c_str(), &end, 10);
    if (errno != 0 || text->empty() || *end != '\0') return std::nullopt;
    return value;
}

}  // namespace

std::optional<long> windowLevelNamed(std::string_view name) {
    static constexpr std::pair<std::string_view, long> levels[] = {
        {"normal", 0},     {"floating", 3},  {"submenu", 3},   {"tornOffMenu", 3},    {"modalPanel", 8},
        {"mainMenu", 24},  {"status", 25},   {"statusBar", 25}, {"popUpMenu", 101},   {"screenSaver", 1000},
    };
    for (const auto& [levelName, level] : levels)
        if (levelName == name) return level;
    return std::nullopt;
}

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

std::optional<OverlayNib> overlayNibFrom(const NibDocument& document) {
    OverlayNib nib;
    if (const NibObject* owner = document.owner()) {
        nib.ownerClass = owner->className;
        for (const auto& c : owner->connections)
            if (c.kind == NibConnection::Kind::Outlet) nib.outlets[c.name] = c.destination;
    }
    auto windowOutlet = nib.outlets.find("window");
    if (windowOutlet == nib.outlets.end()) return nib;
    const int windowIndex = document.indexOf(windowOutlet->second);
    // The outlet names a window the document does not hold.
    if (windowIndex < 0) return std::nullopt;
    const NibObject& window = document.objects[static_cast<std::size_t>(windowIndex)];
    if (window.element != "window" || !window.contentRect) return std::nullopt;
    int contentIndex = -1;
    for (std::size_t i = 0; i < document.objects.size() && contentIndex < 0; ++i)
        if (document.objects[i].parent == windowIndex && document.objects[i].key == "contentView") contentIndex = static_cast<int>(i);
    if (contentIndex < 0) return std::nullopt;

    nib.windowId = window.id;
    nib.windowClass = window.className;
    nib.styleMask = window.styleMask;
    nib.visibleAtLaunch = window.attribute("visibleAtLaunch") != "NO";
    nib.level = levelOf(window);
    nib.contentRect = *window.contentRect;

    // The content view, then the views under it in document order; each
    // view's superview becomes an index into nib.views.
    std::vector<int> documentIndices{contentIndex};
    for (int index : document.descendantsOf(contentIndex))
        if (document.objects[static_cast<std::size_t>(index)].superview >= 0) documentIndices.push_back(index);
    for (int index : documentIndices) {
        const NibObject& object = document.objects[static_cast<std::size_t>(index)];
        if (!object.frame) return std::nullopt;
        NibView view;
        view.id = object.id;
        view.className = object.className;
        view.frame = *object.frame;
        view.autoresizingMask = object.autoresizingMask;
        if (index != contentIndex) {
            const std::string& superId = document.objects[static_cast<std::size_t>(object.superview)].id;
            view.superview = nib.indexOf(superId);
        }
        for (const auto& c : object.connections)
            if (c.kind == NibConnection::Kind::Binding && c.destination == NibFilesOwnerId) view.ownerBindings[c.name] = c.keyPath;
        view.title = object.title;
        view.fontSize = object.fontSize;
        view.boldFont = object.boldFont;
        view.imageName = object.imageName;
        nib.views.push_back(std::move(view));
    }
    return nib;
}

std::optional<OverlayNib> readOverlayNib(const std::string& path) {
    auto document = readNibDocument(path);
    return document ? overlayNibFrom(*document) : std::nullopt;
}

std::optional<OverlayNib> parseOverlayNib(std::string_view text) {
    auto document = parseNibDocument(text);
    return document ? overlayNibFrom(*document) : std::nullopt;
}

}  // namespace vantro::sim
