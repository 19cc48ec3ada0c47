// The layout reader on any text: it answers a document or nothing, and in a
// document every reference between objects stays inside it and every
// rectangle is finite, so the simulated AppKit can lay the views out.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "Simulator/NibDocument.h"

namespace {

bool finite(const vantro::Rect& rect) {
    return std::isfinite(rect.origin.x) && std::isfinite(rect.origin.y) && std::isfinite(rect.size.width) &&
           std::isfinite(rect.size.height) && rect.size.width >= 0 && rect.size.height >= 0;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    auto document = vantro::sim::parseNibDocument(std::string_view(reinterpret_cast<const char*>(data), size));
    if (!document) return 0;
    int count = static_cast<int>(document->objects.size());
    for (int index = 0; index < count; ++index) {
        const auto& object = document->objects[static_cast<std::size_t>(index)];
        if (object.parent < -1 || object.parent >= index) __builtin_trap();
        if (object.superview < -1 || object.superview >= count) __builtin_trap();
        if (document->indexOf(object.id) < 0) __builtin_trap();
        if (object.frame && !finite(*object.frame)) __builtin_trap();
        if (object.contentRect && !finite(*object.contentRect)) __builtin_trap();
        (void)document->descendantsOf(index);
        (void)object.action();
        (void)object.binding("value");
        (void)object.outlet("view");
        if (object.frame)
            (void)vantro::sim::autoresizedFrame(*object.frame, object.autoresizingMask, object.frame->size,
                                                {object.frame->size.width * 2 + 1, object.frame->size.height / 2});
    }
    (void)document->owner();
    return 0;
}
