#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "Overlay/VantroWindowController.h"
#include "platform/PlatformUnderTest.h"

namespace vantro::test {
namespace {

// Windows' contract: the window list and what each description holds, the
// options that leave the desktop and off-screen windows out, the overlay's
// layout and its window as the window server lists it, and global monitors.
class WindowsContract : public ::testing::Test {
protected:
    static constexpr std::uint32_t onScreenOnly = kCGWindowListOptionOnScreenOnly;
    static constexpr std::uint32_t onScreenWithoutDesktop = kCGWindowListOptionOnScreenOnly | kCGWindowListExcludeDesktopElements;

    // The desktop picture and icons sit at levels tens of units above the
    // lowest one; every other window is far above them.
    static bool isDesktopElement(const Value& description) {
        const Value* layer = description.find("kCGWindowLayer");
        return layer && layer->integerValue() < INT_MIN / 2;
    }

    std::vector<Value> list(std::uint32_t options) {
        auto descriptions = windows.windowListDescriptions(options);
        EXPECT_TRUE(descriptions.has_value()) << "the window server answers";
        return descriptions.value_or(std::vector<Value>{});
    }

    // The on-screen window of this process at `level`, if listed.
    std::optional<Value> ownWindowAt(long level) {
        const int pid = put->platform().workspace().currentApplication()->processIdentifier();
        for (const Value& description : list(onScreenWithoutDesktop)) {
            const Value* owner = description.find("kCGWindowOwnerPID");
            const Value* layer = description.find("kCGWindowLayer");
            if (owner && owner->integerValue() == pid && layer && layer->integerValue() == level) return description;
        }
        return std::nullopt;
    }

    std::unique_ptr<PlatformUnderTest> put = makePlatformUnderTest();
    Windows& windows = put->platform().windows();
};

struct VisibleRecorder : Observer {
    int changes = 0;
    void observeValueForKeyPath(std::string_view keyPath, Observable&, ObservationContext) override {
        if (keyPath == "visible") ++changes;
    }
};

TEST_F(WindowsContract, EveryListedWindowIsDescribedWholly) {
    const Rect screen = windows.mainScreenFrame();
    EXPECT_GT(screen.size.width, 0);
    EXPECT_GT(screen.size.height, 0);

    const std::vector<Value> listed = list(onScreenOnly);
    ASSERT_FALSE(listed.empty()) << "a logged-in session shows at least the desktop";
    std::set<std::int64_t> numbers;
    for (const Value& description : listed) {
        SCOPED_TRACE(description.description());
        ASSERT_TRUE(description.isDictionary());
        for (const char* key : {"kCGWindowNumber", "kCGWindowLayer", "kCGWindowOwnerPID", "kCGWindowAlpha"}) {
            const Value* value = description.find(key);
            ASSERT_TRUE(value && value->isNumber()) << key;
        }
        EXPECT_TRUE(numbers.insert(description.find("kCGWindowNumber")->integerValue()).second) << "window numbers are unique";
        EXPECT_GT(description.find("kCGWindowOwnerPID")->integerValue(), 0);
        const double alpha = description.find("kCGWindowAlpha")->doubleValue();
        EXPECT_TRUE(alpha >= 0 && alpha <= 1);
        const Value* bounds = description.find("kCGWindowBounds");
        ASSERT_TRUE(bounds && bounds->isDictionary());
        for (const char* key : {"X", "Y", "Width", "Height"}) {
            const Value* value = bounds->find(key);
            ASSERT_TRUE(value && value->isNumber()) << key;
        }
        EXPECT_GE(bounds->find("Width")->doubleValue(), 0);
        EXPECT_GE(bounds->find("Height")->doubleValue(), 0);
    }
}

TEST_F(WindowsContract, DesktopElementsAreListedOnlyWhenNotExcluded) {
    int desktop = 0;
    for (const Value& description : list(onScreenOnly)) desktop += isDesktopElement(description);
    EXPECT_GT(desktop, 0) << "without the option the desktop picture is listed";
    for (const Value& description : list(onScreenWithoutDesktop))
        EXPECT_FALSE(isDesktopElement(description)) << description.description();
}

TEST_F(WindowsContract, TheOverlayLayoutGivesAWindowTheServerListsWhereItWasPut) {
    auto controller = VantroWindowController::initWithWindowNibName("VantroWindowController");
    OverlayWindow* window = controller->window();
    ASSERT_NE(window, nullptr) << "the overlay's layout loads";
    EXPECT_NE(controller->iconView(), nullptr);
    EXPECT_NE(controller->unlockMessageField(), nullptr);

    VisibleRecorder recorder;
    window->addObserver(recorder, "visible", ObservingOptionNone, nullptr);

    const Color tint{0.25, 0.5, 0.75, 0.5};
    window->setBackgroundColor(tint);
    const Color back = window->backgroundColor();
    for (auto [got, wanted] : {std::pair{back.red, tint.red}, {back.green, tint.green}, {back.blue, tint.blue}, {back.alpha, tint.alpha}})
        EXPECT_NEAR(got, wanted, 0.01);
    window->setLevel(NSPopUpMenuWindowLevel);
    EXPECT_EQ(window->level(), NSPopUpMenuWindowLevel);

    // Screen coordinates (origin bottom left) become the list's (top left).
    const Rect frame{{40, 60}, {320, 200}};
    window->setFrame(frame, true, false);
    EXPECT_EQ(window->frame(), frame);
    window->orderFront();
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(recorder.changes, 1);

    std::optional<Value> listed;
    ASSERT_TRUE(put->runMainLoopUntil([&] { return (listed = ownWindowAt(NSPopUpMenuWindowLevel)).has_value(); }))
        << "the shown overlay is on the on-screen list, at its level";
    const Value& bounds = *listed->find("kCGWindowBounds");
    const double screenHeight = windows.mainScreenFrame().size.height;
    EXPECT_DOUBLE_EQ(bounds.find("X")->doubleValue(), 40);
    EXPECT_DOUBLE_EQ(bounds.find("Y")->doubleValue(), screenHeight - 60 - 200);
    EXPECT_DOUBLE_EQ(bounds.find("Width")->doubleValue(), 320);
    EXPECT_DOUBLE_EQ(bounds.find("Height")->doubleValue(), 200);

    window->orderOut();
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(recorder.changes, 2);
    EXPECT_TRUE(put->runMainLoopUntil([&] { return !ownWindowAt(NSPopUpMenuWindowLevel); }))
        << "a hidden overlay leaves the on-screen list";
    window->removeObserver(recorder, "visible", nullptr);
}

TEST_F(WindowsContract, ALayoutThatIsNotThereGivesNothing) {
    auto controller = VantroWindowController::initWithWindowNibName("VantroContractNoSuchLayout");
    ASSERT_NE(controller, nullptr);
    EXPECT_EQ(controller->window(), nullptr);
    EXPECT_EQ(controller->iconView(), nullptr);
    EXPECT_EQ(controller->unlockMessageField(), nullptr);
    EXPECT_FALSE(controller->inDrag());
}

TEST_F(WindowsContract, AMouseMonitorIsInstalledAndRemoved) {
    constexpr std::uint64_t mouseUpAndDown = (1ull << NSEventTypeLeftMouseDown) | (1ull << NSEventTypeLeftMouseUp);
    auto monitor = windows.addGlobalMonitorForEventsMatchingMask(mouseUpAndDown, [](const Event&) {});
    ASSERT_NE(monitor, nullptr) << "watching other applications' mouse clicks needs no permission";
    windows.removeMonitor(monitor);
    windows.removeMonitor(monitor);
    windows.removeMonitor(nullptr);
}

}  // namespace
}  // namespace vantro::test
