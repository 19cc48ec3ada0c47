#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "PermissionList/VantroRequestButtonTableCellView.h"
#include "permissionlist/ListFixture.h"
#include "support/TemporaryResources.h"

namespace vantro {
namespace {

PrivacyCategoryRecordPtr makeRow(std::optional<std::string_view> identifier, std::optional<Value> status) {
    Value::Dictionary contents;
    if (identifier) contents.emplace(PrivacyCategoryIdentifierKey, *identifier);
    if (status) contents.emplace(PrivacyCategoryStatusKey, *status);
    return std::make_shared<PrivacyCategoryRecord>(std::move(contents));
}

// A cell with its button, as the layout makes them; the button starts out
// with a title and state no row would give it.
struct CellWithButton {
    CellWithButton() {
        button->setEnabled(false);
        cell->setAuthorizationButton(button);
    }
    std::shared_ptr<sim::SimButton> button = std::make_shared<sim::SimButton>("Untouched");
    std::shared_ptr<VantroRequestButtonTableCellView> cell = std::make_shared<VantroRequestButtonTableCellView>();
};

TEST(RequestButtonCell, TitleAndStateFollowTheStatusAndTheRequestType) {
    sim::SimulatedMac mac;
    struct Case { std::optional<std::string_view> identifier; std::optional<Value> status; const char* title; bool enabled; } cases[] = {
        {VantroPrivacyFullDiskAccess, Value(0), "Grant Permission", true},     // request type 1
        {VantroPrivacyAccessibility, Value(1), "Grant Permission", true},      // request type 1
        {VantroPrivacyAutomation, Value(0), "Check Permission", true},         // request type 2
        {VantroPrivacyAutomation, Value(1), "Check Permission", true},
        {VantroPrivacyCalendars, Value(1), "Request Permission", true},        // request type 0
        {"Privacy_Camera", Value(0), "Request Permission", true},              // not in the resource
        {VantroPrivacyFullDiskAccess, std::nullopt, "Grant Permission", true}, // no status reads as 0
        {std::nullopt, Value(1), "Request Permission", true},
        {VantroPrivacyFullDiskAccess, Value(2), "Permission Granted", false},
        {VantroPrivacyAutomation, Value(2), "Permission Granted", false},
        {VantroPrivacyFullDiskAccess, Value(3), "Untouched", false},
        {VantroPrivacyFullDiskAccess, Value(-1), "Untouched", false},
        {VantroPrivacyCalendars, Value(-2), "Untouched", false},
    };
    for (const auto& c : cases) {
        CellWithButton view;
        view.cell->setObjectValue(makeRow(c.identifier, c.status));
        std::string name = std::string(c.identifier.value_or("(none)")) + " " + (c.status ? c.status->description() : "(none)");
        EXPECT_EQ(view.button->title(), c.title) << name;
        EXPECT_EQ(view.button->isEnabled(), c.enabled) << name;
    }
}

TEST(RequestButtonCell, TitlesComeFromTheDefaultStringsTableOfTheFrameworkBundle) {
    test::TemporaryResources resources;
    resources.write("en.lproj/Localizable.strings", "\"Grant Permission\" = \"Allow in Settings\";\n");
    struct Case { bool ownResources; std::vector<std::string> languages; long status; const char* title; } cases[] = {
        {false, {"de"}, 1, "Berechtigung erteilen"},
        {false, {"de"}, 2, "Berechtigung erteilt"},
        {true, {"en"}, 1, "Allow in Settings"},
        {true, {"en"}, 2, "Permission Granted"},  // a missing entry shows its key
    };
    for (const auto& c : cases) {
        sim::MacConfiguration configuration;
        configuration.languages = c.languages;
        if (c.ownResources) configuration = resources.configuration(configuration);
        sim::SimulatedMac mac(configuration);
        CellWithButton view;
        view.cell->setObjectValue(makeRow(VantroPrivacyFullDiskAccess, Value(c.status)));
        EXPECT_EQ(view.button->title(), c.title);
    }
}

TEST(RequestButtonCell, OnlyTheCurrentRowsStatusReachesTheButton) {
    sim::SimulatedMac mac;
    CellWithButton view;
    auto first = makeRow(VantroPrivacyFullDiskAccess, Value(2));
    auto second = makeRow(VantroPrivacyCalendars, Value(0));

    view.cell->setObjectValue(first);  // brought up to date at once
    EXPECT_EQ(view.button->title(), "Permission Granted");
    EXPECT_FALSE(view.button->isEnabled());
    struct Step { long status; const char* title; bool enabled; } steps[] = {
        {1, "Grant Permission", true},
        {3, "Grant Permission", true},  // unexpected: left as it was
        {2, "Permission Granted", false},
        {-1, "Permission Granted", false},
        {0, "Grant Permission", true},
    };
    for (const auto& s : steps) {
        first->setValueForKey(PrivacyCategoryStatusKey, Value(s.status));
        EXPECT_EQ(view.button->title(), s.title) << s.status;
        EXPECT_EQ(view.button->isEnabled(), s.enabled) << s.status;
    }

    view.cell->setObjectValue(second);
    EXPECT_EQ(view.button->title(), "Request Permission");
    first->setValueForKey(PrivacyCategoryStatusKey, Value(2));
    EXPECT_EQ(view.button->title(), "Request Permission");
    EXPECT_TRUE(view.button->isEnabled());
    EXPECT_EQ(first->observationCount(), 0u);
    EXPECT_EQ(second->observationCount(), 1u);

    view.cell->setObjectValue(second);  // the same row again: still one observation
    EXPECT_EQ(second->observationCount(), 1u);
    second->setValueForKey(PrivacyCategoryStatusKey, Value(2));
    EXPECT_EQ(view.button->title(), "Permission Granted");

    view.cell->setObjectValue(nullptr);
    EXPECT_EQ(second->observationCount(), 0u);
    EXPECT_EQ(view.button->title(), "Permission Granted");

    view.cell->setObjectValue(first);
    view.cell.reset();  // the cell goes; its row stays
    EXPECT_EQ(first->observationCount(), 0u);
    first->setValueForKey(PrivacyCategoryStatusKey, Value(1));
    EXPECT_EQ(view.button->title(), "Permission Granted");
    EXPECT_TRUE(mac.log().objections().empty());
}

TEST(RequestButtonCell, OnlyItsOwnContextIsRecognised) {
    sim::SimulatedMac mac;
    CellWithButton view;
    auto row = makeRow(VantroPrivacyFullDiskAccess, Value(2));
    view.cell->setObjectValue(row);
    view.button->setTitle("Untouched");
    const std::string sameText(VantroRequestButtonTableCellView::StatusContext);
    view.cell->observeValueForKeyPath(PrivacyCategoryStatusKey, *row, sameText.c_str());
    view.cell->observeValueForKeyPath(PrivacyCategoryStatusKey, *row, IsOverlayShownContext);
    EXPECT_EQ(view.button->title(), "Untouched");
    view.cell->observeValueForKeyPath(PrivacyCategoryStatusKey, *row, VantroRequestButtonTableCellView::StatusContext);
    EXPECT_EQ(view.button->title(), "Permission Granted");
}

TEST(RequestButtonCell, AClickRequestsTheRowsCategoryAndSchedulesARebuild) {
    sim::SimulatedMac mac;  // 10.15
    auto controller = VantroViewController::create();
    controller->setRequestedPrivacyCategoryIdentifiers({std::string(VantroPrivacyNetworkVolume)});
    sim::SimPermissionList list(mac, controller);
    list.loadView();  // off screen: activations cause no rebuilds of their own
    test::AnnouncementProbe rebuilds(mac, *controller, "privacyCategories");
    ASSERT_EQ(list.rows().size(), 1u);
    EXPECT_EQ(list.rows()[0].buttonTitle, "Grant Permission");

    // The network-volume request opens the privacy settings only when it is
    // not silent.
    list.userClicks(1.0, 0);
    mac.runFor(1.05);
    EXPECT_TRUE(mac.timeline().contains("\"Grant Permission\" of Network Volumes is clicked", "list"));
    EXPECT_EQ(mac.workspace().openedURLs(),
              std::vector<std::string>{"x-apple.systempreferences:com.apple.preference.security?Privacy_AllFiles"});
    EXPECT_EQ(mac.runLoop().pendingPerforms(controller.get(), VantroViewController::UpdatePrivacyCategoriesSelector), 1u);
    mac.runFor(1.0);
    ASSERT_EQ(rebuilds.times.size(), 1u);
    EXPECT_NEAR(rebuilds.times[0], 1.1, 1e-9);

    // A granted row's button is disabled: clicking it sends nothing.
    mac.privacy().setFullDiskAccess(true);
    mac.runOnePass();
    controller->updatePrivacyStatuses();
    EXPECT_EQ(list.rows()[0].buttonTitle, "Permission Granted");
    EXPECT_FALSE(list.click(0));
    EXPECT_EQ(mac.workspace().openedURLs().size(), 1u);
    EXPECT_EQ(mac.runLoop().pendingPerforms(controller.get(), VantroViewController::UpdatePrivacyCategoriesSelector), 0u);

    // A cell that outlives its list still requests, and schedules nothing.
    auto cell = list.table()->viewAtRow(0)->cell;
    rebuilds.stop();
    list.close();
    controller.reset();
    EXPECT_EQ(cell->vantroViewController(), nullptr);
    cell->requestAuthorization(nullptr);
    EXPECT_EQ(mac.workspace().openedURLs().size(), 2u);  // the request is made all the same
    mac.runFor(1.0);
}

TEST(RequestButtonCell, ARowWithoutIdentifierMakesTheButtonInert) {
    sim::SimulatedMac mac;
    auto controller = VantroViewController::create();
    auto rowWith = [](Value identifier) {
        return std::make_shared<PrivacyCategoryRecord>(
            Value::Dictionary{{std::string(PrivacyCategoryIdentifierKey), std::move(identifier)}});
    };
    struct Case {
        const char* name;
        std::shared_ptr<PrivacyCategoryRecord> row;
        std::vector<std::string> log;
        std::size_t rebuilds;
    } cases[] = {
        {"no identifier", makeRow(std::nullopt, Value(1)), {}, 0},
        {"a null identifier", rowWith(Value()), {}, 0},
        // Present but not a string: an identifier the status center does not serve.
        {"a number", rowWith(Value(7)), {"Privacy category identifier not supported: 7"}, 1},
    };
    for (const auto& c : cases) {
        const std::size_t logged = mac.log().lines().size();
        CellWithButton view;
        view.cell->setVantroViewController(controller);
        view.cell->setObjectValue(c.row);
        view.button->setAction([cell = std::weak_ptr(view.cell)](Button& sender) {
            if (auto live = cell.lock()) live->requestAuthorization(&sender);
        });
        EXPECT_TRUE(view.button->performClick());
        EXPECT_EQ(std::vector<std::string>(mac.log().lines().begin() + static_cast<std::ptrdiff_t>(logged), mac.log().lines().end()),
                  c.log)
            << c.name;
        EXPECT_TRUE(mac.workspace().openedURLs().empty()) << c.name;
        EXPECT_EQ(mac.runLoop().pendingPerforms(controller.get(), VantroViewController::UpdatePrivacyCategoriesSelector),
                  c.rebuilds)
            << c.name;
        mac.runFor(1.0);
    }
    const std::size_t logged = mac.log().lines().size();
    CellWithButton empty;
    empty.cell->requestAuthorization(nullptr);  // no row at all
    EXPECT_EQ(mac.log().lines().size(), logged);
}

}  // namespace
}  // namespace vantro
