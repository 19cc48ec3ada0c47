#include "Simulator/SimPermissionList.h"

#include <algorithm>

#include "Simulator/SimulatedMac.h"

namespace vantro::sim {

namespace {

// The contexts of the array controller's binding to the owner and of the
// table's binding to the array controller.
constexpr char ContentArrayBindingContext[] = "contentArray";
constexpr char ContentBindingContext[] = "content";

constexpr std::string_view ListOwnerClass = "VantroViewController";
constexpr std::string_view CellClass = "VantroRequestButtonTableCellView";
constexpr std::string_view RequestAuthorizationAction = "requestAuthorization:";
constexpr std::string_view ObjectValuePrefix = "objectValue.";

std::string stringForKey(const PrivacyCategoryRecordPtr& row, std::string_view key) {
    if (!row) return {};
    const Value* value = row->valueForKey(key);
    return value && value->isString() ? *value->stringPointer() : std::string();
}

// What a cell's text field shows for `row`: through a binding to the cell's
// "objectValue.<key>", the row's value for the key (nothing when the row has
// none); without a binding, the text the layout gave the field.
std::string shownText(const NibCellTextField& field, const PrivacyCategoryRecordPtr& row) {
    if (!field.cellBinding) return field.title;
    if (!field.cellBinding->starts_with(ObjectValuePrefix)) return {};
    return stringForKey(row, std::string_view(*field.cellBinding).substr(ObjectValuePrefix.size()));
}

// The outlets a cell view of the layout can be given: NSTableCellView's own,
// and the framework's cell's button.
bool cellHasOutlet(std::string_view property, bool frameworkCell) {
    return property == "textField" || property == "imageView" || (frameworkCell && property == "authorizationButton");
}

// The outlets a VantroViewController can be given.
bool ownerHasOutlet(std::string_view property) {
    return property == "view" || property == "privacyCategoriesTableView" || property == "privacyCategoriesArrayController";
}

}  // namespace

bool SimButton::performClick() {
    if (!enabled_ || !action_) return false;
    // The action may set another action on this button while it runs.
    auto action = action_;
    action(*this);
    return true;
}

SimArrayController::~SimArrayController() { unbind(); }

void SimArrayController::bindContentArray(const std::shared_ptr<VantroViewController>& owner) {
    unbind();
    if (!owner) return;
    owner_ = owner;
    bound_ = true;
    owner->addObserver(*this, "privacyCategories", ObservingOptionInitial, ContentArrayBindingContext);
}

void SimArrayController::unbind() {
    if (bound_) {
        // A controller already gone took its registrations with it.
        if (auto owner = owner_.lock()) owner->removeObserver(*this, "privacyCategories", ContentArrayBindingContext);
        bound_ = false;
    }
    owner_.reset();
    arrangedObjects_.clear();
}

void SimArrayController::observeValueForKeyPath(std::string_view, Observable&, ObservationContext context) {
    if (context != ContentArrayBindingContext) return;
    auto owner = owner_.lock();
    arrangedObjects_ = owner ? owner->privacyCategories() : std::vector<PrivacyCategoryRecordPtr>{};
    didChangeValueForKey("arrangedObjects");
}

SimTableView::~SimTableView() { unbind(); }

void SimTableView::bindContent(const std::shared_ptr<SimArrayController>& arrayController) {
    if (arrayController_) arrayController_->removeObserver(*this, "arrangedObjects", ContentBindingContext);
    arrayController_ = arrayController;
    if (arrayController_) arrayController_->addObserver(*this, "arrangedObjects", ObservingOptionInitial, ContentBindingContext);
}

void SimTableView::unbind() {
    if (arrayController_) arrayController_->removeObserver(*this, "arrangedObjects", ContentBindingContext);
    arrayController_.reset();
    delegate_.reset();
    // The cells go before the rows they show, so each ends its observation of
    // a row that still exists (the cell itself holds its row).
    visible_.clear();
    reusable_.clear();
    handedOut_.clear();
    content_.clear();
}

void SimTableView::observeValueForKeyPath(std::string_view, Observable&, ObservationContext context) {
    if (context == ContentBindingContext) reloadData();
}

std::optional<SimCellView> SimTableView::makeCellView(const NibCellView& prototype) {
    const bool frameworkCell = prototype.className == CellClass;
    for (const auto& [property, destination] : prototype.outlets) {
        if (!cellHasOutlet(property, frameworkCell)) {
            // Setting an outlet the view lacks raises while the view is made.
            mac_.record("list", "the cell view " + prototype.identifier + " is a " + prototype.className +
                                    ", which has no outlet " + property + "; no view is made");
            return std::nullopt;
        }
    }
    SimCellView made;
    made.identifier = prototype.identifier;
    made.textFields = prototype.textFields;
    if (frameworkCell) {
        made.cell = std::make_shared<VantroRequestButtonTableCellView>();
        made.view = made.cell;
    } else {
        made.view = std::make_shared<SimTableCellView>();
    }
    // The simulated cell has one button: the first the layout gives it.
    if (!prototype.buttons.empty()) {
        const NibCellButton& design = prototype.buttons.front();
        made.button = std::make_shared<SimButton>(design.title);
        if (auto outlet = prototype.outlets.find("authorizationButton");
            made.cell && outlet != prototype.outlets.end() && outlet->second == design.id)
            made.cell->setAuthorizationButton(made.button);
        if (made.cell && design.action == RequestAuthorizationAction && design.target == prototype.id) {
            std::weak_ptr<VantroRequestButtonTableCellView> target = made.cell;
            made.button->setAction([target](Button& sender) {
                if (auto cell = target.lock()) cell->requestAuthorization(&sender);
            });
        } else if (design.action) {
            mac_.record("list", "the button's action " + *design.action + " goes to something that does not respond to it");
        }
    }
    return made;
}

std::shared_ptr<View> SimTableView::makeViewWithIdentifier(std::string_view identifier, const void* owner) {
    // The layout's cell view has no outlet to its owner: the owner is not
    // needed to make it.
    (void)owner;
    auto reuse = std::find_if(reusable_.begin(), reusable_.end(), [&](const SimCellView& v) { return v.identifier == identifier; });
    if (reuse != reusable_.end()) {
        handedOut_.push_back(std::move(*reuse));
        reusable_.erase(reuse);
        return handedOut_.back().view;
    }
    for (const auto& column : layout_.columns) {
        for (const auto& prototype : column.prototypes) {
            if (prototype.identifier != identifier) continue;
            auto made = makeCellView(prototype);
            if (!made) return nullptr;
            ++cellViewsMade_;
            handedOut_.push_back(std::move(*made));
            return handedOut_.back().view;
        }
    }
    return nullptr;
}

void SimTableView::reloadData() {
    content_ = arrayController_ ? arrayController_->arrangedObjects() : std::vector<PrivacyCategoryRecordPtr>{};
    for (auto& shown : visible_)
        if (shown) reusable_.push_back(std::move(*shown));
    visible_.clear();

    // The simulated table shows its first column.
    const NibTableColumn* column = layout_.columns.empty() ? nullptr : &layout_.columns.front();
    auto delegate = delegate_.lock();
    for (std::size_t row = 0; row < content_.size(); ++row) {
        std::shared_ptr<View> view;
        if (column) {
            // A bound table without a delegate makes the view by the column's
            // identifier, with the (missing) delegate as owner.
            view = delegate ? delegate->tableView(*this, TableColumn(column->identifier), static_cast<long>(row))
                            : makeViewWithIdentifier(column->identifier, nullptr);
        }
        auto made = std::find_if(handedOut_.begin(), handedOut_.end(),
                                 [&](const SimCellView& v) { return view && v.view.get() == view.get(); });
        if (made == handedOut_.end()) {
            visible_.emplace_back(std::nullopt);
            continue;
        }
        SimCellView shown = std::move(*made);
        handedOut_.erase(made);
        // What the layout's bindings do: the row becomes the cell's object
        // value, and the text fields show what they are bound to.
        if (shown.cell)
            shown.cell->setObjectValue(content_[row]);
        else if (auto plain = std::dynamic_pointer_cast<SimTableCellView>(shown.view))
            plain->setObjectValue(content_[row]);
        shown.labelText = shown.textFields.size() > 0 ? shownText(shown.textFields[0], content_[row]) : std::string();
        shown.reasonText = shown.textFields.size() > 1 ? shownText(shown.textFields[1], content_[row]) : std::string();
        visible_.emplace_back(std::move(shown));
    }
    // Views the delegate asked for but did not return wait for later use.
    for (auto& unused : handedOut_) reusable_.push_back(std::move(unused));
    handedOut_.clear();
    ++reloadCount_;
    if (reloadHandler_) reloadHandler_();
}

const SimCellView* SimTableView::viewAtRow(std::size_t row) const {
    if (row >= visible_.size() || !visible_[row]) return nullptr;
    return &*visible_[row];
}

SimPermissionList::SimPermissionList(SimulatedMac& mac, std::shared_ptr<VantroViewController> controller)
    : mac_(mac), controller_(std::move(controller)) {}

SimPermissionList::~SimPermissionList() { close(); }

void SimPermissionList::loadView() {
    if (triedLoading_ || !controller_) return;
    triedLoading_ = true;
    auto name = controller_->nibNameToLoad();
    if (name && !loadLayout(*name)) {
        release();
        return;
    }
    loaded_ = true;
    mac_.record("list", name ? "view loaded" : "view loaded empty, without a layout");
    controller_->didLoadView();
}

bool SimPermissionList::loadLayout(const std::string& name) {
    auto bundle = controller_->nibBundle();
    auto path = bundle ? bundle->pathForResource(name, "nib") : std::nullopt;
    if (!path) {
        mac_.record("list", "raises: could not load the nib " + name);
        throw NibLoadFailure("-[NSViewController loadView] could not load the \"" + name + "\" nib.");
    }
    auto nib = readListNib(*path);
    if (!nib) {
        mac_.record("list", "the layout " + name + " does not load");
        return false;
    }
    if (nib->ownerClass != ListOwnerClass && nib->ownerClass != name) {
        mac_.record("list", "the layout " + name + " is made for a " + nib->ownerClass + ", not a " + name);
        return false;
    }
    for (const auto& [property, destination] : nib->outlets) {
        if (!ownerHasOutlet(property)) {
            mac_.record("list", "the layout " + name + " connects an unknown outlet " + property);
            return false;
        }
    }
    auto view = nib->outlets.find("view");
    if (view == nib->outlets.end() ||
        std::find(nib->topLevelViews.begin(), nib->topLevelViews.end(), view->second) == nib->topLevelViews.end()) {
        mac_.record("list", "the layout " + name + " loads but sets no view");
        return false;
    }

    for (const auto& design : nib->arrayControllers) {
        auto arrayController = std::make_shared<SimArrayController>();
        if (design.contentArray && design.contentArray->destination == NibFilesOwnerId) {
            if (design.contentArray->keyPath != "privacyCategories") {
                mac_.record("list", "the layout " + name + " binds a content array to an unknown key " +
                                        design.contentArray->keyPath);
                return false;
            }
            arrayController->bindContentArray(controller_);
        }
        arrayControllers_.emplace_back(design.id, std::move(arrayController));
    }
    auto arrayControllerWithId = [this](std::string_view id) -> std::shared_ptr<SimArrayController> {
        for (const auto& [arrayId, arrayController] : arrayControllers_)
            if (arrayId == id) return arrayController;
        return nullptr;
    };
    for (const auto& design : nib->tables) {
        auto table = std::make_shared<SimTableView>(mac_, design);
        if (tables_.empty()) table->setReloadHandler([this] { recordRowsIfChanged(); });
        if (design.delegate == NibFilesOwnerId) table->setDelegate(controller_);
        if (design.content && design.content->keyPath == "arrangedObjects")
            if (auto arrayController = arrayControllerWithId(design.content->destination)) table->bindContent(arrayController);
        tables_.push_back(std::move(table));
    }

    // The owner's outlets, to objects of their kinds.
    if (auto outlet = nib->outlets.find("privacyCategoriesTableView"); outlet != nib->outlets.end()) {
        for (const auto& table : tables_)
            if (table->layout().id == outlet->second) controller_->setPrivacyCategoriesTableView(table);
    }
    if (auto outlet = nib->outlets.find("privacyCategoriesArrayController"); outlet != nib->outlets.end())
        controller_->setPrivacyCategoriesArrayController(arrayControllerWithId(outlet->second));
    return true;
}

void SimPermissionList::release() {
    for (const auto& table : tables_) {
        table->setReloadHandler(nullptr);
        table->unbind();
    }
    for (const auto& [id, arrayController] : arrayControllers_) arrayController->unbind();
    tables_.clear();
    arrayControllers_.clear();
    loaded_ = false;
}

void SimPermissionList::show() {
    if (!controller_ || onScreen_) return;
    loadView();
    if (!loaded_) return;
    onScreen_ = true;
    mac_.record("list", "on screen");
    controller_->viewDidAppear();
}

void SimPermissionList::hide() {
    if (!controller_ || !onScreen_) return;
    onScreen_ = false;
    mac_.record("list", "off screen");
    controller_->viewDidDisappear();
}

void SimPermissionList::close() {
    if (!controller_) return;
    hide();
    release();
    mac_.record("list", "closed");
    controller_.reset();
}

std::vector<SimPermissionList::Row> SimPermissionList::rows() const {
    std::vector<Row> rows;
    const SimTableView* shown = table();
    if (!shown) return rows;
    for (std::size_t i = 0; i < shown->numberOfRows(); ++i) {
        Row row;
        if (const SimCellView* view = shown->viewAtRow(i)) {
            row.label = view->labelText;
            row.reason = view->reasonText;
            if (view->button) {
                row.buttonTitle = view->button->title();
                row.buttonEnabled = view->button->isEnabled();
            }
        }
        rows.push_back(std::move(row));
    }
    return rows;
}

std::string SimPermissionList::describe(const std::vector<Row>& rows) {
    if (rows.empty()) return "no rows";
    std::string text;
    for (const auto& row : rows) {
        if (!text.empty()) text += "; ";
        text += row.label + " [" + row.buttonTitle + (row.buttonEnabled ? "" : ", disabled") + "]";
    }
    return text;
}

bool SimPermissionList::click(std::size_t row) {
    const SimCellView* view = table() ? table()->viewAtRow(row) : nullptr;
    if (!view || !view->button) {
        mac_.record("list", "no button in row " + std::to_string(row + 1));
        return false;
    }
    // Kept apart from the table: the click may lead to a reload that reuses
    // the view for another row.
    auto button = view->button;
    mac_.record("list", "\"" + button->title() + "\" of " + view->labelText +
                            (button->isEnabled() ? " is clicked" : " is clicked but disabled"));
    return button->performClick();
}

void SimPermissionList::userClicks(double delay, std::size_t row) {
    std::weak_ptr<bool> alive = alive_;
    mac_.userDoes(delay, "clicks the button in row " + std::to_string(row + 1), [this, alive, row] {
        if (alive.lock()) click(row);
    });
}

void SimPermissionList::recordRowsIfChanged() {
    auto shown = rows();
    if (recordedRows_ && *recordedRows_ == shown) return;
    recordedRows_ = shown;
    mac_.record("list", "shows " + describe(shown));
}

}  // namespace vantro::sim
