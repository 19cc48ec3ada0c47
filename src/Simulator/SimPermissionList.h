#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "PermissionList/VantroRequestButtonTableCellView.h"
#include "PermissionList/VantroViewController.h"
#include "Platform/Controls.h"
#include "Simulator/ListNib.h"

namespace vantro::sim {

class SimulatedMac;

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

// A plain table cell view (NSTableCellView), made when the layout's cell view
// is not of the framework's class. It holds the row it shows and nothing else.
class SimTableCellView : public TableCellView {
public:
    const PrivacyCategoryRecordPtr& objectValue() const { return objectValue_; }
    void setObjectValue(PrivacyCategoryRecordPtr row) { objectValue_ = std::move(row); }

private:
    PrivacyCategoryRecordPtr objectValue_;
};

// One cell view made from the layout's prototype: the view itself, the
// framework's cell when the view is one, its first button, and what its text
// fields show.
struct SimCellView {
    // The identifier the view was made for.
    std::string identifier;
    std::shared_ptr<TableCellView> view;
    // The same object as `view` when the layout made a
    // VantroRequestButtonTableCellView; nullptr for a plain cell view.
    std::shared_ptr<VantroRequestButtonTableCellView> cell;
    std::shared_ptr<SimButton> button;
    // The prototype it was made from: its text fields and their bindings.
    std::vector<NibCellTextField> textFields;
    // What the first and the second text field show: the row's label and
    // reason through the bindings to "objectValue.label" and
    // "objectValue.reason", the layout's own text without a binding.
    std::string labelText;
    std::string reasonText;
};

// The layout's array controller (NSArrayController): its content array bound
// to the owner's "privacyCategories", it arranges the rows for the table.
// Observable for "arrangedObjects", announced each time the content changes.
// The owner is held weakly, as bindings hold what they observe.
class SimArrayController : public ArrayController, public Observable, public Observer {
public:
    ~SimArrayController() override;

    // Binds the content array to the owner's "privacyCategories"; the content
    // is read at once.
    void bindContentArray(const std::shared_ptr<VantroViewController>& owner);
    void unbind();

    const std::vector<PrivacyCategoryRecordPtr>& arrangedObjects() const { return arrangedObjects_; }
    void observeValueForKeyPath(std::string_view keyPath, Observable& object, ObservationContext context) override;
    std::string observableName() const override { return "NSArrayController"; }

private:
    std::weak_ptr<VantroViewController> owner_;
    bool bound_ = false;
    std::vector<PrivacyCategoryRecordPtr> arrangedObjects_;
};

// The list layout's view-based table. Its rows come only through its content
// binding to an array controller's arranged objects; it reloads each time
// they change. For each row it asks its delegate for a view for its first
// column (tableView:viewForTableColumn:row:); without a delegate it makes the
// view itself by the column's identifier, as a bound table does. Then,
// through the bindings, the row becomes the view's object value and the text
// fields show what they are bound to. makeViewWithIdentifier finds the
// layout's prototype cell view by identifier and makes it as the class the
// layout names, connecting its outlets and its button's action; cells no
// longer shown are reused by later reloads. The delegate is held weakly.
class SimTableView : public TableView, public Observer {
public:
    SimTableView(SimulatedMac& mac, NibTable layout) : mac_(mac), layout_(std::move(layout)) {}
    ~SimTableView() override;

    // Binds the content to the array controller's "arrangedObjects"; the
    // content is read at once. The binding keeps the array controller.
    void bindContent(const std::shared_ptr<SimArrayController>& arrayController);
    void setDelegate(const std::shared_ptr<VantroViewController>& delegate) { delegate_ = delegate; }
    // Lets go of the array controller, the delegate and every cell.
    void unbind();

    std::shared_ptr<View> makeViewWithIdentifier(std::string_view identifier, const void* owner) override;
    void observeValueForKeyPath(std::string_view keyPath, Observable& object, ObservationContext context) override;

    // Reads the content again and rebuilds every row's view.
    void reloadData();

    const NibTable& layout() const { return layout_; }
    std::size_t numberOfRows() const { return visible_.size(); }
    // The view shown in `row`; nullptr past the end or when the row got none.
    const SimCellView* viewAtRow(std::size_t row) const;
    // How many cell views were made from the layout, and how many reloads ran.
    std::size_t cellViewsMade() const { return cellViewsMade_; }
    std::size_t reloadCount() const { return reloadCount_; }
    // Runs after every reload.
    void setReloadHandler(std::function<void()> handler) { reloadHandler_ = std::move(handler); }

private:
    std::optional<SimCellView> makeCellView(const NibCellView& prototype);

    SimulatedMac& mac_;
    NibTable layout_;
    std::shared_ptr<SimArrayController> arrayController_;
    std::weak_ptr<VantroViewController> delegate_;
    std::vector<PrivacyCategoryRecordPtr> content_;
    std::vector<std::optional<SimCellView>> visible_;
    // Made views waiting for reuse.
    std::vector<SimCellView> reusable_;
    std::vector<SimCellView> handedOut_;
    std::size_t cellViewsMade_ = 0;
    std::size_t reloadCount_ = 0;
    std::function<void()> reloadHandler_;
};

// A window showing a permission list controller's view. It keeps the
// controller as a window keeps its content view controller, loads the view
// from the layout the controller names (viewNibName) when first asked, and
// tells the controller when the view comes on screen and leaves it. Every
// change of the rows shown is put on the timeline under "list".
//
// Loading honours the layout: the File's Owner must be a VantroViewController
// (or the class viewNibName names) and may connect only the outlets it has
// (view, privacyCategoriesTableView, privacyCategoriesArrayController); the
// view outlet must be connected; the array controllers' content arrays may be
// bound only to the owner's "privacyCategories". Otherwise the view does not
// load and the timeline says why. Everything else the layout leaves out
// shows in what the user sees: a table without content binding shows no
// rows, a cell view that is not found gives its row no view, and so on.
// What NSViewController raises when the layout it is told to load is not
// there ("could not load the nib"). Nothing of the framework catches it: a
// test that meets it fails, as the host would have.
class NibLoadFailure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

class SimPermissionList {
public:
    SimPermissionList(SimulatedMac& mac, std::shared_ptr<VantroViewController> controller);
    SimPermissionList(const SimPermissionList&) = delete;
    SimPermissionList& operator=(const SimPermissionList&) = delete;
    ~SimPermissionList();

    // Loads the view once, as the list's Objective-C class does: the layout
    // the controller names (nibNameToLoad) with its objects, outlets and
    // bindings, or an empty view when the controller names none; then the
    // controller's viewDidLoad. Loading a layout that is not there raises
    // NibLoadFailure, as AppKit does. A layout that does not load leaves the
    // view unloaded; later calls try nothing more.
    void loadView();
    // Puts the window on screen (loading the view first when needed); a view
    // that did not load is not shown.
    void show();
    // Takes the window off screen.
    void hide();
    // Closes the window: off screen, the view released, the controller let go.
    void close();

    bool isViewLoaded() const { return loaded_; }
    bool isOnScreen() const { return onScreen_; }
    const std::shared_ptr<VantroViewController>& controller() const { return controller_; }
    // The layout's (first) table; nullptr before the view is loaded, after
    // closing, or when the layout has none.
    SimTableView* table() const { return tables_.empty() ? nullptr : tables_.front().get(); }

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
    bool loadLayout(const std::string& name);
    void release();

    SimulatedMac& mac_;
    std::shared_ptr<VantroViewController> controller_;
    bool loaded_ = false;
    bool triedLoading_ = false;
    // The layout's array controllers by id, and its tables.
    std::vector<std::pair<std::string, std::shared_ptr<SimArrayController>>> arrayControllers_;
    std::vector<std::shared_ptr<SimTableView>> tables_;
    bool onScreen_ = false;
    std::optional<std::vector<Row>> recordedRows_;
    // Lets scheduled clicks tell that the window is gone.
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace vantro::sim
