#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "Guide/Vantro.h"
#include "permissionlist/ListFixture.h"
#include "support/TemporaryResources.h"

namespace vantro {
namespace {

using test::AnnouncementProbe;
using test::identifiersOf;
using test::ListOnMac;
using test::strings;

std::vector<std::string> allIdentifiers() {
    return std::vector<std::string>(VantroPrivacyAllIdentifiers.begin(), VantroPrivacyAllIdentifiers.end());
}

void expectTimes(const std::vector<double>& actual, const std::vector<double>& expected) {
    ASSERT_EQ(actual.size(), expected.size()) << ::testing::PrintToString(actual);
    for (std::size_t i = 0; i < actual.size(); ++i) EXPECT_NEAR(actual[i], expected[i], 1e-9) << "rebuild " << i;
}

TEST(PermissionList, SupportedCategoriesFollowTheFlooredAppKitVersionAndTheSandbox) {
    const auto three = strings({VantroPrivacyContacts, VantroPrivacyCalendars, VantroPrivacyReminders});
    const auto ten = strings({VantroPrivacyFullDiskAccess, VantroPrivacyAutomation, VantroPrivacyAssistive,
                              VantroPrivacyLocationServices, VantroPrivacyContacts, VantroPrivacyDiagnostics,
                              VantroPrivacyCalendars, VantroPrivacyReminders, VantroPrivacyPhotos,
                              VantroPrivacyAccessibility});
    auto fifteen = ten;
    for (auto identifier : {VantroPrivacyDesktopFolder, VantroPrivacyDocumentsFolder, VantroPrivacyDownloadsFolder,
                            VantroPrivacyNetworkVolume, VantroPrivacyRemovableVolume})
        fifteen.emplace_back(identifier);
    auto withoutFullDiskAccess = [](std::vector<std::string> list) {
        std::erase(list, std::string(VantroPrivacyFullDiskAccess));
        return list;
    };

    struct Case { double appKit; const char* release; bool sandboxed; std::vector<std::string> listed; } cases[] = {
        {1265.0, "10.9", false, three},     {1561.0, "10.13", false, three},   {1561.99, "10.13", false, three},
        {1562.0, "10.14", false, ten},      {1671.0, "10.14", false, ten},     {1671.99, "10.14", false, ten},
        {1672.0, "10.15", false, fifteen},  {2575.3, "15", false, fifteen},    {1561.6, "10.13", true, three},
        {1671.2, "10.14", true, withoutFullDiskAccess(ten)},                   {1894.5, "10.15", true, withoutFullDiskAccess(fifteen)},
    };
    for (const auto& c : cases) {
        auto configuration = test::atAppKit(c.appKit, c.release);
        configuration.sandboxed = c.sandboxed;
        sim::SimulatedMac mac(configuration);
        // Every identifier, in declaration order; Files and Folders is never
        // listed by itself.
        ListOnMac shown(mac, allIdentifiers());
        EXPECT_EQ(identifiersOf(shown.controller->privacyCategories()), c.listed) << "AppKit " << c.appKit << (c.sandboxed ? " sandboxed" : "");
    }
}

TEST(PermissionList, TheSupportedCategoriesAreTheFirstListsForTheLifeOfTheProcess) {
    sim::SimulatedMac mac;  // 10.15, not sandboxed
    auto listed = [&] { return identifiersOf(ListOnMac(mac, allIdentifiers()).controller->privacyCategories()); };
    const auto first = listed();
    ASSERT_EQ(first.size(), 15u);
    // Neither an older release nor the sandbox, told after the first list,
    // changes what a later list of the same process offers.
    mac.changeRelease("10.13");
    mac.setSandboxed(true);
    EXPECT_EQ(listed(), first);
}

TEST(PermissionList, TheDefaultListShowsFullDiskAccessExceptInASandbox) {
    for (bool sandboxed : {false, true}) {
        sim::SimulatedMac mac(sim::MacConfiguration{.sandboxed = sandboxed});
        ListOnMac shown(mac, std::nullopt, true);
        EXPECT_EQ(shown.controller->requestedPrivacyCategoryIdentifiers(), strings({VantroPrivacyFullDiskAccess}));
        EXPECT_EQ(shown.controller->privacyCategories().size(), sandboxed ? 0u : 1u);
        using Rows = std::vector<sim::SimPermissionList::Row>;
        EXPECT_EQ(shown.list.rows(), (sandboxed ? Rows{} : Rows{{"Full Disk Access", "", "Grant Permission", true}}));
    }
}

TEST(PermissionList, RowsKeepTheRequestedOrderAndDuplicatesAndCarryAReasonOnlyWhenGiven) {
    sim::SimulatedMac mac;  // 10.15
    auto controller = VantroViewController::create();
    controller->setRequestedPrivacyCategoryIdentifiers({std::string(VantroPrivacyCalendars), "Privacy_Camera",
                                                       std::string(VantroPrivacyFilesAndFolders), "",
                                                       std::string(VantroPrivacyContacts),
                                                       std::string(VantroPrivacyCalendars)});
    controller->setReasonStrings(VantroViewController::ReasonStrings{
        {std::string(VantroPrivacyCalendars), "To show your events."},
        {std::string(VantroPrivacyReminders), "Never listed."},
        {std::string(VantroPrivacyContacts), ""},
    });
    sim::SimPermissionList list(mac, controller);
    list.loadView();

    const auto& rows = controller->privacyCategories();
    ASSERT_EQ(identifiersOf(rows), strings({VantroPrivacyCalendars, VantroPrivacyContacts, VantroPrivacyCalendars}));
    EXPECT_NE(rows[0], rows[2]);  // two records, not one listed twice
    const std::pair<const char*, const char*> expected[] = {{"Calendars", "To show your events."}, {"Contacts", ""}, {"Calendars", "To show your events."}};
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(*rows[i]->valueForKey(PrivacyCategoryLabelKey), Value(expected[i].first)) << i;
        ASSERT_TRUE(rows[i]->hasKey(PrivacyCategoryReasonKey)) << i;
        EXPECT_EQ(*rows[i]->valueForKey(PrivacyCategoryReasonKey), Value(expected[i].second)) << i;
        EXPECT_EQ(rows[i]->valueForKey(PrivacyCategoryStatusKey)->integerValue(), 0) << i;
    }
    // Dropped identifiers never reach the status center.
    EXPECT_TRUE(mac.log().lines().empty()) << ::testing::PrintToString(mac.log().lines());

    controller->setReasonStrings(std::nullopt);
    for (const auto& row : controller->privacyCategories()) EXPECT_FALSE(row->hasKey(PrivacyCategoryReasonKey));

    controller->setRequestedPrivacyCategoryIdentifiers({"Privacy_Camera", std::string(VantroPrivacyFilesAndFolders)});
    EXPECT_TRUE(controller->privacyCategories().empty());
    EXPECT_TRUE(list.rows().empty());
}

TEST(PermissionList, LabelsComeFromTheLabelsTableWithTheIdentifierAsFallback) {
    test::TemporaryResources resources;
    resources.write("en.lproj/PrivacyCategoryLabels.strings", "\"Privacy_Contacts\" = \"People\";\n");
    struct Case { const char* language; bool ownResources; const char* contacts; const char* calendars; } cases[] = {
        {"en", false, "Contacts", "Calendars"}, {"de", false, "Kontakte", "Kalender"}, {"en", true, "People", "Privacy_Calendars"}};
    for (const auto& c : cases) {
        sim::MacConfiguration configuration{.languages = {c.language}};
        sim::SimulatedMac mac(c.ownResources ? resources.configuration(configuration) : configuration);
        ListOnMac shown(mac, strings({VantroPrivacyContacts, VantroPrivacyCalendars}));
        ASSERT_EQ(shown.list.rows().size(), 2u);
        EXPECT_EQ(shown.list.rows()[0].label, c.contacts) << c.language;
        EXPECT_EQ(shown.list.rows()[1].label, c.calendars) << c.language;
    }
}

TEST(PermissionList, NothingIsBuiltBeforeTheViewLoadsAndSettersRebuildAtOnceAfterwards) {
    sim::SimulatedMac mac;
    auto controller = VantroViewController::create();
    AnnouncementProbe published(mac, *controller, "privacyCategories");
    controller->setRequestedPrivacyCategoryIdentifiers(strings({VantroPrivacyContacts}));
    controller->setReasonStrings(VantroViewController::ReasonStrings{{std::string(VantroPrivacyContacts), "To find friends."}});
    mac.runFor(1.0);
    EXPECT_TRUE(published.times.empty());
    EXPECT_TRUE(controller->privacyCategories().empty());
    EXPECT_FALSE(controller->isViewLoaded());

    sim::SimPermissionList list(mac, controller);
    list.loadView();
    expectTimes(published.times, {1.0});
    ASSERT_EQ(list.rows().size(), 1u);
    EXPECT_EQ(list.rows()[0].reason, "To find friends.");

    // Loaded: each setter rebuilds there and then, with nothing left pending.
    controller->setRequestedPrivacyCategoryIdentifiers(strings({VantroPrivacyContacts, VantroPrivacyCalendars}));
    EXPECT_EQ(list.rows().size(), 2u);
    controller->setReasonStrings(VantroViewController::ReasonStrings{{std::string(VantroPrivacyCalendars), "Events."}});
    EXPECT_EQ(list.rows()[0].reason, "");
    EXPECT_EQ(list.rows()[1].reason, "Events.");
    expectTimes(published.times, {1.0, 1.0, 1.0});
    EXPECT_EQ(mac.runLoop().pendingPerforms(controller.get(), VantroViewController::UpdatePrivacyCategoriesSelector), 0u);
    EXPECT_TRUE(published.allRowsHadStatus);

    // A second load does nothing.
    controller->didLoadView();
    EXPECT_EQ(published.times.size(), 3u);
}

TEST(PermissionList, ActivationsWhileOnScreenRebuildOnce0_1SecondsAfterTheLastOfABurst) {
    sim::SimulatedMac mac;
    ListOnMac shown(mac, std::nullopt, true);
    auto& list = shown.list;
    AnnouncementProbe rebuilds(mac, *shown.controller, "privacyCategories");
    auto& workspace = mac.workspace();
    auto activate = [&](double at, const char* bundleIdentifier) {
        mac.userDoes(at, std::string("activates ") + bundleIdentifier, [&workspace, bundleIdentifier] {
            workspace.activate(bundleIdentifier);
        });
    };
    const char* finder = "com.apple.finder";
    const char* host = "com.example.VantroDemo";
    // A burst with gaps below 0.1 s: one rebuild, after the last.
    activate(1.00, finder);
    activate(1.04, host);
    activate(1.08, finder);
    activate(1.17, host);
    // Alone.
    activate(2.00, finder);
    // Two activations further apart than 0.1 s: two rebuilds.
    activate(3.00, host);
    activate(3.15, finder);
    // Off screen, activations are not heard.
    mac.userDoes(4.0, "closes the list's window", [&] { list.hide(); });
    activate(4.50, host);
    mac.userDoes(5.0, "opens the list's window", [&] { list.show(); });
    activate(5.50, finder);
    mac.runFor(7.0);

    expectTimes(rebuilds.times, {1.27, 2.10, 3.10, 3.25, 5.60});
    EXPECT_TRUE(rebuilds.allRowsHadStatus);
}

TEST(PermissionList, EveryRefreshAnnouncesStatusEvenWhenItIsUnchanged) {
    sim::SimulatedMac mac;
    ListOnMac shown(mac);
    auto& controller = shown.controller;
    auto row = controller->privacyCategories().at(0);
    AnnouncementProbe status(mac, *row, std::string(PrivacyCategoryStatusKey));

    controller->updatePrivacyStatuses();
    controller->updatePrivacyStatuses();
    mac.privacy().setFullDiskAccess(true);
    mac.runOnePass();  // the probe's answer is kept until the run loop's next pass
    controller->updatePrivacyStatuses();
    EXPECT_EQ(status.statuses, (std::vector<long>{1, 1, 2}));
    // The same record was refreshed; the table still shows it, now granted.
    EXPECT_EQ(controller->privacyCategories().at(0), row);
    EXPECT_EQ(shown.list.rows().at(0), (sim::SimPermissionList::Row{"Full Disk Access", "", "Permission Granted", false}));
}

TEST(PermissionList, ReleasingTheControllerEndsEveryRegistration) {
    struct Case { const char* name; bool load, show, pendingRebuild; std::size_t objections; } cases[] = {
        {"never loaded", false, false, false, 1},
        {"never loaded, rebuild pending", false, false, true, 1},
        {"loaded", true, false, false, 0},
        {"on screen, rebuild pending", true, true, true, 0},
    };
    for (const auto& c : cases) {
        sim::SimulatedMac mac;
        auto guide = Vantro::sharedKit();
        const auto guideObservations = guide->observationCount();
        const auto activationObservers = mac.workspace().activationObserverCount();
        auto controller = VantroViewController::create();
        const void* address = controller.get();
        {
            sim::SimPermissionList list(mac, controller);
            if (c.load) list.loadView();
            if (c.show) list.show();
            if (c.pendingRebuild) controller->scheduleUpdatePrivacyCategories();
            // The window closes while the controller is still shown.
        }
        controller.reset();
        EXPECT_EQ(mac.log().objections().size(), c.objections) << c.name;
        if (c.objections) {
            EXPECT_NE(mac.log().objections()[0].find("isOverlayShown"), std::string::npos) << c.name;
        }
        EXPECT_EQ(guide->observationCount(), guideObservations) << c.name;
        EXPECT_EQ(mac.workspace().activationObserverCount(), activationObservers) << c.name;
        EXPECT_EQ(mac.runLoop().pendingPerforms(address, VantroViewController::UpdatePrivacyCategoriesSelector), 0u)
            << c.name;
        mac.workspace().activate("com.apple.finder");
        mac.runFor(2.0);  // nothing left runs on the released controller
    }
}

TEST(PermissionList, TheTableReusesItsCellsAcrossRebuilds) {
    sim::SimulatedMac mac;
    ListOnMac shown(mac, strings({VantroPrivacyContacts, VantroPrivacyCalendars}));
    auto& [controller, list] = shown;
    auto* table = list.table();
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->cellViewsMade(), 2u);
    auto firstCell = table->viewAtRow(0)->cell;
    EXPECT_EQ(firstCell->vantroViewController(), controller);
    EXPECT_EQ(firstCell->objectValue(), controller->privacyCategories()[0]);

    controller->updatePrivacyCategories();
    EXPECT_EQ(table->cellViewsMade(), 2u);
    EXPECT_EQ(table->viewAtRow(0)->cell, firstCell);
    EXPECT_EQ(firstCell->objectValue(), controller->privacyCategories()[0]);

    controller->setRequestedPrivacyCategoryIdentifiers(strings({VantroPrivacyReminders}));
    EXPECT_EQ(table->numberOfRows(), 1u);
    controller->setRequestedPrivacyCategoryIdentifiers(
        strings({VantroPrivacyContacts, VantroPrivacyCalendars, VantroPrivacyReminders}));
    EXPECT_EQ(table->cellViewsMade(), 3u);
    EXPECT_EQ(list.rows().size(), 3u);

    // A column the layout does not have gets no view.
    EXPECT_EQ(controller->tableView(*table, TableColumn("Other"), 0), nullptr);
}

// Runs the simulated Mac in small steps until the guide's overlay shows (or
// stops showing); answers the time it did, or a negative one.
double runUntilOverlay(sim::SimulatedMac& mac, bool shown, double limit = 10.0) {
    for (double waited = 0; waited < limit; waited += 0.05) {
        if (Vantro::sharedKit()->isOverlayShown() == shown) return mac.now();
        mac.runFor(0.05);
    }
    return -1;
}

TEST(PermissionList, TheRefreshTimerRunsExactlyWhileTheOverlayShows) {
    sim::SimulatedMac mac;
    // Loaded but never on screen: activations cause no rebuilds, and the
    // timer does not care.
    ListOnMac shown(mac);
    auto& controller = shown.controller;
    EXPECT_EQ(controller->vantroWatcherTimer(), nullptr);
    test::AnnouncementProbe rebuilds(mac, *controller, "privacyCategories");

    Vantro::sharedKit()->askAccessForPanelIdentifier(VantroPrivacyFullDiskAccess);
    const double shownAt = runUntilOverlay(mac, true);
    ASSERT_GT(shownAt, 0) << mac.timeline().format();
    auto timer = controller->vantroWatcherTimer();
    ASSERT_NE(timer, nullptr);
    EXPECT_TRUE(timer->isValid());
    EXPECT_TRUE(rebuilds.times.empty());

    // Each tick leads to a full rebuild 0.1 s later. The overlay was noticed
    // at most one step after it showed, so the ticks fall in these windows.
    mac.runFor(3.2);
    ASSERT_EQ(rebuilds.times.size(), 3u) << ::testing::PrintToString(rebuilds.times);
    const double firstTick = rebuilds.times[0] - 0.1;
    EXPECT_GT(firstTick, shownAt - 0.05 + 1.0 - 1e-9);
    EXPECT_LE(firstTick, shownAt + 1.0 + 1e-9);
    EXPECT_NEAR(rebuilds.times[1], rebuilds.times[0] + 1.0, 1e-9);
    EXPECT_NEAR(rebuilds.times[2], rebuilds.times[0] + 2.0, 1e-9);

    // A notification in another context, even one with the same text, is not
    // the list's: it does not restart a timer stopped behind its back.
    timer->invalidate();
    const std::string sameText(IsOverlayShownContext);
    controller->observeValueForKeyPath("isOverlayShown", *Vantro::sharedKit(), sameText.c_str());
    EXPECT_EQ(controller->vantroWatcherTimer(), timer);
    controller->observeValueForKeyPath("isOverlayShown", *Vantro::sharedKit(), IsOverlayShownContext);
    auto restarted = controller->vantroWatcherTimer();
    ASSERT_NE(restarted, nullptr);
    EXPECT_NE(restarted, timer);

    Vantro::sharedKit()->stop();
    EXPECT_FALSE(Vantro::sharedKit()->isOverlayShown());
    EXPECT_EQ(controller->vantroWatcherTimer(), nullptr);
    EXPECT_FALSE(restarted->isValid());
    const auto rebuildsBefore = rebuilds.times.size();
    mac.runFor(3.0);
    // At most the rebuild already scheduled by the last tick.
    EXPECT_LE(rebuilds.times.size(), rebuildsBefore + 1);
    EXPECT_EQ(mac.runLoop().pendingTimers(), 0u) << mac.timeline().format();
}

// A list loaded while the overlay already shows refreshes from the start: its
// observation of the guide begins with the current value, not the next change.
TEST(PermissionList, AListLoadedUnderAShownOverlayStartsItsTimerAtOnce) {
    sim::SimulatedMac mac;
    Vantro::sharedKit()->askAccessForPanelIdentifier(VantroPrivacyFullDiskAccess);
    ASSERT_GT(runUntilOverlay(mac, true), 0);
    ListOnMac late(mac);
    auto timer = late.controller->vantroWatcherTimer();
    ASSERT_NE(timer, nullptr);
    EXPECT_TRUE(timer->isValid());
    Vantro::sharedKit()->stop();
    EXPECT_EQ(late.controller->vantroWatcherTimer(), nullptr);
}

TEST(PermissionList, ReleasingTheControllerStopsItsTimer) {
    sim::SimulatedMac mac;
    auto controller = VantroViewController::create();
    auto list = std::make_unique<sim::SimPermissionList>(mac, controller);
    list->loadView();
    Vantro::sharedKit()->askAccessForPanelIdentifier(VantroPrivacyFullDiskAccess);
    ASSERT_GT(runUntilOverlay(mac, true), 0);
    mac.runFor(0.95);  // a tick is due within the next 0.1 s
    auto timer = controller->vantroWatcherTimer();
    ASSERT_NE(timer, nullptr);
    list.reset();
    controller.reset();
    EXPECT_FALSE(timer->isValid());
    EXPECT_TRUE(mac.log().objections().empty());
    mac.runFor(3.0);  // nothing runs on the released controller
    Vantro::sharedKit()->stop();
}

}  // namespace
}  // namespace vantro
