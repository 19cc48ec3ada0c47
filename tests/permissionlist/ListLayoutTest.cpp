#include <gtest/gtest.h>

#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "permissionlist/ListFixture.h"
#include "support/LayoutEdits.h"
#include "support/TemporaryResources.h"

namespace vantro {
namespace {

using Row = sim::SimPermissionList::Row;

// What a host sees of a list for Network Volumes shown from a layout, and
// what one click on the row's button does.
struct ListBehaviour {
    bool loaded = false;
    bool tableOutlet = false;
    bool arrayControllerOutlet = false;
    std::vector<Row> rows;
    // The button sent its action.
    bool clickSent = false;
    // The request reached the status center, which opened the privacy pane.
    bool requested = false;
    // The cell knew its list: a rebuild follows 0.1 seconds later.
    bool rebuildScheduled = false;
    bool operator==(const ListBehaviour&) const = default;
};

void PrintTo(const ListBehaviour& b, std::ostream* os) {
    *os << "{loaded " << b.loaded << ", table outlet " << b.tableOutlet << ", array controller outlet "
        << b.arrayControllerOutlet << ", rows " << ::testing::PrintToString(b.rows) << ", click sent " << b.clickSent
        << ", requested " << b.requested << ", rebuild " << b.rebuildScheduled << "}";
}

ListBehaviour observeList(const std::string& layout) {
    test::TemporaryResources resources;
    resources.write("VantroViewController.xib", layout);
    sim::SimulatedMac mac(resources.configuration());  // 10.15
    auto controller = VantroViewController::create();
    controller->setRequestedPrivacyCategoryIdentifiers({std::string(VantroPrivacyNetworkVolume)});
    controller->setReasonStrings(VantroViewController::ReasonStrings{{std::string(VantroPrivacyNetworkVolume), "For backups."}});
    sim::SimPermissionList list(mac, controller);
    list.show();
    ListBehaviour b;
    b.loaded = list.isViewLoaded() && controller->isViewLoaded();
    b.tableOutlet = controller->privacyCategoriesTableView() != nullptr;
    b.arrayControllerOutlet = controller->privacyCategoriesArrayController() != nullptr;
    b.rows = list.rows();
    b.clickSent = list.click(0);
    b.requested = !mac.workspace().openedURLs().empty();
    b.rebuildScheduled =
        mac.runLoop().pendingPerforms(controller.get(), VantroViewController::UpdatePrivacyCategoriesSelector) == 1;
    return b;
}

// The real layout, and copies each missing one thing the list relies on:
// each case says how what the host sees differs from the real layout's.
TEST(ListLayout, EveryPartOfTheLayoutShowsInWhatTheHostSees) {
    const ListBehaviour real{true, true, true, {{"Network Volumes", "For backups.", "Grant Permission", true}}, true, true, true};
    const ListBehaviour nothing{};
    const auto nothingShows = [&](ListBehaviour& b) { b = nothing; };
    const auto noClick = [](ListBehaviour& b) { b.clickSent = b.requested = b.rebuildScheduled = false; };
    const auto noRows = [&](ListBehaviour& b) { b.rows.clear(); noClick(b); };
    const auto anEmptyRow = [&](ListBehaviour& b) { b.rows = {Row{}}; noClick(b); };
    struct Case { const char* name; test::LayoutEdit edit; std::function<void(ListBehaviour&)> differs; } cases[] = {
        {"the real layout", test::unchanged(), [](ListBehaviour&) {}},
        {"owner of another class", test::replacing(R"(customClass="VantroViewController")", R"(customClass="NSViewController")"),
         nothingShows},
        {"view outlet", test::withoutElement(R"(property="view")"), nothingShows},
        {"unknown owner outlet", test::replacing(R"(property="privacyCategoriesTableView")", R"(property="tableView")"),
         nothingShows},
        {"table outlet", test::withoutElement(R"(property="privacyCategoriesTableView")"),
         [](ListBehaviour& b) { b.tableOutlet = false; }},
        {"array controller outlet", test::withoutElement(R"(property="privacyCategoriesArrayController")"),
         [](ListBehaviour& b) { b.arrayControllerOutlet = false; }},
        {"array controller's content binding", test::withoutElement(R"(name="contentArray")"), noRows},
        {"content bound to a key the owner lacks", test::replacing(R"(keyPath="privacyCategories")", R"(keyPath="privacyCategory")"),
         nothingShows},
        {"table's content binding", test::withoutElement(R"(name="content")"), noRows},
        {"table's delegate", test::withoutElement(R"(property="delegate")"),
         [](ListBehaviour& b) { b.rebuildScheduled = false; }},
        {"column identifier", test::replacing(R"(<tableColumn identifier="PrivacyCategoryColumn")", R"(<tableColumn identifier="Other")"), anEmptyRow},
        {"cell view identifier",
         test::replacing(R"(<tableCellView identifier="PrivacyCategoryColumn")", R"(<tableCellView identifier="Other")"), anEmptyRow},
        // A plain NSTableCellView has no authorizationButton to connect, so
        // the table cannot make the view.
        {"cell view class", test::withoutAttribute(R"(customClass="VantroRequestButtonTableCellView")"), anEmptyRow},
        {"button outlet", test::withoutElement(R"(property="authorizationButton")"),
         [](ListBehaviour& b) { b.rows[0].buttonTitle = "Request Permission"; }},
        {"button action", test::withoutElement(R"(selector="requestAuthorization:")"), noClick},
        {"button action's target", test::replacing(R"(target="cEl-Pc-001")", R"(target="-2")"), noClick},
        {"label binding", test::withoutElement(R"(keyPath="objectValue.label")"),
         [](ListBehaviour& b) { b.rows[0].label = "Label"; }},
        {"reason binding", test::withoutElement(R"(keyPath="objectValue.reason")"),
         [](ListBehaviour& b) { b.rows[0].reason = "Reason"; }},
    };
    for (const auto& c : cases) {
        ListBehaviour expected = real;
        c.differs(expected);
        EXPECT_EQ(observeList(c.edit(test::realLayout("VantroViewController"))), expected) << c.name;
    }
}

// A subclass with a layout of its own, named as Objective-C or as Swift
// names a class.
class CustomList : public VantroViewController {
public:
    CustomList(const SharedOwnership& ownership, std::string name)
        : VantroViewController(ownership), name_(std::move(name)) {}
    std::string viewNibName() const override { return name_; }

private:
    std::string name_;
};

// Each class loads the layout named after it, a Swift module prefix left
// out; a layout that is not there gives an empty view and one log line,
// never AppKit's exception, as under `swift build`, which compiles none.
TEST(ListLayout, EachClassLoadsTheLayoutItsViewNibNameNames) {
    const std::string ownLayout = test::replacing(R"(customClass="VantroViewController")", R"(customClass="CustomList")")(
        test::realLayout("VantroViewController"));
    // customLayout nullopt: none. className empty: the base class.
    struct Case {
        const char* name;
        const char* className;
        std::optional<std::string> customLayout;
        bool removeBaseLayout, compiled;
        const char* missing;  // the layout named in the log line, or nullptr when it loads
    } cases[] = {
        {"the base class loads VantroViewController", "", std::nullopt, false, true, nullptr},
        {"the base class without its layout", "", ownLayout, true, true, "VantroViewController"},
        {"the base class under swift build", "", std::nullopt, false, false, "VantroViewController"},
        {"a subclass without a layout of its name", "CustomList", std::nullopt, false, true, "CustomList"},
        {"a subclass with its own layout", "CustomList", ownLayout, true, true, nullptr},
        {"a Swift subclass with its own layout", "App.CustomList", ownLayout, true, true, nullptr},
        {"a subclass's layout made for the base class", "CustomList", test::realLayout("VantroViewController"), true, true,
         nullptr},
    };
    for (const auto& c : cases) {
        test::TemporaryResources resources;
        if (c.customLayout) resources.write("CustomList.xib", *c.customLayout);
        if (c.removeBaseLayout) resources.remove("VantroViewController.xib");
        auto configuration = resources.configuration();
        configuration.layoutsCompiled = c.compiled;
        sim::SimulatedMac mac(configuration);
        const std::string className = c.className;
        std::shared_ptr<VantroViewController> controller =
            className.empty() ? VantroViewController::create() : makeShared<CustomList>(className);
        sim::SimPermissionList list(mac, controller);
        EXPECT_NO_THROW(list.show()) << c.name;
        EXPECT_TRUE(controller->isViewLoaded()) << c.name;
        EXPECT_TRUE(list.isOnScreen()) << c.name;
        EXPECT_EQ(list.rows().size(), c.missing ? 0u : 1u) << c.name;
        std::vector<std::string> expectedLog;
        if (c.missing) expectedLog.push_back("Compiled layout not found: " + std::string(c.missing));
        EXPECT_EQ(mac.log().lines(), expectedLog) << c.name;
    }
}

TEST(ListLayout, TheOutletsHoldNeitherTheTableNorTheArrayController) {
    sim::SimulatedMac mac;
    auto controller = VantroViewController::create();
    auto list = std::make_unique<sim::SimPermissionList>(mac, controller);
    list->loadView();
    std::weak_ptr<TableView> table = controller->privacyCategoriesTableView();
    std::weak_ptr<ArrayController> arrayController = controller->privacyCategoriesArrayController();
    ASSERT_FALSE(table.expired());
    ASSERT_FALSE(arrayController.expired());
    // The rows reach the table through the array controller.
    auto* simulated = dynamic_cast<sim::SimArrayController*>(arrayController.lock().get());
    ASSERT_NE(simulated, nullptr);
    EXPECT_EQ(simulated->arrangedObjects(), controller->privacyCategories());
    // The window's view hierarchy keeps them; the controller does not.
    list.reset();
    EXPECT_TRUE(table.expired());
    EXPECT_TRUE(arrayController.expired());
    EXPECT_EQ(controller->privacyCategoriesTableView(), nullptr);
    EXPECT_EQ(controller->privacyCategoriesArrayController(), nullptr);
    // The bindings are gone with them: a rebuild reaches nothing freed.
    controller->updatePrivacyCategories();
    EXPECT_EQ(controller->observationCount(), 0u);
    EXPECT_TRUE(mac.log().objections().empty());
}

}  // namespace
}  // namespace vantro
