#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Simulator/NibDocument.h"

namespace vantro::sim {

// A text field of a table cell view: its own text and, when its value is
// bound to the cell itself, the key path it shows ("objectValue.label").
struct NibCellTextField {
    std::string id;
    std::string title;
    std::optional<std::string> cellBinding;
};

// A button of a table cell view: its title and the action it sends, with the
// id of the action's target.
struct NibCellButton {
    std::string id;
    std::string title;
    std::optional<std::string> action;
    std::string target;
};

// A table cell view a column registers, which makeViewWithIdentifier:owner:
// makes by its identifier.
struct NibCellView {
    std::string id;
    std::string identifier;
    std::string className;
    // Outlet property → destination id.
    std::map<std::string, std::string, std::less<>> outlets;
    // In document order: the first is the row's label, the second its reason.
    std::vector<NibCellTextField> textFields;
    std::vector<NibCellButton> buttons;
};

struct NibTableColumn {
    std::string id;
    std::string identifier;
    std::vector<NibCellView> prototypes;
};

// A view-based table: its delegate, the binding of its content, its columns.
struct NibTable {
    std::string id;
    std::optional<std::string> delegate;
    std::optional<NibConnection> content;
    std::vector<NibTableColumn> columns;
};

// An array controller with the binding of its content array.
struct NibArrayController {
    std::string id;
    std::optional<NibConnection> contentArray;
};

// A view controller's layout: the File's Owner with its outlets, the views at
// the top of the document, the tables and the array controllers, read from
// the same document model as every other layout.
struct ListNib {
    std::string ownerClass;
    // Outlet property → destination id.
    std::map<std::string, std::string, std::less<>> outlets;
    std::vector<std::string> topLevelViews;
    std::vector<NibTable> tables;
    std::vector<NibArrayController> arrayControllers;
};

ListNib listNibFrom(const NibDocument& document);
// Reads a document and the list layout it holds; nullopt when the document
// does not read.
std::optional<ListNib> readListNib(const std::string& path);
std::optional<ListNib> parseListNib(std::string_view text);

}  // namespace vantro::sim
