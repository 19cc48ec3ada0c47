#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "PermissionList/VantroRequestButtonTableCellView.h"
#include "PermissionList/VantroViewController.h"
#include "Platform/Controls.h"

namespace vantro::sim {

class SimulatedMac;

// The identifier of the list layout's one column and of the cell view it
// registers ("VantroViewController" layout).
inline constexpr std::string_view PrivacyCategoryColumnIdentifier = "PrivacyCategoryColumn";
// The title the layout gives the request button before any row is shown.
inline constexpr std::string_view LayoutButtonTitle = "Request Permission";

// A push button whose title and state can be read and which the scripted
// user can click.
class SimButton : public Button {
public:
    explicit SimButton(std::string title) : title_(std::move(title)) {}

    void setTitle(std::string title) override { title_ = std::move(title); }
    std::string title() const override { return title_; }
    void setEnabled(bool enabled) override { enabled_ = enabled; }
    bool isEnabled() const override { return enabled_; }
    void setAction(std::function<void(Button& sender)> action) override { action_ = std::move(action); }

    // A click: sends the action when the button is enabled. Answers whether
    // it was sent.
    bool performClick();

private:
    std::string title_;
    bool enabled_ = true;
    std::function<void(Button&)> action_;
};

// One cell view made from the layout: the framework's cell, the button
// connected to its outlet and action, and the two text fields bound to the
// row's "label" and "reason".
struct SimCellView {
    std::shared_ptr<VantroRequestButtonTableCellView> cell;
    std::shared_ptr<SimButton> button;
    std::string labelText;
    std::string reasonText;
};

// The list layout's table: its content bound to the owner's
// "privacyCategories" (through the layout's array controller), the owner as
// delegate. Each time the rows change it reloads: it asks the delegate for a
// view per row by column identifier and gives each cell its row as object
// value. Cells it no longer shows are reused by later reloads. The owner is
// held weakly, as bindings and delegates are.
class SimTableView : public TableView, public Observer {
public:
    explicit SimTableView(SimulatedMac& mac) : mac_(mac) {}
    ~SimTableView() override;

    // Binds the content and the delegate to `owner`; the content is read at
    // once.
    void bind(const std::shared_ptr<VantroViewController>& owner);
    // Lets go of the owner and of every cell.
    void unbind();

    std::shared_ptr<View> makeViewWithIdentifier(std::string_view identifier, const void* owner) override;
    void observeValueForKeyPath(std::string_view keyPath, Observable& object, ObservationContext context) override;

    // Reads the content again and rebuilds every row's view.
    void reloadData();

    std::size_t numberOfRows() const { return visible_.size(); }
    // The view shown in `row`; nullptr past the end or when the delegate gave
    // none.
    const SimCellView* viewAtRow(std::size_t row) const;
    // How many cell views were made from the layout, and how many reloads ran.
    std::size_t cellViewsMade() const { return cellViewsMade_; }
    std::size_t reloadCount() const { return reloadCount_; }
    // Runs after every reload.
    void setReloadHandler(std::function<void()> handler) { reloadHandler_ = std::move(handler); }

private:
    SimulatedMac& mac_;
    std::weak_ptr<VantroViewController> owner_;
    bool bound_ = false;
    std::vector<PrivacyCategoryRecordPtr> content_;
    std::vector<std::optional<SimCellView>> visible_;
    std::vector<SimCellView> reusable_;
    std::vector<SimCellView> handedOut_;
    std::size_t cellViewsMade_ = 0;
    std::size_t reloadCount_ = 0;
    std::function<void()> reloadHandler_;
};

// A window showing a permission list controller's view. It keeps the
// controller as a window keeps its content view controller, loads the view
// from the layout when first asked, and tells the controller when the view
// comes on screen and leaves it. Every change of the rows shown is put on the
// timeline under "list".
class SimPermissionList {
public:
    SimPermissionList(SimulatedMac& mac, std::shared_ptr<VantroViewController> controller);
    SimPermissionList(const SimPermissionList&) = delete;
    SimPermissionList& operator=(const SimPermissionList&) = delete;
    ~SimPermissionList();

    // Loads the view once: the table, the outlets and the bindings, then the
    // controller's viewDidLoad.
    void loadView();
    // Puts the window on screen (loading the view first when needed).
    void show();
    // Takes the window off screen.
    void hide();
    // Closes the window: off screen, the view released, the controller let go.
    void close();

    bool isViewLoaded() const { return table_ != nullptr; }
    bool isOnScreen() const { return onScreen_; }
    const std::shared_ptr<VantroViewController>& controller() const { return controller_; }
    // The table; nullptr before the view is loaded or after closing.
    SimTableView* table() const { return table_.get(); }

    // A row as the user sees it.
    struct Row {
        std::string label;
        std::string reason;
        std::string buttonTitle;
        bool buttonEnabled = false;
        bool operator==(const Row&) const = default;
    };
    std::vector<Row> rows() const;
    // "Full Disk Access [Grant Permission]; Contacts [Permission Granted, disabled]".
    static std::string describe(const std::vector<Row>& rows);

    // Clicks the button of `row`; answers whether the button sent its action.
    bool click(std::size_t row);
    // The scripted user clicks the button of `row`, `delay` seconds from now.
    void userClicks(double delay, std::size_t row);

    // Puts the rows on the timeline if they differ from those last put there.
    void recordRowsIfChanged();

private:
    SimulatedMac& mac_;
    std::shared_ptr<VantroViewController> controller_;
    std::shared_ptr<SimTableView> table_;
    bool onScreen_ = false;
    std::optional<std::vector<Row>> recordedRows_;
    // Lets scheduled clicks tell that the window is gone.
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace vantro::sim
