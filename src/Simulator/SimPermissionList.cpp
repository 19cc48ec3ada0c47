#include "Simulator/SimPermissionList.h"

#include <algorithm>

#include "Simulator/SimulatedMac.h"

namespace vantro::sim {

namespace {

// The context of the table's content binding to "privacyCategories".
constexpr char ContentBindingContext[] = "privacyCategories";

std::string stringForKey(const PrivacyCategoryRecordPtr& row, std::string_view key) {
    if (!row) return {};
    const Value* value = row->valueForKey(key);
    return value && value->isString() ? *value->stringPointer() : std::string();
}

}  // namespace

bool SimButton::performClick() {
    if (!enabled_ || !action_) return false;
    // The action may set another action on this button while it runs.
    auto action = action_;
    action(*this);
    return true;
}

SimTableView::~SimTableView() { unbind(); }

void SimTableView::bind(const std::shared_ptr<VantroViewController>& owner) {
    unbind();
    if (!owner) return;
    owner_ = owner;
    bound_ = true;
    owner->addObserver(*this, "privacyCategories", ObservingOptionInitial, ContentBindingContext);
}

void SimTableView::unbind() {
    if (bound_) {
        // A controller already gone took its registrations with it.
        if (auto owner = owner_.lock()) owner->removeObserver(*this, "privacyCategories", ContentBindingContext);
        bound_ = false;
    }
    owner_.reset();
    content_.clear();
    // The cells go before the rows they show, so each ends its observation of
    // a row that still exists (the cell itself holds its row).
    visible_.clear();
    reusable_.clear();
    handedOut_.clear();
}

void SimTableView::observeValueForKeyPath(std::string_view keyPath, Observable& object, ObservationContext context) {
    (void)keyPath;
    (void)object;
    if (context == ContentBindingContext) reloadData();
}

std::shared_ptr<View> SimTableView::makeViewWithIdentifier(std::string_view identifier, const void* owner) {
    // The layout's cell view has no outlet to its owner: the owner is not
    // needed to make it.
    (void)owner;
    if (identifier != PrivacyCategoryColumnIdentifier) return nullptr;
    SimCellView view;
    if (!reusable_.empty()) {
        view = std::move(reusable_.front());
        reusable_.erase(reusable_.begin());
    } else {
        view.cell = std::make_shared<VantroRequestButtonTableCellView>();
        view.button = std::make_shared<SimButton>(std::string(LayoutButtonTitle));
        view.cell->setAuthorizationButton(view.button);
        std::weak_ptr<VantroRequestButtonTableCellView> target = view.cell;
        view.button->setAction([target](Button& sender) {
            if (auto cell = target.lock()) cell->requestAuthorization(&sender);
        });
        ++cellViewsMade_;
    }
    handedOut_.push_back(view);
    return view.cell;
}

void SimTableView::reloadData() {
    auto owner = owner_.lock();
    content_ = owner ? owner->privacyCategories() : std::vector<PrivacyCategoryRecordPtr>{};
    for (auto& shown : visible_)
        if (shown) reusable_.push_back(std::move(*shown));
    visible_.clear();

    const TableColumn column{std::string(PrivacyCategoryColumnIdentifier)};
    for (std::size_t row = 0; row < content_.size(); ++row) {
        std::shared_ptr<View> view = owner ? owner->tableView(*this, column, static_cast<long>(row)) : nullptr;
        auto made = std::find_if(handedOut_.begin(), handedOut_.end(),
                                 [&](const SimCellView& v) { return view && v.cell.get() == view.get(); });
        if (made == handedOut_.end()) {
            visible_.emplace_back(std::nullopt);
            continue;
        }
        SimCellView shown = std::move(*made);
        handedOut_.erase(made);
        // What the layout's bindings do: the row becomes the cell's object
        // value, and the text fields show its label and reason.
        shown.cell->setObjectValue(content_[row]);
        shown.labelText = stringForKey(content_[row], PrivacyCategoryLabelKey);
        shown.reasonText = stringForKey(content_[row], PrivacyCategoryReasonKey);
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
    if (table_ || !controller_) return;
    table_ = std::make_shared<SimTableView>(mac_);
    table_->setReloadHandler([this] { recordRowsIfChanged(); });
    controller_->setPrivacyCategoriesTableView(table_);
    table_->bind(controller_);
    mac_.record("list", "view loaded");
    controller_->didLoadView();
}

void SimPermissionList::show() {
    if (!controller_ || onScreen_) return;
    loadView();
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
    if (table_) {
        table_->setReloadHandler(nullptr);
        table_->unbind();
        table_.reset();
    }
    mac_.record("list", "closed");
    controller_.reset();
}

std::vector<SimPermissionList::Row> SimPermissionList::rows() const {
    std::vector<Row> rows;
    if (!table_) return rows;
    for (std::size_t i = 0; i < table_->numberOfRows(); ++i) {
        Row row;
        if (const SimCellView* view = table_->viewAtRow(i)) {
            row.label = view->labelText;
            row.reason = view->reasonText;
            row.buttonTitle = view->button->title();
            row.buttonEnabled = view->button->isEnabled();
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
    const SimCellView* view = table_ ? table_->viewAtRow(row) : nullptr;
    if (!view) {
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
