// Dragging on the real Mac.
//
// Implements: beginDraggingSession as NSView's
// beginDraggingSessionWithItems:event:source:, sent to the Objective-C icon
// view whose core twin is the source, with that view's own mouse-down event
// (the core's Event describes it, but AppKit needs the NSEvent itself) and
// as its own NSDraggingSource; one NSDraggingItem per item, its pasteboard
// writer the NSURL of the item's URL, its frame the item's and its contents
// the view's image; the session's settings passed on to the NSDraggingSession,
// which is kept until the source is told the drag ended. Main thread.
// No session (nullptr) when there is nothing AppKit can drag from or with: a
// source without a live Objective-C view, a view that has had no mouse-down,
// no item whose URL parses, or AppKit answering no session.
// Known gaps: none.

#include <memory>
#include <vector>

#include "macOS/MacAreas.h"
#include "macOS/MacFoundation.h"
#include "macOS/MacOverlay.h"

namespace vantro::mac {

namespace {

class MacDraggingSession final : public DraggingSession {
public:
    explicit MacDraggingSession(NSDraggingSession* session) : session_(session) {}

    void setAnimatesToStartingPositionsOnCancelOrFail(bool animates) override {
        session_.animatesToStartingPositionsOnCancelOrFail = animates;
    }
    bool animatesToStartingPositionsOnCancelOrFail() const override {
        return session_.animatesToStartingPositionsOnCancelOrFail;
    }
    void setDraggingFormation(long formation) override {
        session_.draggingFormation = static_cast<NSDraggingFormation>(formation);
    }
    long draggingFormation() const override { return session_.draggingFormation; }

    NSDraggingSession* session() const { return session_; }

private:
    NSDraggingSession* session_;
};

struct RegisteredSource {
    const DraggingSource* source;
    __weak ZVIconImageViewTwin* view;
};

struct RunningSession {
    NSDraggingSession* session;
    std::shared_ptr<MacDraggingSession> twin;
};

// Made once and never torn down: icon views may come and go up to the end of
// the process.
std::vector<RegisteredSource>& registeredSources() {
    static auto* sources = new std::vector<RegisteredSource>;
    return *sources;
}

std::vector<RunningSession>& runningSessions() {
    static auto* sessions = new std::vector<RunningSession>;
    return *sessions;
}

ZVIconImageViewTwin* _Nullable viewFor(const DraggingSource* source) {
    for (const RegisteredSource& registered : registeredSources())
        if (registered.source == source) return registered.view;
    return nil;
}

class MacDragging final : public Dragging {
public:
    std::shared_ptr<DraggingSession> beginDraggingSession(const std::vector<DraggingItem>& items, const Event& event,
                                                          std::weak_ptr<DraggingSource> source) override {
        (void)event;
        std::shared_ptr<DraggingSource> liveSource = source.lock();
        ZVIconImageViewTwin* view = liveSource ? viewFor(liveSource.get()) : nil;
        NSEvent* mouseDown = view ? draggingEventOf(view) : nil;
        if (!mouseDown) return nullptr;

        NSMutableArray<NSDraggingItem*>* draggingItems = [NSMutableArray arrayWithCapacity:items.size()];
        for (const DraggingItem& item : items) {
            NSURL* url = item.pasteboardWriterURL.empty() ? nil : [NSURL URLWithString:toNSString(item.pasteboardWriterURL)];
            if (!url) continue;
            NSDraggingItem* draggingItem = [[NSDraggingItem alloc] initWithPasteboardWriter:url];
            [draggingItem setDraggingFrame:toNSRect(item.draggingFrame) contents:view.image];
            [draggingItems addObject:draggingItem];
        }
        // A drag needs at least one item to carry.
        if (draggingItems.count == 0) return nullptr;

        NSDraggingSession* session = [view beginDraggingSessionWithItems:draggingItems event:mouseDown source:view];
        if (!session) return nullptr;
        auto twin = std::make_shared<MacDraggingSession>(session);
        runningSessions().push_back({session, twin});
        return twin;
    }
};

}  // namespace

std::unique_ptr<Dragging> makeDragging() { return std::make_unique<MacDragging>(); }

void registerDraggingSource(const DraggingSource* source, ZVIconImageViewTwin* view) {
    registeredSources().push_back({source, view});
}

void unregisterDraggingSource(const DraggingSource* source) {
    std::erase_if(registeredSources(), [source](const RegisteredSource& registered) { return registered.source == source; });
}

std::shared_ptr<DraggingSession> draggingSessionFor(NSDraggingSession* session) {
    for (const RunningSession& running : runningSessions())
        if (running.session == session) return running.twin;
    return std::make_shared<MacDraggingSession>(session);
}

void draggingSessionEnded(NSDraggingSession* session) {
    std::erase_if(runningSessions(), [session](const RunningSession& running) { return running.session == session; });
}

}  // namespace vantro::mac
