#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Platform/Event.h"
#include "Platform/Geometry.h"

namespace vantro {

// NSDragOperation: a bit set of what a drop may do with the dragged items.
using DragOperation = std::uint64_t;
inline constexpr DragOperation NSDragOperationNone = 0;
inline constexpr DragOperation NSDragOperationCopy = 1;
inline constexpr DragOperation NSDragOperationLink = 2;
inline constexpr DragOperation NSDragOperationGeneric = 4;
inline constexpr DragOperation NSDragOperationPrivate = 8;
inline constexpr DragOperation NSDragOperationMove = 16;
inline constexpr DragOperation NSDragOperationDelete = 32;
inline constexpr DragOperation NSDragOperationEvery = ~DragOperation{0};

// NSDraggingContext: where the drop target lies, seen from the source.
enum class DraggingContext : long { OutsideApplication = 0, WithinApplication = 1 };

// NSDraggingFormation values.
inline constexpr long NSDraggingFormationDefault = 0;
inline constexpr long NSDraggingFormationNone = 1;
inline constexpr long NSDraggingFormationPile = 2;
inline constexpr long NSDraggingFormationList = 3;
inline constexpr long NSDraggingFormationStack = 4;

// One dragged item (NSDraggingItem): what goes on the pasteboard, where its
// image starts (in the source view's coordinates) and the image itself.
struct DraggingItem {
    // The pasteboard writer: a file URL string ("file:///Applications/X.app/").
    std::string pasteboardWriterURL;
    Rect draggingFrame;
    // The image shown under the pointer, by the platform's name for it.
    std::string contents;
};

class DraggingSession;

// The source of a dragging session (NSDraggingSource). The platform calls it
// on the main thread while the session runs and once when it ends.
class DraggingSource {
public:
    virtual ~DraggingSource() = default;
    // draggingSession:sourceOperationMaskForDraggingContext: — what the source
    // allows a target in `context` to do.
    virtual DragOperation sourceOperationMaskForDraggingContext(DraggingSession& session, DraggingContext context) = 0;
    // draggingSession:endedAtPoint:operation: — the session is over, by drop
    // (`operation` is what the target did) or by cancel (NSDragOperationNone).
    // `screenPoint` is in screen coordinates (origin bottom left).
    virtual void draggingSessionEndedAtPoint(DraggingSession& session, Point screenPoint, DragOperation operation) = 0;
};

// A running drag (NSDraggingSession). The platform owns it until it ends;
// the source may configure it right after it began. Main thread.
class DraggingSession {
public:
    DraggingSession() = default;
    DraggingSession(const DraggingSession&) = delete;
    DraggingSession& operator=(const DraggingSession&) = delete;
    virtual ~DraggingSession() = default;

    virtual void setAnimatesToStartingPositionsOnCancelOrFail(bool animates) = 0;
    virtual bool animatesToStartingPositionsOnCancelOrFail() const = 0;
    virtual void setDraggingFormation(long formation) = 0;
    virtual long draggingFormation() const = 0;
};

// Drag and drop. Main thread.
class Dragging {
public:
    Dragging() = default;
    Dragging(const Dragging&) = delete;
    Dragging& operator=(const Dragging&) = delete;
    virtual ~Dragging() = default;

    // NSView beginDraggingSessionWithItems:event:source:. Returns at once with
    // the new session; the drag itself runs later in the platform's own event
    // tracking. nullptr when no drag starts: no item has a pasteboard writer
    // that makes a URL, or the system will not drag from the source (it is
    // gone, or is not a view on screen) — the source is then never told of an
    // end. The source is not retained: a source
    // that is gone when the session ends is simply not told. `event` is the
    // mouse-down that started the drag; the items' dragging frames are in the
    // coordinates of the view it was sent to.
    virtual std::shared_ptr<DraggingSession> beginDraggingSession(const std::vector<DraggingItem>& items, const Event& event,
                                                                  std::weak_ptr<DraggingSource> source) = 0;
};

}  // namespace vantro
