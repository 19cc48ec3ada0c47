#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/PlatformUnderTest.h"

namespace vantro::test {
namespace {

// The workspace's contract: one object per running process, the activation
// notification's registrations (a duplicate delivers twice, one removal
// removes all), and clear answers for applications and URLs that are not
// there. Nothing here launches, activates or hides a real application.
class WorkspaceContract : public ::testing::Test {
protected:
    std::unique_ptr<PlatformUnderTest> put = makePlatformUnderTest();
    Workspace& workspace = put->platform().workspace();
};

TEST_F(WorkspaceContract, TheCurrentApplicationIsOneObjectForAsLongAsItIsHeld) {
    RunningApplicationPtr current = workspace.currentApplication();
    ASSERT_NE(current, nullptr);
    EXPECT_FALSE(current->isTerminated());
    EXPECT_GT(current->processIdentifier(), 0);
    EXPECT_EQ(workspace.currentApplication(), current) << "a second answer for the same process is the same object";
    EXPECT_TRUE(current->isEqual(*workspace.currentApplication()));
}

TEST_F(WorkspaceContract, EachRegistrationDeliversAndOneRemovalEndsThemAll) {
    RunningApplicationPtr current = workspace.currentApplication();
    int twice = 0, once = 0;
    std::vector<RunningApplicationPtr> received;
    const char twiceObserver = 0, onceObserver = 0;
    workspace.addActivationObserver(&twiceObserver, [&](RunningApplicationPtr app) {
        ++twice;
        received.push_back(app);
    });
    workspace.addActivationObserver(&twiceObserver, [&](RunningApplicationPtr) { ++twice; });
    workspace.addActivationObserver(&onceObserver, [&](RunningApplicationPtr) { ++once; });

    put->postActivationNotification(current);
    EXPECT_EQ(twice, 2) << "a duplicate registration delivers again";
    EXPECT_EQ(once, 1);
    ASSERT_EQ(received.size(), 1u);
    EXPECT_EQ(received[0], current) << "the handler gets the very object the workspace hands out";

    // A notification without an application hands on nothing.
    put->postActivationNotification(nullptr);
    EXPECT_EQ(twice, 4);
    ASSERT_EQ(received.size(), 2u);
    EXPECT_EQ(received[1], nullptr);

    workspace.removeActivationObserver(&twiceObserver);
    put->postActivationNotification(current);
    EXPECT_EQ(twice, 4) << "one removal removes every registration of the observer";
    EXPECT_EQ(once, 3) << "and only that observer's";

    // Removing what is no longer there is harmless; removeObserver ends the rest.
    workspace.removeActivationObserver(&twiceObserver);
    workspace.removeObserver(&onceObserver);
    put->postActivationNotification(current);
    EXPECT_EQ(once, 3);

    // An observer may register again after its removal.
    workspace.addActivationObserver(&twiceObserver, [&](RunningApplicationPtr) { ++twice; });
    put->postActivationNotification(current);
    EXPECT_EQ(twice, 5);
    workspace.removeObserver(&twiceObserver);
}

TEST_F(WorkspaceContract, ApplicationsAndURLsThatAreNotThereAreClearAnswers) {
    const std::string missing = "com.example.vantro.contract.no-such-application";
    EXPECT_TRUE(workspace.runningApplicationsWithBundleIdentifier(missing).empty());
    EXPECT_EQ(workspace.URLForApplicationWithBundleIdentifier(missing), std::nullopt);
    EXPECT_EQ(workspace.launchApplicationAtURL("file:///private/tmp/VantroContractNoSuchApplication.app/",
                                               NSWorkspaceLaunchWithoutActivation | NSWorkspaceLaunchAsync),
              nullptr);
    EXPECT_FALSE(workspace.openURL("not a url at all"));
    EXPECT_FALSE(workspace.openURL("vantro-contract-no-such-scheme:nothing"));
}

TEST_F(WorkspaceContract, InstalledApplicationsAreFileURLsOfTheirBundles) {
    // Finder is on every Mac, at a fixed place.
    EXPECT_EQ(workspace.URLForApplicationWithBundleIdentifier("com.apple.finder"),
              "file:///System/Library/CoreServices/Finder.app/");
    auto preferences = workspace.URLForApplicationWithBundleIdentifier(SystemPreferencesBundleIdentifier);
    ASSERT_TRUE(preferences.has_value());
    EXPECT_EQ(preferences->rfind("file:///", 0), 0u) << *preferences;
    EXPECT_TRUE(preferences->ends_with(".app/")) << *preferences;

    // Finder runs, as one process, for as long as someone is logged in.
    auto finders = workspace.runningApplicationsWithBundleIdentifier("com.apple.finder");
    ASSERT_EQ(finders.size(), 1u);
    EXPECT_EQ(finders[0]->bundleIdentifier(), "com.apple.finder");
    EXPECT_FALSE(finders[0]->isEqual(*workspace.currentApplication()));
    EXPECT_EQ(workspace.runningApplicationsWithBundleIdentifier("com.apple.finder")[0], finders[0]);
}

}  // namespace
}  // namespace vantro::test
