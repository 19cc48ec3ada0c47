#include <gtest/gtest.h>

#include <deque>
#include <vector>

#include "Overlay/ZVMainBundleIconImageView.h"
#include "Simulator/SimulatedMac.h"

namespace vantro {
namespace {

// Hands out scripted events as the window would, and notes each mask asked.
struct EventScript {
    std::deque<Event> events;
    std::vector<std::uint64_t> masks;
    ZVMainBundleIconImageView::NextEventMatchingMask source() {
        return [this](std::uint64_t mask) -> std::optional<Event> {
            masks.push_back(mask);
            if (events.empty()) return std::nullopt;
            Event e = events.front();
            events.pop_front();
            return e;
        };
    }
};

struct InDragRecorder : Observer {
    std::vector<bool> seen;
    void observeValueForKeyPath(std::string_view, Observable& object, ObservationContext) override {
        seen.push_back(static_cast<ZVMainBundleIconImageView&>(object).inDrag());
    }
};

const char recorderContext[] = "recorder";

Event down(long clickCount = 1, Point at = {30, 20}) { return {NSEventTypeLeftMouseDown, clickCount, at}; }
Event up() { return {NSEventTypeLeftMouseUp, 1, {30, 20}}; }
Event dragged(Point at = {34, 25}) { return {NSEventTypeLeftMouseDragged, 1, at}; }

class IconView : public ::testing::Test {
protected:
    sim::SimulatedMac mac;
    std::shared_ptr<ZVMainBundleIconImageView> view =
        ZVMainBundleIconImageView::initWithFrame({{26, 23}, {64, 48}}, "NSApplicationIcon:Vantro Demo");
    std::vector<Event> forwarded;
    void SetUp() override {
        view->setNextResponder([this](const Event& e) { forwarded.push_back(e); });
    }
};

// The first click into the overlay reaches the icon, and the icon may be
// dragged anywhere with any operation.
TEST_F(IconView, TakesTheFirstClickAndAllowsEveryOperation) {
    EXPECT_TRUE(view->acceptsFirstMouse(nullptr));
    auto session = sim::SimDraggingSession({}, {}, {}, {}, {});
    for (auto context : {DraggingContext::OutsideApplication, DraggingContext::WithinApplication})
        EXPECT_EQ(view->sourceOperationMaskForDraggingContext(session, context), NSDragOperationEvery);
}

TEST_F(IconView, WhichMouseDownsStartTheDragLoop) {
    struct Case {
        const char* name;
        Event event;
        bool tracked;
    } cases[] = {
        {"single left click", down(1), true},
        {"double click", down(2), false},
        {"triple click", down(3), false},
        {"left mouse-down without a click count", down(0), false},
        {"right mouse-down", {NSEventTypeRightMouseDown, 1, {30, 20}}, false},
    };
    for (const auto& c : cases) {
        forwarded.clear();
        EventScript script{{up()}};
        view->mouseDown(c.event, script.source());
        EXPECT_EQ(script.masks.size(), c.tracked ? 1u : 0u) << c.name;
        EXPECT_EQ(script.events.empty(), c.tracked) << c.name << ": the mouse-up is taken only by the loop";
        ASSERT_EQ(forwarded.size(), c.tracked ? 0u : 1u) << c.name;
        if (!c.tracked) {
            EXPECT_EQ(forwarded[0].type, c.event.type) << c.name << ": passed on unchanged";
            EXPECT_EQ(forwarded[0].clickCount, c.event.clickCount) << c.name;
        }
        EXPECT_EQ(mac.dragging().sessionsBegun(), 0) << c.name;
        EXPECT_FALSE(view->inDrag()) << c.name;
    }
}

// The loop asks for left drags and ups (mask 68), waits over anything else,
// and ends on the mouse-up, or when the events run out, with nothing done.
TEST_F(IconView, TheDragLoopEndsOnTheMouseUpOrWhenEventsRunOut) {
    EventScript click{{up(), dragged()}};
    view->mouseDown(down(), click.source());
    EXPECT_EQ(click.masks, (std::vector<std::uint64_t>{68}));
    EXPECT_EQ(click.events.size(), 1u) << "nothing is taken after the mouse-up";
    EventScript ends;
    view->mouseDown(down(), ends.source());
    view->mouseDown(down(), nullptr);
    EXPECT_EQ(mac.dragging().sessionsBegun(), 0);
    EXPECT_FALSE(view->inDrag());
    EXPECT_TRUE(forwarded.empty());
    EventScript others{{{5 /* mouse moved */, 0, {1, 1}}, {NSEventTypeRightMouseDown, 1, {2, 2}}, dragged()}};
    view->mouseDown(down(), others.source());
    EXPECT_EQ(others.masks.size(), 3u);
    EXPECT_EQ(mac.dragging().sessionsBegun(), 1);
}

TEST_F(IconView, FirstDragStartsOneSessionWithTheMouseDown) {
    EventScript script{{dragged({31, 20}), dragged({60, 40}), up()}};
    view->mouseDown(down(1, {30, 20}), script.source());
    EXPECT_EQ(script.events.size(), 2u) << "no threshold: the first drag starts it";
    ASSERT_EQ(mac.dragging().sessionsBegun(), 1);
    const auto& session = mac.dragging().session();
    ASSERT_TRUE(session);
    EXPECT_EQ(session->event().type, NSEventTypeLeftMouseDown);
    EXPECT_EQ(session->event().locationInWindow, (Point{30, 20})) << "the mouse-down, not the drag";
    ASSERT_EQ(session->items().size(), 1u);
    const DraggingItem& item = session->items()[0];
    EXPECT_EQ(item.pasteboardWriterURL, mac.bundles().mainBundle()->bundleURL());
    EXPECT_EQ(item.draggingFrame, (Rect{{0, 0}, {48, 48}}));
    EXPECT_EQ(item.contents, "NSApplicationIcon:Vantro Demo");
    EXPECT_TRUE(session->animatesToStartingPositionsOnCancelOrFail());
    EXPECT_EQ(session->draggingFormation(), NSDraggingFormationNone);
    EXPECT_TRUE(view->inDrag());
}

TEST_F(IconView, DraggingFrameIsASquareOfTheShorterSide) {
    struct Case {
        Size size;
        Size square;
    } cases[] = {{{64, 48}, {48, 48}}, {{48, 64}, {48, 48}}, {{32, 32}, {32, 32}}, {{0, 20}, {0, 0}}};
    for (const auto& c : cases) {
        auto other = ZVMainBundleIconImageView::initWithFrame({{7, 9}, c.size}, "icon");
        other->beginDraggingSessionWithEvent(down());
        ASSERT_TRUE(mac.dragging().session());
        EXPECT_EQ(mac.dragging().session()->items()[0].draggingFrame, (Rect{{0, 0}, c.square}))
            << c.size.width << "×" << c.size.height << ": at the bounds' origin, not the frame's";
        mac.dragging().cancel();
    }
}

TEST_F(IconView, ObserversSeeYesOnceAndNoOncePerDrag) {
    struct Case {
        const char* name;
        bool drop;
        DragOperation targetAnswer;
    } cases[] = {{"cancelled", false, NSDragOperationNone},
                 {"dropped and taken", true, NSDragOperationGeneric},
                 {"dropped and refused", true, NSDragOperationNone}};
    for (const auto& c : cases) {
        InDragRecorder recorder;
        view->addObserver(recorder, "inDrag", ObservingOptionNone, recorderContext);
        mac.dragging().setDropTarget([&](const sim::SimDragging::Drop&) { return c.targetAnswer; });
        EventScript script{{dragged()}};
        view->mouseDown(down(), script.source());
        EXPECT_EQ(recorder.seen, (std::vector<bool>{true})) << c.name;
        if (c.drop)
            mac.dragging().dropAt({300, 400});
        else
            mac.dragging().cancel();
        EXPECT_EQ(recorder.seen, (std::vector<bool>{true, false})) << c.name;
        EXPECT_FALSE(view->inDrag()) << c.name;
        ASSERT_FALSE(mac.dragging().ended().empty());
        const auto& ended = mac.dragging().ended().back();
        EXPECT_EQ(ended.operation, c.targetAnswer) << c.name;
        EXPECT_EQ(ended.slidBack, c.targetAnswer == NSDragOperationNone) << c.name << ": refused or cancelled drags slide back";
        view->removeObserver(recorder, "inDrag", recorderContext);
    }
}

TEST_F(IconView, ADragThatDoesNotBeginLeavesInDragNo) {
    InDragRecorder recorder;
    view->addObserver(recorder, "inDrag", ObservingOptionNone, recorderContext);
    mac.dragging().setRefusesDrags(true);
    EventScript refused{{dragged()}};
    view->mouseDown(down(), refused.source());
    EXPECT_FALSE(mac.dragging().isDragging());
    EXPECT_FALSE(view->inDrag()) << "a drag that never began never ends: YES would hold the overlay for ever";
    EXPECT_TRUE(recorder.seen.empty());

    // Nothing is left over: the next drag the system allows begins as usual.
    mac.dragging().setRefusesDrags(false);
    EventScript allowed{{dragged()}};
    view->mouseDown(down(), allowed.source());
    EXPECT_TRUE(mac.dragging().isDragging());
    EXPECT_EQ(recorder.seen, (std::vector<bool>{true}));
    mac.dragging().cancel();
    EXPECT_EQ(recorder.seen, (std::vector<bool>{true, false}));
    view->removeObserver(recorder, "inDrag", recorderContext);

    // Items none of which makes a URL cannot be dragged at all.
    for (const char* url : {"", "not a url"})
        EXPECT_EQ(mac.dragging().beginDraggingSession({{url, {{0, 0}, {4, 4}}, "icon"}}, down(), view), nullptr) << url;
}

TEST_F(IconView, ViewGoneDuringADragIsNotTold) {
    EventScript script{{dragged()}};
    view->mouseDown(down(), script.source());
    view.reset();
    EXPECT_TRUE(mac.dragging().cancel());
    EXPECT_FALSE(mac.dragging().isDragging());
}

}  // namespace
}  // namespace vantro
