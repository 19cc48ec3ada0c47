#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Bundles.h"
#include "Platform/SharedOwnership.h"
#include "Platform/Controls.h"
#include "Platform/Observation.h"
#include "Platform/RunLoop.h"
#include "Vocabulary/PrivacyCategoryRecord.h"
#include "Vocabulary/VantroPrivacy.h"

namespace vantro {

// The embeddable permission list: one row per requested privacy category with
// its label, the host's reason and a request button (a
// VantroRequestButtonTableCellView). The rows are rebuilt 0.1 seconds after
// any application becomes active while the view is on screen, and once a
// second while the guide's overlay is shown.
//
// Observable for "privacyCategories", announced each time the rows are
// replaced; the layout's array controller binds the table to it.
//
// Controllers are made with create() (or makeShared of a subclass): delayed
// rebuilds, the refresh timer and the cells hold the controller weakly,
// through weak_from_this, which needs shared ownership. The host owns the
// controller; the platform makes the lifecycle calls. Main thread.
class VantroViewController : public ViewController,
                             public Observable,
                             public Observer,
                             public std::enable_shared_from_this<VantroViewController> {
public:
    using ReasonStrings = std::map<std::string, std::string, std::less<>>;

    // init: a controller listing only Full Disk Access, whose view the
    // platform loads from the layout named by viewNibName.
    static std::shared_ptr<VantroViewController> create();
    explicit VantroViewController(const SharedOwnership&);
    ~VantroViewController() override;

    // The name of the layout the platform loads the view from: the
    // controller's own class's name, "VantroViewController" here. A subclass
    // with a layout of its own overrides this with its class's name.
    virtual std::string viewNibName() const { return "VantroViewController"; }
    // The bundle that holds the layout: the framework's. A shell whose
    // subclass keeps its layout elsewhere answers that bundle.
    virtual std::shared_ptr<Bundle> nibBundle() const;
    // What the platform loads the view from: viewNibName() without a Swift
    // module prefix, when nibBundle() holds that layout compiled. nullopt,
    // after one line to the system log, when it does not: the platform then
    // gives the controller an empty view and loads nothing, so the list
    // shows no rows rather than raising.
    std::optional<std::string> nibNameToLoad() const;

    const std::vector<std::string>& requestedPrivacyCategoryIdentifiers() const { return requestedIdentifiers_; }
    // Stores the identifiers and, once the view is loaded, rebuilds at once.
    void setRequestedPrivacyCategoryIdentifiers(std::vector<std::string> identifiers);
    const std::optional<ReasonStrings>& reasonStrings() const { return reasonStrings_; }
    // Stores the reasons and, once the view is loaded, rebuilds at once.
    void setReasonStrings(std::optional<ReasonStrings> reasons);

    // The rows now shown.
    const std::vector<PrivacyCategoryRecordPtr>& privacyCategories() const { return privacyCategories_; }
    void setPrivacyCategories(std::vector<PrivacyCategoryRecordPtr> rows);

    // The layout's table outlet; the controller's own code never uses it.
    std::shared_ptr<TableView> privacyCategoriesTableView() const { return privacyCategoriesTableView_.lock(); }
    void setPrivacyCategoriesTableView(const std::shared_ptr<TableView>& table) { privacyCategoriesTableView_ = table; }
    // The layout's array controller outlet, which feeds the table from
    // "privacyCategories"; the controller's own code never uses it.
    std::shared_ptr<ArrayController> privacyCategoriesArrayController() const {
        return privacyCategoriesArrayController_.lock();
    }
    void setPrivacyCategoriesArrayController(const std::shared_ptr<ArrayController>& arrayController) {
        privacyCategoriesArrayController_ = arrayController;
    }
    // The once-a-second refresh while the overlay is shown; nullptr otherwise.
    std::shared_ptr<Timer> vantroWatcherTimer() const { return vantroWatcherTimer_.lock(); }

    void viewDidLoad() override;
    void viewDidAppear() override;
    void viewDidDisappear() override;
    void observeValueForKeyPath(std::string_view keyPath, Observable& object, ObservationContext context) override;

    // Replaces any pending delayed rebuild by one 0.1 seconds from now.
    void scheduleUpdatePrivacyCategories();
    // Rebuilds the rows from the requested identifiers now.
    void updatePrivacyCategories();
    // Refreshes the status of every row shown.
    void updatePrivacyStatuses();
    // Sets each row's "status" afresh from the status center, announcing it
    // even when it is unchanged.
    void updatePrivacyStatuses(const std::vector<PrivacyCategoryRecordPtr>& rows);
    // Starts the refresh timer while the guide's overlay is shown, stops it
    // otherwise.
    void updateVantroWatcherTimer();

    // tableView:viewForTableColumn:row: — the table's view for the column,
    // told which list it belongs to when it is a request button cell.
    std::shared_ptr<View> tableView(TableView& tableView, const TableColumn& tableColumn, long row);

    std::string observableName() const override { return "VantroViewController"; }

    // The selector under which delayed rebuilds are scheduled and cancelled.
    static constexpr std::string_view UpdatePrivacyCategoriesSelector = "updatePrivacyCategories";

private:
    std::vector<std::string> requestedIdentifiers_;
    std::optional<ReasonStrings> reasonStrings_;
    std::vector<PrivacyCategoryRecordPtr> privacyCategories_;
    std::weak_ptr<TableView> privacyCategoriesTableView_;
    std::weak_ptr<ArrayController> privacyCategoriesArrayController_;
    std::weak_ptr<Timer> vantroWatcherTimer_;
};

}  // namespace vantro
