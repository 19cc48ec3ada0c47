#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Dragging.h"

namespace vantro::sim {

class SimulatedMac;

// A drag of the simulated Mac. It starts at the mouse-down that the source
// view received and follows the scripted user's hand until a drop or a
// cancel ends it.
class SimDraggingSession : public DraggingSession {
public:
    SimDraggingSession(std::vector<DraggingItem> items, Event event, std::weak_ptr<DraggingSource> source, Point windowOrigin,
                       Point viewOrigin);

    void setAnimatesToStartingPositionsOnCancelOrFail(bool animates) override { animatesBack_ = animates; }
    bool animatesToStartingPositionsOnCancelOrFail() const override { return animatesBack_; }
    void setDraggingFormation(long formation) override { formation_ = formation; }
    long draggingFormation() const override { return formation_; }

    const std::vector<DraggingItem>& items() const { return items_; }
    const Event& event() const { return event_; }
    std::shared_ptr<DraggingSource> source() const { return source_.lock(); }
    // Screen coordinates (origin bottom left).
    Point startLocation() const { return start_; }
    Point location() const { return location_; }
    // Where the first item's image now lies on the screen: its dragging
    // frame, placed in the source view and carried along with the pointer.
    Rect imageFrameOnScreen() const;

private:
    friend class SimDragging;
    std::vector<DraggingItem> items_;
    Event event_;
    std::weak_ptr<DraggingSource> source_;
    Point viewOrigin_;
    Point start_;
    Point location_;
    bool animatesBack_ = false;
    long formation_ = NSDraggingFormationDefault;
};

// Drag and drop on the simulated Mac. One drag runs at a time. Whoever takes
// drops (System Preferences' privacy list) registers a drop target; a drop
// asks it what it did, tells the source, and ends the session.
class SimDragging : public Dragging {
public:
    explicit SimDragging(SimulatedMac& mac) : mac_(mac) {}

    std::shared_ptr<DraggingSession> beginDraggingSession(const std::vector<DraggingItem>& items, const Event& event,
                                                          std::weak_ptr<DraggingSource> source) override;

    // Makes AppKit start no drag, as for a source view that is not on screen.
    void setRefusesDrags(bool refuses) { refusesDrags_ = refuses; }

    // What a drop offers its target.
    struct Drop {
        // The first item's file URL.
        std::string url;
        // Where it was dropped, in screen coordinates (origin bottom left).
        Point screenPoint;
        // What the source allows outside its application.
        DragOperation allowed = NSDragOperationNone;
    };
    // Performs a drop and answers what it did; NSDragOperationNone refuses it
    // (the image then slides back if the session asks for that). The answer
    // is limited to what the source allows.
    using DropTarget = std::function<DragOperation(const Drop& drop)>;
    void setDropTarget(DropTarget target) { dropTarget_ = std::move(target); }

    // Where the window and the view about to receive a mouse event have
    // their origins on the screen; the window sets them before delivering the
    // event, so a session begun from that event knows where the pointer and
    // the image start.
    void setEventTarget(Point windowOrigin, Point viewOrigin) {
        eventWindowOrigin_ = windowOrigin;
        eventViewOrigin_ = viewOrigin;
    }

    // The running drag, nullptr when none.
    const std::shared_ptr<SimDraggingSession>& session() const { return session_; }
    bool isDragging() const { return session_ != nullptr; }
    // Carries the running drag to a screen point; false without one.
    bool moveTo(Point screenPoint);
    // Releases the running drag at a screen point; answers what the target
    // did, nullopt without a running drag.
    std::optional<DragOperation> dropAt(Point screenPoint);
    // Gives up the running drag (Escape); false without one.
    bool cancel();

    // How each finished drag ended, in order.
    struct Ended {
        std::vector<DraggingItem> items;
        Event event;
        Point endPoint;
        DragOperation operation = NSDragOperationNone;
        bool slidBack = false;
        bool animatesBack = false;
        long formation = NSDraggingFormationDefault;
    };
    const std::vector<Ended>& ended() const { return ended_; }
    int sessionsBegun() const { return begun_; }

private:
    void end(Point point, DragOperation operation, bool slideBack);

    SimulatedMac& mac_;
    DropTarget dropTarget_;
    Point eventWindowOrigin_;
    Point eventViewOrigin_;
    std::shared_ptr<SimDraggingSession> session_;
    std::vector<Ended> ended_;
    int begun_ = 0;
    bool refusesDrags_ = false;
};

}  // namespace vantro::sim
