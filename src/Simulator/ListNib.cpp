#include "Simulator/ListNib.h"

namespace vantro::sim {

namespace {

std::optional<NibConnection> bindingOf(const NibObject& object, std::string_view name) {
    if (const NibConnection* binding = object.binding(name)) return *binding;
    return std::nullopt;
}

NibCellView cellView(const NibDocument& document, int index) {
    const NibObject& object = document.objects[static_cast<std::size_t>(index)];
    NibCellView cell;
    cell.id = object.id;
    cell.identifier = object.identifier;
    cell.className = object.className;
    for (const auto& c : object.connections)
        if (c.kind == NibConnection::Kind::Outlet) cell.outlets[c.name] = c.destination;
    for (int inner : document.descendantsOf(index)) {
        const NibObject& view = document.objects[static_cast<std::size_t>(inner)];
        if (view.superview < 0) continue;
        if (view.element == "textField") {
            NibCellTextField field{view.id, view.title, std::nullopt};
            if (const NibConnection* value = view.binding("value"); value && value->destination == object.id)
                field.cellBinding = value->keyPath;
            cell.textFields.push_back(std::move(field));
        } else if (view.element == "button") {
            NibCellButton button{view.id, view.title, std::nullopt, {}};
            if (const NibConnection* action = view.action()) {
                button.action = action->name;
                button.target = action->destination;
            }
            cell.buttons.push_back(std::move(button));
        }
    }
    return cell;
}

}  // namespace

ListNib listNibFrom(const NibDocument& document) {
    ListNib nib;
    if (const NibObject* owner = document.owner()) {
        nib.ownerClass = owner->className;
        for (const auto& c : owner->connections)
            if (c.kind == NibConnection::Kind::Outlet) nib.outlets[c.name] = c.destination;
    }
    for (std::size_t i = 0; i < document.objects.size(); ++i) {
        const NibObject& object = document.objects[i];
        const int index = static_cast<int>(i);
        if (object.parent < 0 && object.frame) nib.topLevelViews.push_back(object.id);
        if (object.element == "arrayController") nib.arrayControllers.push_back({object.id, bindingOf(object, "contentArray")});
        if (object.element != "tableView") continue;
        NibTable table;
        table.id = object.id;
        table.delegate = object.outlet("delegate");
        table.content = bindingOf(object, "content");
        for (int columnIndex : document.descendantsOf(index)) {
            const NibObject& column = document.objects[static_cast<std::size_t>(columnIndex)];
            if (column.element != "tableColumn" || column.parent != index) continue;
            NibTableColumn entry{column.id, column.identifier, {}};
            for (int cellIndex : document.descendantsOf(columnIndex))
                if (document.objects[static_cast<std::size_t>(cellIndex)].element == "tableCellView")
                    entry.prototypes.push_back(cellView(document, cellIndex));
            table.columns.push_back(std::move(entry));
        }
        nib.tables.push_back(std::move(table));
    }
    return nib;
}

std::optional<ListNib> readListNib(const std::string& path) {
    auto document = readNibDocument(path);
    if (!document) return std::nullopt;
    return listNibFrom(*document);
}

std::optional<ListNib> parseListNib(std::string_view text) {
    auto document = parseNibDocument(text);
    if (!document) return std::nullopt;
    return listNibFrom(*document);
}

}  // namespace vantro::sim
